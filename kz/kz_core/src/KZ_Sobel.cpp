#include "KZ_Sobel.h"

#include <algorithm>
#include <cstring>

#include "KZ_PixelRows.h"

namespace KZ {

namespace {

// Two signed bytes a pixel for columns `from` to `to`, all with neighbours on every side.
void sobelRow(const Image& source, int y, int from, int to, signed char* __restrict out) {
    const unsigned char* above = source.data(0, y - 1);
    const unsigned char* here = source.data(0, y);
    const unsigned char* below = source.data(0, y + 1);
    for (int x = from; x < to; ++x) {
        const int left = above[x - 1] + 2 * here[x - 1] + below[x - 1];
        const int right = above[x + 1] + 2 * here[x + 1] + below[x + 1];
        const int top = above[x - 1] + 2 * above[x] + above[x + 1];
        const int bottom = below[x - 1] + 2 * below[x] + below[x + 1];
        out[2 * (x - from)] = static_cast<signed char>((right - left) / 8);
        out[2 * (x - from) + 1] = static_cast<signed char>((bottom - top) / 8);
    }
}

}  // namespace

void SobelGradient(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    const Rect region = regionOf(source, rect);
    target.create(source.size(), COLOR_MODE_GRADIENT);
    const int from = std::max(region.left, 1), to = std::min(region.right, source.width() - 1);
    for (int y = region.top; y < region.bottom; ++y) {
        for (int x = region.left; x < region.right; ++x) std::memset(target.data(x, y), 0, 2);
        if (y > 0 && y + 1 < source.height() && from < to)
            sobelRow(source, y, from, to, reinterpret_cast<signed char*>(target.data(from, y)));
    }
}

}  // namespace KZ
