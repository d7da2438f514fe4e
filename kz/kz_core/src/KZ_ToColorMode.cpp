#include "KZ_ColorConversion.h"
#include "KZ_CopyImage.h"
#include "KZ_IntegralImage.h"
#include "KZ_PixelRows.h"
#include "KZ_RmctTransform.h"
#include "KZ_Sobel.h"

// The dispatchers by source mode, and the one by target mode.

namespace KZ {

namespace {

const unsigned short NEAREST_DEPTH = 500;
const unsigned short FARTHEST_DEPTH = 5000;

// Unlike the conversions, a copy cuts the rectangle off at the image's border.
void copyAs(const Image& source, Image& target, ColorMode mode, const Rect& rect) {
    target.create(source.size(), mode);
    copyImage(source, target, meansAll(rect) ? source.rect() : rect);
}

}  // namespace

void toMono(const Image& source, Image& target, const Rect& rect) {
    switch (source.colorMode()) {
        case COLOR_MODE_MONO:
            return copyAs(source, target, COLOR_MODE_MONO, rect);
        case COLOR_MODE_DEPTH:
            return depthToMono(source, target, NEAREST_DEPTH, FARTHEST_DEPTH, rect);
        case COLOR_MODE_BGR:
            return bgrToMono(source, target, rect);
        case COLOR_MODE_RGB:
            return rgbToMono(source, target, rect);
        case COLOR_MODE_YUV:
            return yuvToMono(source, target, rect);
        case COLOR_MODE_RGBA:
            return rgbaToMono(source, target, rect);
        case COLOR_MODE_FLOAT:
            return floatToMono(source, target, 0.0f, 1.0f, rect);
        default:
            KZ_ASSERT(0, "color mode not handled: " << colorModeName(source.colorMode()));
    }
}

void toBgr(const Image& source, Image& target, const Rect& rect) {
    switch (source.colorMode()) {
        case COLOR_MODE_MONO:
            return monoToBgr(source, target, rect);
        case COLOR_MODE_MONO16:
            return mono16ToBgr(source, target, 1.0f, rect);
        case COLOR_MODE_DEPTH:
            return depthToBgr(source, target, NEAREST_DEPTH, FARTHEST_DEPTH, rect);
        case COLOR_MODE_BGR:
            return copyAs(source, target, COLOR_MODE_BGR, rect);
        case COLOR_MODE_RGB:
            return rgbToBgr(source, target, rect);
        case COLOR_MODE_YUV:
            return yuvToBgr(source, target, rect);
        case COLOR_MODE_RGBA:
            return rgbaToBgr(source, target, rect);
        case COLOR_MODE_FLOAT:
            return floatToBgr(source, target, 0.0f, 100.0f, rect);
        default:
            KZ_ASSERT(0, "color mode not handled: " << colorModeName(source.colorMode()));
    }
}

void toRgb(const Image& source, Image& target, const Rect& rect) {
    switch (source.colorMode()) {
        case COLOR_MODE_MONO:
            return monoToRgb(source, target, rect);
        case COLOR_MODE_MONO16:
            return mono16ToRgb(source, target, 1.0f, rect);
        case COLOR_MODE_DEPTH:
            return depthToRgb(source, target, NEAREST_DEPTH, FARTHEST_DEPTH, rect);
        case COLOR_MODE_BGR:
            return bgrToRgb(source, target, rect);
        case COLOR_MODE_RGB:
            return copyAs(source, target, COLOR_MODE_RGB, rect);
        case COLOR_MODE_YUV:
            return yuvToRgb(source, target, rect);
        default:
            KZ_ASSERT(0, "color mode not handled: " << colorModeName(source.colorMode()));
    }
}

void toRgba(const Image& source, Image& target, const Rect& rect) {
    switch (source.colorMode()) {
        case COLOR_MODE_MONO:
            return monoToRgba(source, target, rect);
        case COLOR_MODE_MONO16:
            return mono16ToRgba(source, target, 100.0f, rect);
        case COLOR_MODE_BGR:
            return bgrToRgba(source, target, rect);
        case COLOR_MODE_RGB:
            return rgbToRgba(source, target, rect);
        case COLOR_MODE_YUV:
            return yuvToRgba(source, target, rect);
        case COLOR_MODE_RGBA:
            return copyAs(source, target, COLOR_MODE_RGBA, rect);
        default:
            KZ_ASSERT(0, "color mode not handled: " << colorModeName(source.colorMode()));
    }
}

void toYuv(const Image& source, Image& target, const Rect& rect) {
    switch (source.colorMode()) {
        case COLOR_MODE_MONO:
            return monoToYuv(source, target, rect);
        case COLOR_MODE_BGR:
            return bgrToYuv(source, target, rect);
        case COLOR_MODE_RGB:
            return rgbToYuv(source, target, rect);
        case COLOR_MODE_YUV:
            return copyAs(source, target, COLOR_MODE_YUV, rect);
        case COLOR_MODE_RGBA:
            return rgbaToYuv(source, target, rect);
        default:
            KZ_ASSERT(0, "color mode not handled: " << colorModeName(source.colorMode()));
    }
}

void toColorMode(const Image& source, Image& target, ColorMode mode, const Rect& rect) {
    // For the feature planes an explicit empty rectangle would mean "nothing".
    const Rect region = meansAll(rect) ? source.rect() : rect;
    switch (mode) {
        case COLOR_MODE_MONO:
            return toMono(source, target, rect);
        case COLOR_MODE_DEPTH:
            return copyAs(source, target, COLOR_MODE_DEPTH, rect);
        case COLOR_MODE_RMCT:
            return computeRmct(source, target, region);
        case COLOR_MODE_BGR:
            return toBgr(source, target, rect);
        case COLOR_MODE_RGB:
            return toRgb(source, target, rect);
        case COLOR_MODE_YUV:
            return toYuv(source, target, rect);
        case COLOR_MODE_RGBA:
            return toRgba(source, target, rect);
        case COLOR_MODE_INTEGRAL:
            return computeIntegral(source, target, region);
        case COLOR_MODE_GRADIENT:
            return SobelGradient(source, target, rect);
        default:
            KZ_ASSERT(0, "color mode not handled: " << colorModeName(mode));
    }
}

}  // namespace KZ
