#pragma once

#if defined(__SSE2__)

#include <emmintrin.h>

namespace KZ {

/// 16 pixels of a row of YUV420; see yuv420toBgr.
struct Sse2Block {
    /// Reads 16 bytes of luma and of chroma, with `zoomTwice` 32 of each; writes 48.
    template <bool zoomTwice, bool swapRedBlue, bool swapUV>
    static void run(const unsigned char* luma, const unsigned char* chroma, unsigned char* dst) {
        const __m128i evenBytes = _mm_set1_epi16(0xff);
        const __m128i bytes = load(luma);
        const Chroma pairs = centred<swapUV>(load(chroma));
        const Channels first = channels(_mm_and_si128(bytes, evenBytes), pairs);
        Channels both;
        if (zoomTwice) {
            const Chroma nextPairs = centred<swapUV>(load(chroma + 16));
            const Channels next = channels(_mm_and_si128(load(luma + 16), evenBytes), nextPairs);
            both = {_mm_packus_epi16(first.blue, next.blue),
                    _mm_packus_epi16(first.green, next.green),
                    _mm_packus_epi16(first.red, next.red)};
        } else {
            const Channels odd = channels(_mm_srli_epi16(bytes, 8), pairs);
            both = {zipped(first.blue, odd.blue), zipped(first.green, odd.green),
                    zipped(first.red, odd.red)};
        }
        store(swapRedBlue ? both.red : both.blue, both.green, swapRedBlue ? both.blue : both.red,
              dst);
    }

private:
    struct Chroma {
        __m128i u, v;
    };
    struct Channels {
        __m128i blue, green, red;
    };

    static __m128i load(const unsigned char* p) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    }

    template <bool swapUV>
    static Chroma centred(__m128i pairs) {
        const __m128i middle = _mm_set1_epi16(128);
        const __m128i first = _mm_sub_epi16(_mm_and_si128(pairs, _mm_set1_epi16(0xff)), middle);
        const __m128i second = _mm_sub_epi16(_mm_srli_epi16(pairs, 8), middle);
        return swapUV ? Chroma{first, second} : Chroma{second, first};
    }

    // Sums of products in 8 lanes.
    struct Sums {
        __m128i low, high;
    };

    static Sums weighted(__m128i a, int weightA, __m128i b, int weightB) {
        const __m128i weights = _mm_set1_epi32(weightB * 65536 + (weightA & 0xffff));
        return {_mm_madd_epi16(_mm_unpacklo_epi16(a, b), weights),
                _mm_madd_epi16(_mm_unpackhi_epi16(a, b), weights)};
    }

    static Sums added(const Sums& a, const Sums& b) {
        return {_mm_add_epi32(a.low, b.low), _mm_add_epi32(a.high, b.high)};
    }

    // The results lie in -512 to 1023, so that saturating them to bytes is the clamp of the sum.
    static __m128i shifted(const Sums& sums) {
        return _mm_packs_epi32(_mm_srai_epi32(sums.low, 10), _mm_srai_epi32(sums.high, 10));
    }

    static Channels channels(__m128i y, const Chroma& pairs) {
        const Sums green =
            added(weighted(y, 1192, pairs.u, -400), weighted(pairs.v, -833, pairs.v, 0));
        return {shifted(weighted(y, 1192, pairs.u, 2066)), shifted(green),
                shifted(weighted(y, 1192, pairs.v, 1634))};
    }

    // Even and odd pixels as bytes in their order.
    static __m128i zipped(__m128i even, __m128i odd) {
        const __m128i halves = _mm_packus_epi16(even, odd);
        return _mm_unpacklo_epi8(halves, _mm_srli_si128(halves, 8));
    }

    // Four pixels of four bytes, the last one 0, to 12 bytes and four of 0.
    static __m128i closeGaps(__m128i pixels) {
        const __m128i even = _mm_and_si128(pixels, _mm_set_epi32(0, -1, 0, -1));
        const __m128i odd = _mm_srli_epi64(_mm_sub_epi32(pixels, even), 8);
        const __m128i halves = _mm_or_si128(even, odd);
        return _mm_or_si128(_mm_move_epi64(halves), _mm_slli_si128(_mm_srli_si128(halves, 8), 6));
    }

    static void store(__m128i first, __m128i second, __m128i third, unsigned char* dst) {
        const __m128i zero = _mm_setzero_si128();
        const __m128i lowPairs = _mm_unpacklo_epi8(first, second);
        const __m128i highPairs = _mm_unpackhi_epi8(first, second);
        const __m128i lowThirds = _mm_unpacklo_epi8(third, zero);
        const __m128i highThirds = _mm_unpackhi_epi8(third, zero);
        const __m128i a = closeGaps(_mm_unpacklo_epi16(lowPairs, lowThirds));
        const __m128i b = closeGaps(_mm_unpackhi_epi16(lowPairs, lowThirds));
        const __m128i c = closeGaps(_mm_unpacklo_epi16(highPairs, highThirds));
        const __m128i d = closeGaps(_mm_unpackhi_epi16(highPairs, highThirds));
        __m128i* out = reinterpret_cast<__m128i*>(dst);
        _mm_storeu_si128(out, _mm_or_si128(a, _mm_slli_si128(b, 12)));
        _mm_storeu_si128(out + 1, _mm_or_si128(_mm_srli_si128(b, 4), _mm_slli_si128(c, 8)));
        _mm_storeu_si128(out + 2, _mm_or_si128(_mm_srli_si128(c, 8), _mm_slli_si128(d, 4)));
    }
};

}  // namespace KZ

#endif
