#include "RaisedHandDetector.h"

#include <cmath>

#include "DetectorResult.h"
#include "KZ_Check.h"
#include "KZ_Geometry.h"
#include "KZ_ResizeImage.h"
#include "KZ_RotateImage.h"
#include "KZ_Truncate.h"
#include "PalmDetectionChain.h"

namespace {

const int MIN_HAND_SIZE = 15;  ///< smallest hand width that the chain works with, pixels
const int DEFAULT_LAYERS = 23;
const float LOG_LAYER_RATIO = 0.18232159f;  ///< of 1.2
// Positions in the picture are turned in 1/256 pixel, with 31 bits.
const int MAX_SIDE = 1 << 20;
// Room beside a turned hand.
const float WIDTH_RESERVE = 1.4f;

}  // namespace

RaisedHandDetector::RaisedHandDetector() {
    pyramidData_.setPyramidParameters(1.0f, DEFAULT_LAYERS);
}

void RaisedHandDetector::setHandSizes(float minHandSize, float maxHandSize) {
    float zoom = 1;
    if (minHandSize >= MIN_HAND_SIZE) {
        zoom = minHandSize / MIN_HAND_SIZE;
    } else {
        KZ_LOG_ERROR("Warning: minHandSize < " << MIN_HAND_SIZE << ": " << minHandSize);
    }
    const float range = maxHandSize / MIN_HAND_SIZE / zoom;
    KZ_ASSERT(range > 0 && std::isfinite(range),
              "wrong hand sizes: " << minHandSize << ", " << maxHandSize);
    zoom_ = zoom;
    const int layers = static_cast<int>(std::log(range) / LOG_LAYER_RATIO + 0.5);
    pyramidData_.setPyramidParameters(1.0f, layers);
}

void RaisedHandDetector::setData(const KZ::Image& currentFrame, float angle) {
    inputSize_ = currentFrame.size();
    KZ_CHECK_COLOR_MODE(currentFrame, KZ::COLOR_MODE_MONO);
    const float rest = zoom_ / static_cast<float>(reduce(currentFrame));
    KZ_ASSERT(zoomedFrame_.width() <= MAX_SIDE && zoomedFrame_.height() <= MAX_SIDE,
              "frame too large: " << inputSize_);

    const KZ::Size size = KZ::getRotatedFrameSize(zoomedFrame_.size(), -angle);
    const int width = static_cast<int>(static_cast<float>(size.width) / rest);
    rotatedSize_.width = static_cast<int>(static_cast<float>(width) * WIDTH_RESERVE);
    rotatedSize_.height = static_cast<int>(static_cast<float>(size.height) / rest);
    rotatedFrame_.create(rotatedSize_, KZ::COLOR_MODE_MONO);

    const KZ::PointF center(static_cast<float>(zoomedFrame_.width() / 2),
                            static_cast<float>(zoomedFrame_.height() / 2));
    KZ::rotateAndZoomImage(zoomedFrame_, rotatedFrame_, -angle, rest, rest, center, true);
    angle_ = angle;
}

int RaisedHandDetector::reduce(const KZ::Image& frame) {
    const int factor = KZ::truncatedToInt(zoom_);
    if (factor < 2) {
        zoomedFrame_.createRef(frame);
        zoomedIsView_ = true;
        return 1;
    }
    // The blocks of the reduction must lie in the frame.
    KZ_ASSERT_GE(frame.width(), factor);
    KZ_ASSERT_GE(frame.height(), factor);
    // Never into the pixels of an earlier frame.
    if (zoomedIsView_) zoomedFrame_.reset();
    zoomedIsView_ = false;
    KZ::zoomImage(frame, zoomedFrame_, static_cast<unsigned int>(factor));
    return factor;
}

void RaisedHandDetector::detect(DetectorData& data, const KZ::DetectRegion& region,
                                DetectorResult& result) {
    if (!detector_) detector_ = confirmedPalmDetector();
    result.reset();
    setData(data.inputImage, angle_);
    if (!detector_) return;

    KZ::DetectRegion whole = region;
    whole.rect = rotatedFrame_.rect();
    const KZ::Rect needed = detector_->getDataRoi(data, whole);
    if (needed.area() == 0) return;
    data_.compute(rotatedFrame_, needed.clipped(rotatedFrame_.rect()));
    data_.name = data.name;
    data_.inputFramePart = data.inputFramePart;
    data_.outputFramePart = data.outputFramePart;
    detector_->detect(data_, whole, result);
    if (!result.location.isSet()) return;
    mapToInput(result.location);
    result.name = "palm";
}

void RaisedHandDetector::mapToInput(LocationState& location) const {
    const KZ::PointF middle(static_cast<float>(rotatedSize_.width / 2),
                            static_cast<float>(rotatedSize_.height / 2));
    const KZ::PointF offset = KZ::rotate(location.center - middle, -angle_);
    location.center.x = static_cast<float>(inputSize_.width / 2) + zoom_ * offset.x;
    location.center.y = static_cast<float>(inputSize_.height / 2) + zoom_ * offset.y;
    location.size.width *= zoom_;
    location.size.height *= zoom_;
    location.angle = KZ::radianToDegree(angle_) + location.angle;
}
