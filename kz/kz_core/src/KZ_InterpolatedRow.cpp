#include "KZ_InterpolatedRow.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__ARM_NEON)
#include <arm_neon.h>
#endif

namespace KZ {

namespace {

bool isInside(const InterpolatedRow& row, int x, int y) {
    return x >= 0 && x <= row.limitX && y >= 0 && y <= row.limitY;
}

unsigned char sample(const unsigned char* pixels, int stride, int x, int y) {
    const unsigned char* upper = pixels + static_cast<ptrdiff_t>(y >> 8) * stride + (x >> 8);
    const unsigned char* lower = upper + stride;
    const int fx = x & 255;
    const int fy = y & 255;
    const int top = (upper[0] << 8) + fx * (upper[1] - upper[0]);
    const int bottom = (lower[0] << 8) + fx * (lower[1] - lower[0]);
    return static_cast<unsigned char>(((top << 8) + fy * (bottom - top)) >> 16);
}

// The definition.
void rowScalar(const InterpolatedRow& given, int baseX, int baseY, unsigned char* out, int width) {
    const InterpolatedRow row = given;  // a copy, which `out` cannot point into
    for (int i = 0; i < width; ++i) {
        int x = baseX + row.columnsX[i];
        int y = baseY + row.columnsY[i];
        if (row.extendBorder) {
            x = std::min(std::max(x, 0), row.limitX);
            y = std::min(std::max(y, 0), row.limitY);
        }
        out[i] = isInside(row, x, y) ? sample(row.pixels, row.stride, x, y) : 0;
    }
}

#if defined(__SSE2__) || defined(__ARM_NEON)
const int BLOCK = 8;

void rowScalarFrom(int first, const InterpolatedRow& row, int baseX, int baseY,
                   unsigned char* out) {
    InterpolatedRow part = row;
    part.columnsX += first;
    part.columnsY += first;
    rowScalar(part, baseX, baseY, out + first, BLOCK);
}

// The samples from `first` on: INSIDE writes a block whose positions are all inside, CLAMPED any.
// As positions never turn back, a block is inside when its ends are.
using Samples = void (*)(const InterpolatedRow& row, int baseX, int baseY, int first,
                         unsigned char* out);
template <Samples INSIDE, Samples CLAMPED>
void rowByBlocks(const InterpolatedRow& given, int baseX, int baseY, unsigned char* out,
                 int width) {
    if (width < BLOCK) return rowScalar(given, baseX, baseY, out, width);
    const InterpolatedRow row = given;
    for (int next = 0; next < width; next += BLOCK) {
        const int first = std::min(next, width - BLOCK);  // the last block overlaps
        const int last = first + BLOCK - 1;
        if (isInside(row, baseX + row.columnsX[first], baseY + row.columnsY[first]) &&
            isInside(row, baseX + row.columnsX[last], baseY + row.columnsY[last]))
            INSIDE(row, baseX, baseY, first, out);
        else if (row.extendBorder)
            CLAMPED(row, baseX, baseY, first, out);
        else
            rowScalarFrom(first, row, baseX, baseY, out);
    }
}

// Two neighbours, the left one in the low byte (both kinds of processor are little-endian).
inline uint16_t pairAt(const unsigned char* p) {
    uint16_t pair;
    std::memcpy(&pair, p, sizeof(pair));
    return pair;
}
#endif

#if defined(__SSE2__)
// (256 - fx) * left + fx * right, at most 65280.
inline __m128i between(__m128i pairs, __m128i fx) {
    const __m128i left = _mm_and_si128(pairs, _mm_set1_epi16(255));
    return _mm_add_epi16(_mm_mullo_epi16(left, _mm_sub_epi16(_mm_set1_epi16(256), fx)),
                         _mm_mullo_epi16(_mm_srli_epi16(pairs, 8), fx));
}

// The high halves of sums of two products. The products are of signed numbers, so that top and
// bottom come less 32768, which counts 256 times.
inline __m128i blended(__m128i topAndBottom, __m128i weights) {
    const __m128i sum = _mm_madd_epi16(topAndBottom, weights);
    return _mm_srli_epi32(_mm_add_epi32(sum, _mm_set1_epi32(32768 * 256)), 16);
}

// Limited to 0 and `limit`, not negative itself.
inline __m128i clamped(__m128i values, int limit) {
    const __m128i highest = _mm_set1_epi32(limit);
    const __m128i positive = _mm_andnot_si128(_mm_srai_epi32(values, 31), values);
    const __m128i beyond = _mm_cmpgt_epi32(positive, highest);
    return _mm_or_si128(_mm_and_si128(beyond, highest), _mm_andnot_si128(beyond, positive));
}

template <bool IS_CLAMPED>
inline __m128i positions4(const int* columns, int base, int limit) {
    const __m128i values = _mm_add_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(columns)),
                                         _mm_set1_epi32(base));
    return IS_CLAMPED ? clamped(values, limit) : values;
}

