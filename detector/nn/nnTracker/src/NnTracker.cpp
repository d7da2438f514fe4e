#include "NnTracker.h"

#include <algorithm>
#include <cmath>

#include "KZ_Assert.h"
#include "KZ_Geometry.h"
#include "KZ_Truncate.h"

namespace {

// The names stand one behind the operations from 10 on; only a message reads them.
const char* const TYPE_NAMES[] = {"UNDEFINED",      "POSITION",       "REGRESSION_LOCATION",
                                  "LOCATION",       "LOCATION_ANGLE", "LOCATION_SIZE",
                                  "ZOOM",           "ZOOM_ANGLE",     "SIDE",
                                  "VERIFIER",       "SKELETON",       "STEREO_SKELETON",
                                  "HAND_DISPARITY", "MT_CNN"};

const char* typeName(int type) {
    const int count = static_cast<int>(sizeof(TYPE_NAMES) / sizeof(TYPE_NAMES[0]));
    return type >= 0 && type < count ? TYPE_NAMES[type] : "";
}

KZ::RelativeLocation reversed(const KZ::RelativeLocation& location) {
    KZ::RelativeLocation back = location;
    back.reverse();
    return back;
}

}  // namespace

NnTracker::Parameters::Parameters(Type::Value typeValue, const KZ::SharedPtr<NnDetector>& network,
                                  const KZ::SharedPtr<KZ::ImageData>& frames,
                                  const KZ::RelativeLocation& relative, float limit, bool fit,
                                  bool mirrored)
    : Parameters(typeValue, network, frames, relative, reversed(relative), limit, fit, mirrored) {}

NnTracker::Parameters::Parameters(Type::Value typeValue, const KZ::SharedPtr<NnDetector>& network,
                                  const KZ::SharedPtr<KZ::ImageData>& frames,
                                  const KZ::RelativeLocation& relative,
                                  const KZ::RelativeLocation& back, float limit, bool fit,
                                  bool mirrored)
    : type(typeValue),
      nnDetector(network),
      imageData(frames),
      relativeLocation(relative),
      reverseRelativeLocation(back),
      threshold(limit),
      fitToImage(fit),
      tryMirrored(mirrored) {}

NnTracker::NnTracker(Type::Value type, const KZ::SharedPtr<NnDetector>& nnDetector,
                     const KZ::RelativeLocation& relativeLocation, float threshold, bool fitToImage,
                     bool tryMirrored)
    : parameters_(type, nnDetector, KZ::SharedPtr<KZ::ImageData>(), relativeLocation, threshold,
                  fitToImage, tryMirrored) {}

std::string NnTracker::name() {
    KZ_ASSERT(parameters_.nnDetector->getName() != "", "nnDetector_: empty name");
    return "NnTracker " + parameters_.nnDetector->getName();
}

KZ::StateAggregator& NnTracker::states() {
    // The single-result form has no registry of its caller's: the states stay with the tracker.
    if (!stateAggregator_) stateAggregator_ = KZ::StateAggregator::newDetectorState();
    return *stateAggregator_;
}

void NnTracker::detect(KZ::SharedPtr<KZ::StateAggregator>& aggregator) {
    LocationState& location = aggregator->get<LocationState>();
    stateAggregator_ = aggregator;
    const KZ::Image& image = parameters_.imageData->get();
    bool verified = false;
    float score = 0;
    detect(image, location, verified, score);
    if (parameters_.type == Type::VERIFIER || parameters_.type == Type::MT_CNN) {
        aggregator->get<KZ::NumericState<bool, _VerifiedState>>().value = verified;
    }
    aggregator->get<KZ::NumericState<float, KZ::_ScoreState>>().value = score;
}

void NnTracker::detect(DetectorData& data, const KZ::DetectRegion&, DetectorResult& result) {
    float score = 0;
    const KZ::Image& image = data.getImage(parameters_.nnDetector->getInputColorMode());
    detect(image, result.location, result.found, score);
    if (parameters_.type == Type::VERIFIER && !result.found) result.reset();
    result.score = score;
}

