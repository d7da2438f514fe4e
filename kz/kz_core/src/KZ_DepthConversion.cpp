#include <cstdint>

#include "KZ_ColorConversion.h"
#include "KZ_PixelRows.h"

// Conversions of 16-bit, float and depth images.

namespace KZ {

namespace {

// Writes byteOf(cell) to the first `colors` bytes of each target pixel, and 255 to a fourth.
template <typename S, typename ByteOf>
void grayToColor(const Image& source, Image& target, const Rect& region, ByteOf byteOf) {
    const int depth = target.depth();
    forRows<S, unsigned char>(source, target, region, [=](const S* s, unsigned char* t, int n) {
        for (int x = 0; x < n; ++x, t += depth) {
            t[0] = t[1] = t[2] = byteOf(s[x]);
            if (depth == 4) t[3] = 255;
        }
    });
}

void mono16ToColor(const Image& source, Image& target, ColorMode mode, float scale,
                   const Rect& rect) {
    const Rect region = regionOf(source, rect);
    target.create(source.size(), mode);
    grayToColor<uint16_t>(source, target, region, [scale](uint16_t value) {
        return saturated<unsigned char>(static_cast<float>(value) * scale);
    });
}

// `red` and `blue` are the byte positions of these channels.
void depthToColor(const Image& source, Image& target, ColorMode mode, unsigned short minDepth,
                  unsigned short maxDepth, const Rect& rect, int red, int blue) {
    const Rect region = regionOf(source, rect);
    target.create(source.size(), mode);
    forRows<uint16_t, unsigned char>(
        source, target, region, [=](const uint16_t* s, unsigned char* t, int n) {
            for (int x = 0; x < n; ++x, t += 3)
                pixelToRGB(s[x], t[red], t[1], t[blue], minDepth, maxDepth);
        });
}

}  // namespace

void mono16ToMono(const Image& source, Image& target, float scale, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO16);
    const Rect region = regionOf(source, rect);
    target.create(source.size(), COLOR_MODE_MONO);
    mapCells<uint16_t, unsigned char>(source, target, region, [scale](uint16_t value) {
        return saturated<unsigned char>(static_cast<float>(value) * scale);
    });
}

void mono16ToBgr(const Image& source, Image& target, float scale, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO16);
    mono16ToColor(source, target, COLOR_MODE_BGR, scale, rect);
}

void mono16ToRgb(const Image& source, Image& target, float scale, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO16);
    mono16ToColor(source, target, COLOR_MODE_RGB, scale, rect);
}

void mono16ToRgba(const Image& source, Image& target, float scale, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO16);
    mono16ToColor(source, target, COLOR_MODE_RGBA, scale, rect);
}

void monoToFloat(const Image& source, Image& target, float scale, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    const Rect region = regionOf(source, rect);
    target.create(source.size(), COLOR_MODE_FLOAT);
    mapCells<unsigned char, float>(source, target, region, [scale](unsigned char value) {
        return static_cast<float>(value) * scale;
    });
}

void mono16ToFloat(const Image& source, Image& target, float scale, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO16);
    const Rect region = regionOf(source, rect);
    target.create(source.size(), COLOR_MODE_FLOAT);
    mapCells<uint16_t, float>(source, target, region, [scale](uint16_t value) {
        return static_cast<float>(value) * scale;
    });
}

void floatToMono(const Image& source, Image& target, float offset, float scale, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_FLOAT);
    const Rect region = regionOf(source, rect);
    target.create(source.size(), COLOR_MODE_MONO);
    mapCells<float, unsigned char>(source, target, region, [offset, scale](float value) {
        return saturated<unsigned char>(offset + value * scale);
    });
}

void floatToBgr(const Image& source, Image& target, float offset, float scale, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_FLOAT);
    const Rect region = regionOf(source, rect);
    target.create(source.size(), COLOR_MODE_BGR);
    grayToColor<float>(source, target, region, [offset, scale](float value) {
        return saturated<unsigned char>(offset + value * scale);
    });
}

void floatToFloat2(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_FLOAT);
    const Rect region = regionOf(source, rect);
    target.create(source.size(), COLOR_MODE_FLOAT2);
    forRows<float, float>(source, target, region, [](const float* s, float* t, int n) {
        for (int x = 0; x < n; ++x) {
            t[2 * x] = s[x];
            t[2 * x + 1] = 0;
        }
    });
}

void depthToMono(const Image& source, Image& target, unsigned short minDepth,
                 unsigned short maxDepth, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_DEPTH);
    KZ_ASSERT_GT(maxDepth, minDepth);
    const Rect region = regionOf(source, rect);
    target.create(source.size(), COLOR_MODE_MONO);
    const double scale = 255.0 / (maxDepth - minDepth);
    mapCells<uint16_t, unsigned char>(source, target, region, [=](uint16_t value) {
        const int grey = static_cast<int>(scale * (value - minDepth));
        return static_cast<unsigned char>(grey < 0 ? 0 : grey);
    });
}

void depthToBgr(const Image& source, Image& target, unsigned short minDepth,
                unsigned short maxDepth, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_DEPTH);
    KZ_ASSERT_GT(maxDepth, minDepth);
    depthToColor(source, target, COLOR_MODE_BGR, minDepth, maxDepth, rect, 2, 0);
}

void depthToRgb(const Image& source, Image& target, unsigned short minDepth,
                unsigned short maxDepth, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_DEPTH);
    KZ_ASSERT_GT(maxDepth, minDepth);
    depthToColor(source, target, COLOR_MODE_RGB, minDepth, maxDepth, rect, 0, 2);
}

void pixelToRGB(unsigned short value, unsigned char& r, unsigned char& g, unsigned char& b,
                unsigned short minDepth, unsigned short maxDepth) {
    KZ_ASSERT_GT(maxDepth, minDepth);
    // Four ramps of 255 steps: green up, red down, blue up, green down.
    const int RAMP = 255;
    const int position = 4 * RAMP * (value - minDepth) / (maxDepth - minDepth);
    r = saturatedByte(2 * RAMP - position);
    g = saturatedByte(position < 2 * RAMP ? position : 4 * RAMP - position);
    b = saturatedByte(position - 2 * RAMP);
}

}  // namespace KZ
