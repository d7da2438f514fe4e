#include "KZ_RmctTransform.h"

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif
#if defined(__ARM_NEON)
#include <arm_neon.h>
#endif

namespace KZ {

namespace {

// The definition, in bytes so that the compiler can work on many pixels at once. A mean above 255
// is below no neighbour, so it may be cut off to a byte.
void rmctRowScalar(const unsigned char* upper, const unsigned char* middle,
                   const unsigned char* lower, unsigned char* codes, int count) {
    for (int x = 0; x < count; ++x) {
        const unsigned char a = upper[x - 1], b = upper[x], c = upper[x + 1];
        const unsigned char d = middle[x - 1], e = middle[x + 1];
        const unsigned char f = lower[x - 1], g = lower[x], h = lower[x + 1];
        const unsigned short sum = static_cast<unsigned short>(a + b + c + d + e + f + g + h + 20);
        const unsigned short eighth = static_cast<unsigned short>(sum >> 3);
        const unsigned char mean = static_cast<unsigned char>(eighth > 255 ? 255 : eighth);
        codes[x] = static_cast<unsigned char>(
            (mean < a ? 128 : 0) | (mean < b ? 64 : 0) | (mean < c ? 32 : 0) | (mean < d ? 16 : 0) |
            (mean < e ? 8 : 0) | (mean < f ? 4 : 0) | (mean < g ? 2 : 0) | (mean < h ? 1 : 0));
    }
}

#if defined(__SSE2__)
inline __m128i load16(const unsigned char* p) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

// Codes of 16 pixels. A saturating difference is above 0 where the neighbour is above the mean.
inline __m128i codesSse2(const __m128i (&neighbours)[8]) {
    const __m128i zeros = _mm_setzero_si128();
    __m128i low = _mm_set1_epi16(20), high = low;
    for (const __m128i& neighbour : neighbours) {
        low = _mm_add_epi16(low, _mm_unpacklo_epi8(neighbour, zeros));
        high = _mm_add_epi16(high, _mm_unpackhi_epi8(neighbour, zeros));
    }
    const __m128i mean = _mm_packus_epi16(_mm_srli_epi16(low, 3), _mm_srli_epi16(high, 3));
    __m128i codes = zeros;
    for (const __m128i& neighbour : neighbours) {
        const __m128i bit = _mm_min_epu8(_mm_subs_epu8(neighbour, mean), _mm_set1_epi8(1));
        codes = _mm_add_epi8(_mm_add_epi8(codes, codes), bit);
    }
    return codes;
}

void rmctRowSse2(const unsigned char* upper, const unsigned char* middle,
                 const unsigned char* lower, unsigned char* codes, int count) {
    if (count < 16) return rmctRowScalar(upper, middle, lower, codes, count);
    for (int next = 0; next < count; next += 16) {
        const int x = std::min(next, count - 16);  // the last block overlaps the one before
        const __m128i neighbours[8] = {load16(upper + x - 1),  load16(upper + x),
                                       load16(upper + x + 1),  load16(middle + x - 1),
                                       load16(middle + x + 1), load16(lower + x - 1),
                                       load16(lower + x),      load16(lower + x + 1)};
        _mm_storeu_si128(reinterpret_cast<__m128i*>(codes + x), codesSse2(neighbours));
    }
}
#endif

#if defined(__ARM_NEON)
// Codes of 16 pixels. Narrowing saturates, which changes no code.
inline uint8x16_t codesNeon(const uint8x16_t (&neighbours)[8]) {
    uint16x8_t low = vdupq_n_u16(20), high = low;
    for (const uint8x16_t& neighbour : neighbours) {
        low = vaddw_u8(low, vget_low_u8(neighbour));
        high = vaddw_u8(high, vget_high_u8(neighbour));
    }
    const uint8x16_t mean = vcombine_u8(vqshrn_n_u16(low, 3), vqshrn_n_u16(high, 3));
    uint8x16_t codes = vdupq_n_u8(0);
    for (int i = 0; i < 8; ++i) {
        const uint8x16_t bit = vdupq_n_u8(static_cast<uint8_t>(128 >> i));
        codes = vorrq_u8(codes, vandq_u8(vcltq_u8(mean, neighbours[i]), bit));
    }
    return codes;
}

void rmctRowNeon(const unsigned char* upper, const unsigned char* middle,
                 const unsigned char* lower, unsigned char* codes, int count) {
    if (count < 16) return rmctRowScalar(upper, middle, lower, codes, count);
    for (int next = 0; next < count; next += 16) {
        const int x = std::min(next, count - 16);  // the last block overlaps the one before
        const uint8x16_t neighbours[8] = {vld1q_u8(upper + x - 1),  vld1q_u8(upper + x),
                                          vld1q_u8(upper + x + 1),  vld1q_u8(middle + x - 1),
                                          vld1q_u8(middle + x + 1), vld1q_u8(lower + x - 1),
                                          vld1q_u8(lower + x),      vld1q_u8(lower + x + 1)};
        vst1q_u8(codes + x, codesNeon(neighbours));
    }
}
#endif

}  // namespace

const std::vector<RmctRowVariant>& rmctRowVariants() {
    static const std::vector<RmctRowVariant> variants = {
        {"scalar", rmctRowScalar},
#if defined(__SSE2__)
        {"sse2", rmctRowSse2},
#endif
#if defined(__ARM_NEON)
        {"neon", rmctRowNeon},
#endif
    };
    return variants;
}

}  // namespace KZ
