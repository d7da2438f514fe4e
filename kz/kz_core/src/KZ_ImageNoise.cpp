#include "KZ_PixelArithmetic.h"
#include "KZ_PixelRows.h"
#include "KZ_Random.h"

namespace KZ {

namespace {

template <typename Draw>
void addNoise(const Image& source, Image& target, const Rect& rect, Draw draw) {
    const Rect region = regionOf(source, rect);
    target.create(source.size(), COLOR_MODE_MONO);
    mapCells<unsigned char, unsigned char>(source, target, region, [draw](unsigned char s) {
        return saturated<unsigned char>(static_cast<float>(s) + draw() + 0.5f);
    });
}

}  // namespace

void addWhiteNoise(const Image& source, Image& target, float amplitude, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    addNoise(source, target, rect, [=] { return randomUniform(-amplitude, amplitude); });
}

void addGaussianNoise(const Image& source, Image& target, float sigma, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    addNoise(source, target, rect, [=] { return randomNormal(0.0f, sigma); });
}

}  // namespace KZ
