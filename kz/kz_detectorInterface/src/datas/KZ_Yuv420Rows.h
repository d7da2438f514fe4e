#pragma once

#include <vector>

namespace KZ {

/// Writes the three bytes of one pixel, B, G, R (or R, G, B), and moves `dst` behind them. `y` is
/// the full-range byte, taken without an offset, `u` and `v` are bytes less 128. The weights are
/// this system's own: the trained data have seen the pictures that they give.
inline void computeBgr(int y, int u, int v, unsigned char*& dst, bool swapRedBlue) {
    const auto channel = [](int value) {
        const int limit = 0x3ffff;
        return static_cast<unsigned char>((value < 0 ? 0 : value > limit ? limit : value) >> 10);
    };
    const unsigned char blue = channel(1192 * y + 2066 * u);
    const unsigned char red = channel(1192 * y + 1634 * v);
    dst[0] = swapRedBlue ? red : blue;
    dst[1] = channel(1192 * y - 400 * u - 833 * v);
    dst[2] = swapRedBlue ? blue : red;
    dst += 3;
}

/// Converts `count` pairs of chroma with their luma. Full size: 2 * `count` pixels, a pair serves
/// two. Half size: `count` pixels, each the first of two with its pair. No alignment is required.
using YuvRow = void (*)(const unsigned char* luma, const unsigned char* chroma, unsigned char* dst,
                        int count);

/// The function for a size, an order of bytes written and an order of chroma bytes; see
/// yuv420toBgr.
struct YuvRowVariant {
    const char* name;
    YuvRow (*row)(bool zoomTwice, bool swapRedBlue, bool swapUV);
};

/// The variants in this binary: first the scalar definition, last the one that yuv420toBgr uses.
/// All give the same bytes.
const std::vector<YuvRowVariant>& yuvRowVariants();

}  // namespace KZ
