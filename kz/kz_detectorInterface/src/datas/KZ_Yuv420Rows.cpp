#include "KZ_Yuv420Rows.h"

#include "KZ_Yuv420Neon.h"
#include "KZ_Yuv420Sse2.h"

namespace KZ {

namespace {

// The definition.
struct ScalarRow {
    template <bool zoomTwice, bool swapRedBlue, bool swapUV>
    static void run(const unsigned char* luma, const unsigned char* chroma, unsigned char* dst,
                    int count) {
        for (int i = 0; i < count; ++i) {
            const int u = chroma[2 * i + (swapUV ? 0 : 1)] - 128;
            const int v = chroma[2 * i + (swapUV ? 1 : 0)] - 128;
            computeBgr(luma[2 * i], u, v, dst, swapRedBlue);
            if (!zoomTwice) computeBgr(luma[2 * i + 1], u, v, dst, swapRedBlue);
        }
    }
};

// `Block` converts 16 pixels at a time, the definition what is left over.
template <typename Block>
struct BlockRow {
    template <bool zoomTwice, bool swapRedBlue, bool swapUV>
    static void run(const unsigned char* luma, const unsigned char* chroma, unsigned char* dst,
                    int count) {
        const int pairs = zoomTwice ? 16 : 8;
        for (; count >= pairs; count -= pairs) {
            Block::template run<zoomTwice, swapRedBlue, swapUV>(luma, chroma, dst);
            luma += 2 * pairs;
            chroma += 2 * pairs;
            dst += 48;
        }
        ScalarRow::run<zoomTwice, swapRedBlue, swapUV>(luma, chroma, dst, count);
    }
};

template <typename Row>
YuvRow select(bool zoomTwice, bool swapRedBlue, bool swapUV) {
    static const YuvRow rows[2][2][2] = {
        {{Row::template run<false, false, false>, Row::template run<false, false, true>},
         {Row::template run<false, true, false>, Row::template run<false, true, true>}},
        {{Row::template run<true, false, false>, Row::template run<true, false, true>},
         {Row::template run<true, true, false>, Row::template run<true, true, true>}}};
    return rows[zoomTwice][swapRedBlue][swapUV];
}

}  // namespace

const std::vector<YuvRowVariant>& yuvRowVariants() {
    static const std::vector<YuvRowVariant> variants = {
        {"scalar", select<ScalarRow>},
#if defined(__SSE2__)
        {"sse2", select<BlockRow<Sse2Block>>},
#elif defined(__ARM_NEON)
        {"neon", select<BlockRow<NeonBlock>>},
#endif
    };
    return variants;
}

}  // namespace KZ
