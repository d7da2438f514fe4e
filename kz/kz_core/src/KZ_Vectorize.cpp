#include "KZ_Vectorize.h"

#include <cstdint>

#include "KZ_BilinearRows.h"
#include "KZ_Check.h"

namespace KZ {

namespace {

// Taps of all target pixels, the outer edges of the two sides coinciding.
std::vector<BilinearTap> edgeTaps(int sourceSide, int targetSide) {
    std::vector<BilinearTap> taps;
    for (int i = 0; i < targetSide; ++i) {
        const int64_t middle =
            (2 * static_cast<int64_t>(i) + 1) * sourceSide * 128 / targetSide - 128;
        taps.push_back(bilinearTap(static_cast<int>(middle), sourceSide));
    }
    return taps;
}

void scaleToTarget(const Image& source, Image& target) {
    KZ_ASSERT(source.size().area() != 0, "empty source: " << source.size());
    scaleBilinearBytes(source, target, target.rect(), edgeTaps(source.width(), target.width()),
                       edgeTaps(source.height(), target.height()));
}

}  // namespace

void scaleBilinearV_N32(const Image& source, Image& target) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    KZ_CHECK_COLOR_MODE(target, COLOR_MODE_MONO);
    scaleToTarget(source, target);
}

void Vectorize::bilinearScale(const Image& source, Image& target) {
    KZ_ASSERT_EQ(source.depth(), target.depth());
    switch (source.colorMode()) {
        case COLOR_MODE_BGR:
        case COLOR_MODE_RGB:
        case COLOR_MODE_YUV:
            return scaleBilinearRGB8bit(source, target);
        case COLOR_MODE_MONO:
        case COLOR_MODE_RGBA:
            return bilinearScaleRGB_cStyle(source, target);
        default:
            KZ_ASSERT(0,
                      "Unknown colorMode of bilinearScale: " << colorModeName(source.colorMode()));
    }
}

void Vectorize::scaleBilinearRGB8bit(const Image& source, Image& target) {
    KZ_ASSERT_EQ(source.depth(), 3);
    bilinearScaleRGB_cStyle(source, target);
}

void Vectorize::bilinearScaleRGB_cStyle(const Image& source, Image& target) {
    KZ_ASSERT_EQ(source.depth(), target.depth());
    scaleToTarget(source, target);
}

}  // namespace KZ
