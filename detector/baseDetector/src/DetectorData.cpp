#include "DetectorData.h"

#include "KZ_Check.h"
#include "KZ_ColorConversion.h"
#include "KZ_IntegralImage.h"
#include "KZ_Matrix.h"

namespace {

const int DEFAULT_LAYERS = 20;
// The hash of a zoom in the classifiers counts layers of this ratio.
const float LAYER_RATIO = 1.2f;
const float QUARTER_TURN = 1.5707964f;

KZ::Side::Value mirrored(KZ::Side::Value side) {
    if (side == KZ::Side::RIGHT) return KZ::Side::LEFT;
    if (side == KZ::Side::LEFT) return KZ::Side::RIGHT;
    return side;
}

// Middle of a side of `pixels` mono pixels. It goes through input pixels and back, as the location
// does.
float middle(int pixels, int scale) {
    return static_cast<float>(pixels * scale) / static_cast<float>(scale) * 0.5f;
}

}  // namespace

DetectorData::DetectorData() {
    setPyramidParameters(1.0f, DEFAULT_LAYERS);
}

void DetectorData::setPyramidParameters(float startZoom, int numLayers) {
    // As an unsigned number a negative count would mean billions; the pyramid refuses 0.
    rmctPyramid.init(static_cast<unsigned int>(numLayers > 0 ? numLayers : 0), startZoom,
                     LAYER_RATIO);
}

void DetectorData::computeBase(const KZ::Image& image) {
    if (mono.isCreated()) previousMono = mono;
    switch (image.colorMode()) {
        case KZ::COLOR_MODE_MONO:
            mono = image;
            break;
        case KZ::COLOR_MODE_BGR:
            bgr.createRef(image);
            KZ::toMono(bgr, mono, KZ::Rect());
            break;
        default:
            KZ_ASSERT(0, "unsupported color mode: " << KZ::colorModeName(image.colorMode()));
    }
    if (!previousMono.isCreated()) previousMono = mono;
}

void DetectorData::compute(const KZ::Image& image, const KZ::Rect& rect) {
    KZ_CHECK_CONTAINS(image.rect(), rect);
    computeBase(image);
    compute(rect);
}

void DetectorData::compute(const KZ::Rect& rect) {
    if (rect.area() == 0) {
        resetProducts();
        return;
    }
    KZ::computeIntegral(mono, integral, rect);
    rmctPyramid.setMono(mono);
    rmctPyramid.compute(rect);
}

void DetectorData::resetProducts() {
    integral.reset();
    rmctPyramid.freeMemory();
}

void DetectorData::reset() {
    inputFramePart.clear();
    outputFramePart.clear();
    frameState = 0;
    inputImage.reset();
    bgr.reset();
    mono.reset();
    previousMono.reset();
    resetProducts();
}

const KZ::Image& DetectorData::getImage(KZ::ColorMode mode) {
    switch (mode) {
        case KZ::COLOR_MODE_BGR:
            return bgr;
        case KZ::COLOR_MODE_MONO:
            return mono;
        case KZ::COLOR_MODE_RGB:
            KZ::toRgb(bgr, rgb, KZ::Rect());
            return rgb;
        default:
            KZ_ASSERT(0, "unsupported color mode: " << KZ::colorModeName(mode));
    }
    return mono;
}

void DetectorData::save(const std::string& dir, const std::string& extension) {
    integral.save(dir + "/integral" + extension);
    rmctPyramid.save(dir + "/rmctPyramid", extension);
}

LocationState DetectorData::getInputLocationState(const LocationState& location) {
    KZ_ASSERT_EQ(preprocessingAngle % 90, 0);
    LocationState state = location;
    const int quarters = (preprocessingAngle + 360) / 90;
    const bool sidesTrade = quarters % 2 != 0;
    const KZ::Size turned = sidesTrade ? KZ::Size(mono.height(), mono.width()) : mono.size();

    if (flipped) {
        state.side = mirrored(state.side);
        state.center.x = static_cast<float>(mono.width()) - state.center.x;
    }
    const KZ::Matrix rotation = KZ::rotationMatrix2d(static_cast<float>(quarters) * QUARTER_TURN);
    const float dx = state.center.x - static_cast<float>(mono.width()) * 0.5f;
    const float dy = state.center.y - static_cast<float>(mono.height()) * 0.5f;
    state.center.x = rotation.at(0, 0) * dx + rotation.at(0, 1) * dy + middle(turned.width, scale);
    state.center.y = rotation.at(1, 0) * dx + rotation.at(1, 1) * dy + middle(turned.height, scale);
    if (sidesTrade) std::swap(state.size.width, state.size.height);

    const float factor = static_cast<float>(scale);
    state.center = state.center * factor;
    state.size.width *= factor;
    state.size.height *= factor;
    return state;
}