inline void storeOffsets(__m128i x, __m128i y, int stride, int* offsets) {
    const __m128i columnAndRow =
        _mm_or_si128(_mm_srli_epi32(x, 8), _mm_slli_epi32(_mm_srli_epi32(y, 8), 16));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(offsets),
                     _mm_madd_epi16(columnAndRow, _mm_set1_epi32(stride << 16 | 1)));
}

inline __m128i fractions(__m128i low, __m128i high) {
    const __m128i mask = _mm_set1_epi32(255);
    return _mm_packs_epi32(_mm_and_si128(low, mask), _mm_and_si128(high, mask));
}

inline __m128i pairsAt(const unsigned char* pixels, const int* offsets) {
    __m128i pairs = _mm_cvtsi32_si128(pairAt(pixels + offsets[0]));
    pairs = _mm_insert_epi16(pairs, pairAt(pixels + offsets[1]), 1);
    pairs = _mm_insert_epi16(pairs, pairAt(pixels + offsets[2]), 2);
    pairs = _mm_insert_epi16(pairs, pairAt(pixels + offsets[3]), 3);
    pairs = _mm_insert_epi16(pairs, pairAt(pixels + offsets[4]), 4);
    pairs = _mm_insert_epi16(pairs, pairAt(pixels + offsets[5]), 5);
    pairs = _mm_insert_epi16(pairs, pairAt(pixels + offsets[6]), 6);
    return _mm_insert_epi16(pairs, pairAt(pixels + offsets[7]), 7);
}

template <bool IS_CLAMPED>
inline void samplesSse2(const InterpolatedRow& row, int baseX, int baseY, int first,
                        unsigned char* out) {
    const int *columnsX = row.columnsX + first, *columnsY = row.columnsY + first;
    const __m128i x0 = positions4<IS_CLAMPED>(columnsX, baseX, row.limitX);
    const __m128i x1 = positions4<IS_CLAMPED>(columnsX + 4, baseX, row.limitX);
    const __m128i y0 = positions4<IS_CLAMPED>(columnsY, baseY, row.limitY);
    const __m128i y1 = positions4<IS_CLAMPED>(columnsY + 4, baseY, row.limitY);
    int offsets[BLOCK];
    storeOffsets(x0, y0, row.stride, offsets);
    storeOffsets(x1, y1, row.stride, offsets + 4);
    const __m128i fx = fractions(x0, x1), fy = fractions(y0, y1);
    const __m128i gy = _mm_sub_epi16(_mm_set1_epi16(256), fy);
    const __m128i lowest = _mm_set1_epi16(-32768);
    const __m128i top = _mm_xor_si128(between(pairsAt(row.pixels, offsets), fx), lowest);
    const __m128i bottom =
        _mm_xor_si128(between(pairsAt(row.pixels + row.stride, offsets), fx), lowest);
    const __m128i low = blended(_mm_unpacklo_epi16(top, bottom), _mm_unpacklo_epi16(gy, fy));
    const __m128i high = blended(_mm_unpackhi_epi16(top, bottom), _mm_unpackhi_epi16(gy, fy));
    const __m128i samples = _mm_packs_epi32(low, high);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out + first), _mm_packus_epi16(samples, samples));
}

// Offsets are products of 16 bits.
void rowSse2(const InterpolatedRow& row, int baseX, int baseY, unsigned char* out, int width) {
    const bool fits = row.stride < 32768 && row.limitY < 32768 * 256;
    (fits ? rowByBlocks<samplesSse2<false>, samplesSse2<true>> : rowScalar)(row, baseX, baseY, out,
                                                                            width);
}
#elif defined(__ARM_NEON)
// (256 - fx) * left + fx * right, at most 65280.
inline uint16x8_t between(uint16x8_t pairs, uint16x8_t fx) {
    const uint16x8_t left = vandq_u16(pairs, vdupq_n_u16(255));
    return vmlaq_u16(vmulq_u16(left, vsubq_u16(vdupq_n_u16(256), fx)), vshrq_n_u16(pairs, 8), fx);
}

