#pragma once

#if defined(__ARM_NEON)

#include <arm_neon.h>

namespace KZ {

/// 16 pixels of a row of YUV420; see yuv420toBgr.
struct NeonBlock {
    /// Reads 16 bytes of luma and of chroma, with `zoomTwice` 32 of each; writes 48.
    template <bool zoomTwice, bool swapRedBlue, bool swapUV>
    static void run(const unsigned char* luma, const unsigned char* chroma, unsigned char* dst) {
        const uint8x8x2_t bytes = vld2_u8(luma);
        const Chroma pairs = centred<swapUV>(vld2_u8(chroma));
        const Channels first = channels(bytes.val[0], pairs);
        Channels second;
        if (zoomTwice)
            second = channels(vld2_u8(luma + 16).val[0], centred<swapUV>(vld2_u8(chroma + 16)));
        else
            second = channels(bytes.val[1], pairs);
        const uint8x16_t blue = joined<zoomTwice>(first.blue, second.blue);
        const uint8x16_t red = joined<zoomTwice>(first.red, second.red);
        uint8x16x3_t pixels;
        pixels.val[0] = swapRedBlue ? red : blue;
        pixels.val[1] = joined<zoomTwice>(first.green, second.green);
        pixels.val[2] = swapRedBlue ? blue : red;
        vst3q_u8(dst, pixels);
    }

private:
    struct Chroma {
        int16x8_t u, v;
    };
    struct Channels {
        uint8x8_t blue, green, red;
    };

    static int16x8_t widened(uint8x8_t bytes) { return vreinterpretq_s16_u16(vmovl_u8(bytes)); }

    template <bool swapUV>
    static Chroma centred(uint8x8x2_t pairs) {
        const int16x8_t middle = vdupq_n_s16(128);
        const int16x8_t first = vsubq_s16(widened(pairs.val[0]), middle);
        const int16x8_t second = vsubq_s16(widened(pairs.val[1]), middle);
        return swapUV ? Chroma{first, second} : Chroma{second, first};
    }

    // Of two sums before the shift. Results lie in -512 to 1023, so that saturating them to bytes
    // is the clamp of the sum.
    static uint8x8_t narrowed(int32x4_t low, int32x4_t high) {
        return vqmovun_s16(vcombine_s16(vshrn_n_s32(low, 10), vshrn_n_s32(high, 10)));
    }

    static Channels channels(uint8x8_t lumaBytes, const Chroma& pairs) {
        const int16x8_t y = widened(lumaBytes);
        const int16x4_t uLow = vget_low_s16(pairs.u), uHigh = vget_high_s16(pairs.u);
        const int16x4_t vLow = vget_low_s16(pairs.v), vHigh = vget_high_s16(pairs.v);
        const int32x4_t low = vmull_n_s16(vget_low_s16(y), 1192);
        const int32x4_t high = vmull_n_s16(vget_high_s16(y), 1192);
        return {narrowed(vmlal_n_s16(low, uLow, 2066), vmlal_n_s16(high, uHigh, 2066)),
                narrowed(vmlal_n_s16(vmlal_n_s16(low, uLow, -400), vLow, -833),
                         vmlal_n_s16(vmlal_n_s16(high, uHigh, -400), vHigh, -833)),
                narrowed(vmlal_n_s16(low, vLow, 1634), vmlal_n_s16(high, vHigh, 1634))};
    }

    // Two runs of pixels, or even and odd ones, in their order.
    template <bool runs>
    static uint8x16_t joined(uint8x8_t first, uint8x8_t second) {
        if (runs) return vcombine_u8(first, second);
        const uint8x8x2_t zipped = vzip_u8(first, second);
        return vcombine_u8(zipped.val[0], zipped.val[1]);
    }
};

}  // namespace KZ

#endif
