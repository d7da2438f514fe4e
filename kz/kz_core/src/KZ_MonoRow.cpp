#include "KZ_MonoRow.h"

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__ARM_NEON)
#include <arm_neon.h>
#endif

namespace KZ {

namespace {

// The weights of the first and third byte of a pixel; green is always the second.
const int RED = 66, GREEN = 129, BLUE = 25;

// The definition.
template <int FIRST, int THIRD>
void rowScalar(const unsigned char* pixels, unsigned char* mono, int count) {
    for (int x = 0; x < count; ++x, pixels += 3)
        mono[x] = static_cast<unsigned char>(
            16 + ((FIRST * pixels[0] + GREEN * pixels[1] + THIRD * pixels[2]) >> 8));
}

#if defined(__SSE2__) || defined(__ARM_NEON)
const int BLOCK = 16;

// `LUMA` writes a block. The last one overlaps the one before.
template <void (*LUMA)(const unsigned char*, unsigned char*), MonoRow SHORT_ROW>
void rowByBlocks(const unsigned char* pixels, unsigned char* mono, int count) {
    if (count < BLOCK) return SHORT_ROW(pixels, mono, count);
    for (int next = 0; next < count; next += BLOCK) {
        const int x = std::min(next, count - BLOCK);
        LUMA(pixels + 3 * x, mono + x);
    }
}
#endif

#if defined(__SSE2__)
// Three registers of 16 pixels, dealt out like cards: each round pairs bytes that are half of the
// whole apart, and after four rounds each register holds one channel.
struct Channels {
    __m128i first, second, third;

    void deal() {
        const __m128i a = first, b = second, c = third;
        first = _mm_unpacklo_epi8(a, _mm_unpackhi_epi64(b, b));
        second = _mm_unpacklo_epi8(_mm_unpackhi_epi64(a, a), c);
        third = _mm_unpacklo_epi8(b, _mm_unpackhi_epi64(c, c));
    }
};

inline __m128i load8(const unsigned char* p) {
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
}

// The sum is at most 56100.
inline __m128i luma8(__m128i first, __m128i second, __m128i third, int weight1, int weight3) {
    const __m128i sum = _mm_add_epi16(
        _mm_add_epi16(_mm_mullo_epi16(first, _mm_set1_epi16(static_cast<short>(weight1))),
                      _mm_mullo_epi16(second, _mm_set1_epi16(GREEN))),
        _mm_mullo_epi16(third, _mm_set1_epi16(static_cast<short>(weight3))));
    return _mm_add_epi16(_mm_srli_epi16(sum, 8), _mm_set1_epi16(16));
}

template <int FIRST, int THIRD>
inline void lumaSse2(const unsigned char* pixels, unsigned char* mono) {
    // The first round comes with loading.
    Channels c = {_mm_unpacklo_epi8(load8(pixels), load8(pixels + 24)),
                  _mm_unpacklo_epi8(load8(pixels + 8), load8(pixels + 32)),
                  _mm_unpacklo_epi8(load8(pixels + 16), load8(pixels + 40))};
    for (int round = 1; round < 4; ++round) c.deal();
    const __m128i zero = _mm_setzero_si128();
    const __m128i low = luma8(_mm_unpacklo_epi8(c.first, zero), _mm_unpacklo_epi8(c.second, zero),
                              _mm_unpacklo_epi8(c.third, zero), FIRST, THIRD);
    const __m128i high = luma8(_mm_unpackhi_epi8(c.first, zero), _mm_unpackhi_epi8(c.second, zero),
                               _mm_unpackhi_epi8(c.third, zero), FIRST, THIRD);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(mono), _mm_packus_epi16(low, high));
}
#elif defined(__ARM_NEON)
inline uint8x8_t luma8(uint8x8_t first, uint8x8_t second, uint8x8_t third, uint8_t weight1,
                       uint8_t weight3) {
    uint16x8_t sum = vmull_u8(first, vdup_n_u8(weight1));
    sum = vmlal_u8(sum, second, vdup_n_u8(GREEN));
    sum = vmlal_u8(sum, third, vdup_n_u8(weight3));
    return vadd_u8(vshrn_n_u16(sum, 8), vdup_n_u8(16));
}

template <int FIRST, int THIRD>
inline void lumaNeon(const unsigned char* pixels, unsigned char* mono) {
    const uint8x16x3_t c = vld3q_u8(pixels);
    const uint8x8_t low =
        luma8(vget_low_u8(c.val[0]), vget_low_u8(c.val[1]), vget_low_u8(c.val[2]), FIRST, THIRD);
    const uint8x8_t high =
        luma8(vget_high_u8(c.val[0]), vget_high_u8(c.val[1]), vget_high_u8(c.val[2]), FIRST, THIRD);
    vst1q_u8(mono, vcombine_u8(low, high));
}
#endif

}  // namespace

const std::vector<MonoRowVariant>& monoRowVariants() {
    static const std::vector<MonoRowVariant> variants = {
        {"scalar", rowScalar<BLUE, RED>, rowScalar<RED, BLUE>},
#if defined(__SSE2__)
        {"sse2", rowByBlocks<lumaSse2<BLUE, RED>, rowScalar<BLUE, RED>>,
         rowByBlocks<lumaSse2<RED, BLUE>, rowScalar<RED, BLUE>>},
#elif defined(__ARM_NEON)
        {"neon", rowByBlocks<lumaNeon<BLUE, RED>, rowScalar<BLUE, RED>>,
         rowByBlocks<lumaNeon<RED, BLUE>, rowScalar<RED, BLUE>>},
#endif
    };
    return variants;
}

}  // namespace KZ