inline uint16x8_t pairsAt(const unsigned char* pixels, const int* offsets) {
    uint16x8_t pairs = vdupq_n_u16(pairAt(pixels + offsets[0]));
    pairs = vsetq_lane_u16(pairAt(pixels + offsets[1]), pairs, 1);
    pairs = vsetq_lane_u16(pairAt(pixels + offsets[2]), pairs, 2);
    pairs = vsetq_lane_u16(pairAt(pixels + offsets[3]), pairs, 3);
    pairs = vsetq_lane_u16(pairAt(pixels + offsets[4]), pairs, 4);
    pairs = vsetq_lane_u16(pairAt(pixels + offsets[5]), pairs, 5);
    pairs = vsetq_lane_u16(pairAt(pixels + offsets[6]), pairs, 6);
    return vsetq_lane_u16(pairAt(pixels + offsets[7]), pairs, 7);
}

inline uint16x8_t fractions(int32x4_t low, int32x4_t high) {
    const uint16x8_t whole =
        vcombine_u16(vmovn_u32(vreinterpretq_u32_s32(low)), vmovn_u32(vreinterpretq_u32_s32(high)));
    return vandq_u16(whole, vdupq_n_u16(255));
}

inline uint16x4_t blended(uint16x4_t top, uint16x4_t bottom, uint16x4_t fy) {
    const uint16x4_t gy = vsub_u16(vdup_n_u16(256), fy);
    return vshrn_n_u32(vmlal_u16(vmull_u16(top, gy), bottom, fy), 16);
}

template <bool IS_CLAMPED>
inline int32x4_t positions4(const int* columns, int base, int limit) {
    const int32x4_t values = vaddq_s32(vld1q_s32(columns), vdupq_n_s32(base));
    if (!IS_CLAMPED) return values;
    return vminq_s32(vmaxq_s32(values, vdupq_n_s32(0)), vdupq_n_s32(limit));
}

template <bool IS_CLAMPED>
inline void samplesNeon(const InterpolatedRow& row, int baseX, int baseY, int first,
                        unsigned char* out) {
    const int *columnsX = row.columnsX + first, *columnsY = row.columnsY + first;
    const int32x4_t x0 = positions4<IS_CLAMPED>(columnsX, baseX, row.limitX);
    const int32x4_t x1 = positions4<IS_CLAMPED>(columnsX + 4, baseX, row.limitX);
    const int32x4_t y0 = positions4<IS_CLAMPED>(columnsY, baseY, row.limitY);
    const int32x4_t y1 = positions4<IS_CLAMPED>(columnsY + 4, baseY, row.limitY);
    int offsets[BLOCK];
    vst1q_s32(offsets, vmlaq_n_s32(vshrq_n_s32(x0, 8), vshrq_n_s32(y0, 8), row.stride));
    vst1q_s32(offsets + 4, vmlaq_n_s32(vshrq_n_s32(x1, 8), vshrq_n_s32(y1, 8), row.stride));
    const uint16x8_t fx = fractions(x0, x1), fy = fractions(y0, y1);
    const uint16x8_t top = between(pairsAt(row.pixels, offsets), fx);
    const uint16x8_t bottom = between(pairsAt(row.pixels + row.stride, offsets), fx);
    const uint16x8_t samples =
        vcombine_u16(blended(vget_low_u16(top), vget_low_u16(bottom), vget_low_u16(fy)),
                     blended(vget_high_u16(top), vget_high_u16(bottom), vget_high_u16(fy)));
    vst1_u8(out + first, vmovn_u16(samples));
}
#endif

}  // namespace

const std::vector<InterpolatedRowVariant>& interpolatedRowVariants() {
    static const std::vector<InterpolatedRowVariant> variants = {
        {"scalar", rowScalar},
#if defined(__SSE2__)
        {"sse2", rowSse2},
#elif defined(__ARM_NEON)
        {"neon", rowByBlocks<samplesNeon<false>, samplesNeon<true>>},
#endif
    };
    return variants;
}

}  // namespace KZ
