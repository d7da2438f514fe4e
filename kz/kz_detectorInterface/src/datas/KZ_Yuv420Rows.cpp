#include "KZ_Yuv420Rows.h"

namespace KZ {

namespace {

template <bool zoomTwice, bool swapRedBlue, bool swapUV>
void rowScalar(const unsigned char* luma, const unsigned char* chroma, unsigned char* dst,
               int count) {
    for (int i = 0; i < count; ++i) {
        const int u = chroma[2 * i + (swapUV ? 0 : 1)] - 128;
        const int v = chroma[2 * i + (swapUV ? 1 : 0)] - 128;
        computeBgr(luma[2 * i], u, v, dst, swapRedBlue);
        if (!zoomTwice) computeBgr(luma[2 * i + 1], u, v, dst, swapRedBlue);
    }
}

YuvRow selectScalar(bool zoomTwice, bool swapRedBlue, bool swapUV) {
    static const YuvRow rows[2][2][2] = {
        {{rowScalar<false, false, false>, rowScalar<false, false, true>},
         {rowScalar<false, true, false>, rowScalar<false, true, true>}},
        {{rowScalar<true, false, false>, rowScalar<true, false, true>},
         {rowScalar<true, true, false>, rowScalar<true, true, true>}}};
    return rows[zoomTwice][swapRedBlue][swapUV];
}

}  // namespace

const std::vector<YuvRowVariant>& yuvRowVariants() {
    static const std::vector<YuvRowVariant> variants = {{"scalar", selectScalar}};
    return variants;
}

}  // namespace KZ
