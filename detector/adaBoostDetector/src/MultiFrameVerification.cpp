#include "MultiFrameVerification.h"

#include "DetectorData.h"
#include "DetectorResult.h"
#include "KZ_Assert.h"
#include "KZ_Truncate.h"

namespace {

uint32_t historyCapacity(const MultiFrameVerification::Parameters& parameters) {
    return parameters.historySize > 0 ? static_cast<uint32_t>(parameters.historySize) : 0;
}

// `rect` grown on each side by `margin` times its size, truncated towards zero.
KZ::Rect grown(const KZ::Rect& rect, float margin) {
    const KZ::RectF sides(static_cast<float>(rect.left), static_cast<float>(rect.top),
                          static_cast<float>(rect.right), static_cast<float>(rect.bottom));
    const float dx = margin * sides.width();
    const float dy = margin * sides.height();
    return KZ::truncatedToInt(
        KZ::RectF(sides.left - dx, sides.top - dy, dx + sides.right, dy + sides.bottom));
}

int sideVote(const DetectorResult& hit) {
    return hit.location.side == KZ::Side::RIGHT ? 1 : -1;
}

}  // namespace

MultiFrameVerification::MultiFrameVerification(BaseDetector* detector, const Parameters& parameters)
    : MultiFrameVerification(KZ::SharedPtr<BaseDetector>(detector), parameters) {}

MultiFrameVerification::MultiFrameVerification(const KZ::SharedPtr<BaseDetector>& detector,
                                               const Parameters& parameters)
    : BaseDetectorWrapper(detector), parameters_(parameters), hits_(historyCapacity(parameters)) {
    KZ_ASSERT_GT(parameters.triggerPeriod, 0);
    MultiFrameVerification::reset();
}

void MultiFrameVerification::reset() {
    forgetHistory();
    frameCount_ = -1;
    sideVotes_ = 0;
    lastScore_ = 0;
    lastName_.clear();
    lastLocation_.reset();
}

std::string MultiFrameVerification::name() {
    return "MFV of " + detector_->name();
}

KZ::DetectRegion MultiFrameVerification::getTrackingDetectRegion(
    const KZ::DetectRegion& region) const {
    KZ::DetectRegion tracking = region;
    const KZ::Rect last = KZ::truncatedToInt(lastLocation_.getRect());
    tracking.rect = grown(last, (parameters_.trackRoiScale - 1) * 0.5f);
    const float width = static_cast<float>(KZ::truncatedToInt(lastLocation_.size.width));
    tracking.widthRange =
        KZ::RangeF(width / parameters_.trackSizeTolerance, width * parameters_.trackSizeTolerance);
    return tracking;
}

KZ::DetectRegion MultiFrameVerification::triggerRegion(const DetectorData& data,
                                                       const KZ::DetectRegion& region) const {
    KZ::DetectRegion trigger = region;
    if (parameters_.sweepAngle) {
        const int angle = frameCount_ % 6 * 60;
        trigger.angleRange = KZ::AngleRange(angle - 180, angle - 150);
    }
    trigger.rect = grown(data.mono.rect(), (parameters_.triggerRoiScale - 1) * 0.5f);
    return trigger;
}

KZ::Rect MultiFrameVerification::getDataRoi(const DetectorData& data,
                                            const KZ::DetectRegion& region) {
    ++frameCount_;
    if (isTracking()) return detector_->getDataRoi(data, getTrackingDetectRegion(region));
    if (!isTriggerFrame()) return KZ::Rect();
    return detector_->getDataRoi(data, region);
}

void MultiFrameVerification::detect(DetectorData& data, const KZ::DetectRegion& region,
                                    DetectorResult& result) {
    if (isTracking()) {
        detectTracking(data, region, result);
    } else {
        detectTrigger(data, region, result);
    }
}

void MultiFrameVerification::detectTriggerBase(DetectorData& data, const KZ::DetectRegion& region,
                                               DetectorResult& result) {
    detector_->detect(data, region, result);
}

void MultiFrameVerification::detectTracking(DetectorData& data, const KZ::DetectRegion& region,
                                            DetectorResult& result) {
    detector_->detect(data, getTrackingDetectRegion(region), result);
    const bool hit = !result.name.empty();
    if (hit) {
        sideVotes_ += sideVote(result);
        remember(result);
    }
    hits_.add(hit ? 1 : 0);

    const int hits = countHits();
    if (sideVotes_ != 0 && hits >= parameters_.minHits) {
        // Also on a frame of a miss: the last known place stands for it.
        result.location = lastLocation_;
        result.location.side = sideVotes_ > 0 ? KZ::Side::RIGHT : KZ::Side::LEFT;
        result.found = true;
        result.name = lastName_;
        result.score = lastScore_;
        return;
    }
    if (hits == 0) forgetHistory();
    result.reset();
}

void MultiFrameVerification::detectTrigger(DetectorData& data, const KZ::DetectRegion& region,
                                           DetectorResult& result) {
    if (isTriggerFrame()) {
        detectTriggerBase(data, triggerRegion(data, region), result);
        if (result.name.empty()) {
            forgetHistory();
        } else {
            sideVotes_ = sideVote(result);
            remember(result);
            if (hits_.capacity != 0) hits_.add(1);
        }
    }
    // A first sight is never reported.
    result.reset();
}

void MultiFrameVerification::remember(const DetectorResult& hit) {
    lastLocation_ = hit.location;
    lastName_ = hit.name;
    lastScore_ = hit.score;
}

void MultiFrameVerification::forgetHistory() {
    hits_.counter = 0;
}

int MultiFrameVerification::countHits() {
    int hits = 0;
    for (uint32_t i = 0; i < hits_.size(); ++i) hits += hits_.element(i);
    return hits;
}
