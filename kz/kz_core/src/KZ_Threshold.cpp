#include <algorithm>
#include <cstdint>

#include "KZ_IntegralImage.h"
#include "KZ_PixelArithmetic.h"
#include "KZ_PixelRows.h"

// Operations that tell light from dark.

namespace KZ {

namespace {

unsigned char inRange(unsigned int value, unsigned int low, unsigned int high) {
    return value < high && value >= low ? 255 : 0;
}

}  // namespace

void threshold(const Image& source, Image& target, unsigned int v, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    const Rect region = regionOf(source, rect);
    target.create(source.size(), COLOR_MODE_MONO);
    mapCells<unsigned char, unsigned char>(source, target, region, [v](unsigned char s) {
        return static_cast<unsigned char>(s < v ? 0 : 255);
    });
}

void threshold(const Image& source, Image& target, unsigned int low, unsigned int high,
               const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    const Rect region = regionOf(source, rect);
    target.create(source.size(), COLOR_MODE_MONO);
    mapCells<unsigned char, unsigned char>(
        source, target, region, [low, high](unsigned char s) { return inRange(s, low, high); });
}

void threshold(Image& image, unsigned int v, const Rect& rect) {
    threshold(image, image, v, rect);
}

void threshold(Image& image, unsigned int low, unsigned int high, const Rect& rect) {
    threshold(image, image, low, high, rect);
}

void depthThreshold(const Image& source, Image& target, unsigned int low, unsigned int high,
                    const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_DEPTH);
    const Rect region = regionOf(source, rect);
    target.create(source.size(), COLOR_MODE_MONO);
    mapCells<uint16_t, unsigned char>(source, target, region,
                                      [low, high](uint16_t s) { return inRange(s, low, high); });
}

void adaptiveImage(const Image& source, Image& target, int radius, int offset, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    KZ_ASSERT_GE(radius, 0);
    const Rect region = regionOf(source, rect);
    Image integral;
    computeIntegral(source, integral);
    target.create(source.size(), COLOR_MODE_MONO);
    const int reach = std::min(radius, std::max(source.width(), source.height()));
    for (int y = region.top; y < region.bottom; ++y) {
        const int top = std::max(y - reach, 0), bottom = std::min(y + reach + 1, source.height());
        const uint32_t* above = integral.row<uint32_t>(top);
        const uint32_t* below = integral.row<uint32_t>(bottom);
        for (int x = region.left; x < region.right; ++x) {
            const int left = std::max(x - reach, 0),
                      right = std::min(x + reach + 1, source.width());
            const uint32_t sum = below[right] - below[left] - above[right] + above[left];
            const int64_t area = static_cast<int64_t>(right - left) * (bottom - top);
            const int64_t excess = (static_cast<int64_t>(*source.data(x, y)) - offset) * area;
            *target.data(x, y) = excess > static_cast<int64_t>(sum) ? 255 : 0;
        }
    }
}

}  // namespace KZ