void NnTracker::detect(const KZ::Image& image, LocationState& location, bool& verified,
                       float& score) {
    if (!location.isSet()) return;
    static_cast<KZ::ObjectLocation&>(location) =
        parameters_.relativeLocation.getLocationState(location);
    const KZ::Size size = patchSize();
    if (parameters_.fitToImage) fit(image, size, location);
    KZ::Image patch;
    location.getPatch(image, size, patch, true);
    run(patch, location, verified, score);
    if (location.isSet()) {
        static_cast<KZ::ObjectLocation&>(location) =
            parameters_.reverseRelativeLocation.getLocationState(location);
    }
    KZ_LOG_INFO(name() << location << " score = " << score);
}

KZ::Size NnTracker::patchSize() const {
    const KZ::Size size = parameters_.nnDetector->getSize();
    if (parameters_.type == Type::STEREO_SKELETON) return KZ::Size(size.width, size.height / 2);
    if (parameters_.type == Type::HAND_DISPARITY) return KZ::Size(size.height / 4, size.width);
    return size;
}

void NnTracker::fit(const KZ::Image& image, const KZ::Size& size, LocationState& location) const {
    KZ::ObjectLocation copy = location;
    copy.size.height =
        copy.size.width * static_cast<float>(size.height) / static_cast<float>(size.width);
    const KZ::RectF rect = copy.getRect();
    const float dx = static_cast<float>(KZ::truncatedToInt(rect.right - rect.left));
    const float dy = static_cast<float>(KZ::truncatedToInt(rect.bottom - rect.top));
    const float radians = KZ::degreeToRadian(location.angle);
    const KZ::PointF first = KZ::rotate(KZ::PointF(dx, dy), radians);
    const KZ::PointF second = KZ::rotate(KZ::PointF(-dx, dy), radians);
    const int width = KZ::truncatedToInt(std::max(std::fabs(first.x), std::fabs(second.x)));
    const int height = KZ::truncatedToInt(std::max(std::fabs(first.y), std::fabs(second.y)));
    const int left = KZ::truncatedToInt((rect.right + rect.left) / 2) - width / 2;
    const int top = KZ::truncatedToInt((rect.bottom + rect.top) / 2) - height / 2;
    const int right = left + width, bottom = top + height;
    location.center =
        KZ::PointF(static_cast<float>((left + right) / 2), static_cast<float>((top + bottom) / 2));
    if (left < 0) location.center.x = static_cast<float>(width) * 0.5f;
    if (top < 0) location.center.y = static_cast<float>(height) * 0.5f;
    if (right > image.width()) location.center.x = static_cast<float>(image.width() - width / 2);
    if (bottom > image.height())
        location.center.y = static_cast<float>(image.height() - height / 2);
}

void NnTracker::run(KZ::Image& patch, LocationState& location, bool& verified, float& score) {
    switch (parameters_.type) {
        case Type::POSITION:
            return fixPosition(patch, location, score);
        case Type::REGRESSION_LOCATION:
            return fixRegressionLocation(patch, location, score);
        case Type::LOCATION:
            return fixLocation(patch, location, score);
        case Type::LOCATION_ANGLE:
            return fixLocationAngle(patch, location, score);
        case Type::LOCATION_SIZE:
            return fixLocationSize(patch, location, score);
        case Type::ZOOM:
            return fixZoom(patch, location, score);
        case Type::ZOOM_ANGLE:
            return fixZoomAngle(patch, location, score);
        case Type::SIDE:
            return fixSide(patch, location, score);
        case Type::VERIFIER:
            return fixVerify(patch, location, verified, score);
        case Type::SKELETON_HEAT_MAPS:
            return fixSkeletonFromHeatMaps(patch, location, score);
        case Type::SKELETON:
            return detectSkeleton(patch, location, score, false);
        case Type::STEREO_SKELETON:
            return stereoSkeleton(patch, location, score);
        case Type::HAND_DISPARITY:
            return handDisparity(patch, location, score);
        case Type::MT_CNN:
            return detectMtCnn(patch, location, verified, score);
        default:
            KZ_ASSERT(0, "wrong type: " << typeName(parameters_.type));
    }
}

std::vector<float> NnTracker::results(const KZ::Image& patch) const {
    return parameters_.nnDetector->detect(patch);
}
