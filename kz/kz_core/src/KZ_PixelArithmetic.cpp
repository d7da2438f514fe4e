#include "KZ_PixelArithmetic.h"

#include <algorithm>
#include <cstdint>

#include "KZ_PixelRows.h"

// Operations on one image; each keeps its source's mode.

namespace KZ {

namespace {

using Byte = unsigned char;

template <typename T, typename Operation>
void mapImage(const Image& source, Image& target, const Rect& rect, Operation operation) {
    const Rect region = regionOf(source, rect);
    target.create(source.size(), source.colorMode());
    mapCells<T, T>(source, target, region, operation);
}

}  // namespace

void addValue(const Image& source, Image& target, unsigned char v, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    mapImage<Byte>(source, target, rect,
                   [v](Byte s) { return static_cast<Byte>(std::min(s + v, 255)); });
}

void addValue(const Image& source, Image& target, int v, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    const int shift = std::min(std::max(v, -255), 255);
    mapImage<Byte>(source, target, rect, [shift](Byte s) { return saturatedByte(s + shift); });
}

void addValueF(const Image& source, Image& target, float v, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_FLOAT);
    mapImage<float>(source, target, rect, [v](float s) { return s + v; });
}

void subtractValue(const Image& source, Image& target, unsigned char v, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    mapImage<Byte>(source, target, rect,
                   [v](Byte s) { return static_cast<Byte>(std::max(s - v, 0)); });
}

void multiplyValue(const Image& source, Image& target, float k, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    mapImage<Byte>(source, target, rect,
                   [k](Byte s) { return saturated<Byte>(static_cast<float>(s) * k); });
}

void multiplyValueColor(const Image& source, Image& target, float k, const Rect& rect) {
    KZ_ASSERT(source.colorMode() == COLOR_MODE_BGR || source.colorMode() == COLOR_MODE_RGB,
              "have " << colorModeName(source.colorMode())
                      << ", but need COLOR_MODE_BGR or COLOR_MODE_RGB");
    const Rect region = regionOf(source, rect);
    target.create(source.size(), source.colorMode());
    forRows<Byte, Byte>(source, target, region, [k](const Byte* s, Byte* t, int n) {
        for (int i = 0; i < 3 * n; ++i) t[i] = saturated<Byte>(static_cast<float>(s[i]) * k);
    });
}

void multiplyValueS(const Image& source, Image& target, float k, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO16);
    mapImage<uint16_t>(source, target, rect,
                       [k](uint16_t s) { return saturated<uint16_t>(static_cast<float>(s) * k); });
}

void multiplyValueF(const Image& source, Image& target, float k, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_FLOAT);
    mapImage<float>(source, target, rect, [k](float s) { return s * k; });
}

void linearTransform(const Image& source, Image& target, float k, float b, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    mapImage<Byte>(source, target, rect,
                   [k, b](Byte s) { return saturated<Byte>(k * static_cast<float>(s) + b); });
}

void minImage(const Image& source, Image& target, unsigned char v, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    mapImage<Byte>(source, target, rect, [v](Byte s) { return std::min(s, v); });
}

void invertMono(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    mapImage<Byte>(source, target, rect, [](Byte s) { return static_cast<Byte>(255 - s); });
}

}  // namespace KZ
