#include <algorithm>
#include <cstdint>

#include "KZ_PixelArithmetic.h"
#include "KZ_PixelRows.h"

// Numbers taken from an image: sums, means, extrema.

namespace KZ {

namespace {

uint64_t monoSum(const Image& image, const Rect& region) {
    uint64_t sum = 0;
    for (int y = region.top; y < region.bottom; ++y) {
        const unsigned char* row = image.data(region.left, y);
        uint32_t rowSum = 0;
        for (int x = 0; x < region.width(); ++x) rowSum += row[x];
        sum += rowSum;
    }
    return sum;
}

bool hasByteChannels(ColorMode mode) {
    return mode == COLOR_MODE_MONO || mode == COLOR_MODE_RMCT || mode == COLOR_MODE_GRADIENT ||
           isColor(mode);
}

// Position of the first cell for which `better(cell, best so far)` never holds afterwards.
template <typename T, typename Better>
Point bestCell(const Image& image, const Rect& region, Better better) {
    Point best(region.left, region.top);
    T bestValue = *reinterpret_cast<const T*>(image.data(best.x, best.y));
    for (int y = region.top; y < region.bottom; ++y) {
        const T* row = image.row<T>(y);
        for (int x = region.left; x < region.right; ++x) {
            if (!better(row[x], bestValue)) continue;
            best = Point(x, y);
            bestValue = row[x];
        }
    }
    return best;
}

template <typename Better>
Point findGlobalExtremum(const Image& image, const Rect& rect, Better better) {
    const Rect region = regionOf(image, rect);
    KZ_ASSERT(region.left < region.right && region.top < region.bottom, "empty rect: " << region);
    switch (image.colorMode()) {
        case COLOR_MODE_MONO:
            return bestCell<unsigned char>(image, region, better);
        case COLOR_MODE_MONO16:
        case COLOR_MODE_DEPTH:
            return bestCell<uint16_t>(image, region, better);
        case COLOR_MODE_FLOAT:
            return bestCell<float>(image, region, better);
        default:
            KZ_ASSERT(0, "color mode not handled: " << colorModeName(image.colorMode()));
            return Point();
    }
}

float valueAt(const Image& image, int x, int y) {
    switch (image.colorMode()) {
        case COLOR_MODE_MONO:
            return image.row<unsigned char>(y)[x];
        case COLOR_MODE_MONO16:
        case COLOR_MODE_DEPTH:
            return image.row<uint16_t>(y)[x];
        case COLOR_MODE_FLOAT:
            return image.row<float>(y)[x];
        default:
            KZ_ASSERT(0, "color mode not handled: " << colorModeName(image.colorMode()));
            return 0;
    }
}

// Distance from the middle one to the vertex of the parabola through three values.
float vertexOffset(float before, float here, float after) {
    const float bend = before - 2 * here + after;
    if (bend == 0) return 0;
    const float offset = 0.5f * (before - after) / bend;
    return std::min(std::max(offset, -0.5f), 0.5f);
}

}  // namespace

uint64_t imageSum(const Image& image, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(image, COLOR_MODE_MONO);
    return monoSum(image, regionOf(image, rect));
}

float imageMean(const Image& image, const Rect& rect) {
    if (image.colorMode() != COLOR_MODE_MONO)
        KZ_ASSERT(0, "only mono is supported, but got " << colorModeName(image.colorMode()));
    const Rect region = regionOf(image, rect);
    return static_cast<float>(monoSum(image, region)) /
           static_cast<float>(region.width() * region.height());
}

void imageMean(const Image& image, unsigned char* out, const Rect& rect) {
    KZ_ASSERT(hasByteChannels(image.colorMode()),
              "only 8-bit modes are supported, but got " << colorModeName(image.colorMode()));
    const Rect region = regionOf(image, rect);
    KZ_ASSERT(region.left < region.right && region.top < region.bottom, "empty rect: " << region);
    const int channels = image.depth();
    uint64_t sums[4] = {};
    for (int y = region.top; y < region.bottom; ++y) {
        const unsigned char* pixel = image.data(region.left, y);
        for (int x = region.left; x < region.right; ++x, pixel += channels)
            for (int c = 0; c < channels; ++c) sums[c] += pixel[c];
    }
    const uint64_t pixels =
        static_cast<uint64_t>(region.width()) * static_cast<uint64_t>(region.height());
    for (int c = 0; c < channels; ++c) out[c] = static_cast<unsigned char>(sums[c] / pixels);
}

unsigned char imageMax(const Image& image, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(image, COLOR_MODE_MONO);
    const Rect region = regionOf(image, rect);
    unsigned char largest = 0;
    for (int y = region.top; y < region.bottom; ++y) {
        const unsigned char* row = image.data(region.left, y);
        for (int x = 0; x < region.width(); ++x) largest = std::max(largest, row[x]);
    }
    return largest;
}

Point findGlobalMaximum(const Image& image, const Rect& rect) {
    return findGlobalExtremum(image, rect, [](auto value, auto best) { return value > best; });
}

Point findGlobalMinimum(const Image& image, const Rect& rect) {
    return findGlobalExtremum(image, rect, [](auto value, auto best) { return value < best; });
}

PointF findPreciseLocalExtremum(const Image& image, const Point& p) {
    KZ_ASSERT(p.x >= 0 && p.x < image.width() && p.y >= 0 && p.y < image.height(),
              p << " is out of " << image.rect());
    PointF extremum(p);
    const float here = valueAt(image, p.x, p.y);
    if (p.x > 0 && p.x + 1 < image.width())
        extremum.x +=
            vertexOffset(valueAt(image, p.x - 1, p.y), here, valueAt(image, p.x + 1, p.y));
    if (p.y > 0 && p.y + 1 < image.height())
        extremum.y +=
            vertexOffset(valueAt(image, p.x, p.y - 1), here, valueAt(image, p.x, p.y + 1));
    return extremum;
}

}  // namespace KZ
