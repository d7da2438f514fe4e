#include "GRE_RaisedHand.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "DetectorResult.h"
#include "GRE_Interface.h"
#include "GreApiPartialImpl.h"
#include "GreCameraState.h"
#include "KZ_Assert.h"
#include "KZ_Limits.h"
#include "KZ_Truncate.h"

bool useSmoothing = false;
RaisedHandDetector raisedHandDetector;
DetectorData data;
int framesToSkip = 0;

namespace {

// Frames without a search after a hit: the application gets a pulse, not a level.
const int REST_FRAMES = 5;

KZ::Image inputFrame;     ///< shows the caller's pixels
KZ::Image inputFrameRoi;  ///< of it, the part inside `roi`
LocationState previousLocationState;

void showFrame(const unsigned char* frame) {
    // A view of an inverted region would have a positive area.
    KZ_ASSERT(roi.left <= roi.right && roi.top <= roi.bottom, "inverted rect: " << roi);
    // The library reads input frames only.
    inputFrame.createRef(const_cast<unsigned char*>(frame), frameSize, KZ::COLOR_MODE_MONO);
    inputFrameRoi.createRef(inputFrame, roi);
    data.inputImage.createRef(inputFrameRoi);
}

bool isUnmoved(const LocationState& previous, const LocationState& current) {
    const KZ::PointF shift = current.center - previous.center;
    const float distance = std::sqrt(shift.x * shift.x + shift.y * shift.y);
    const float growth = std::fabs(current.size.width - previous.size.width) / previous.size.width;
    return distance <= previous.size.width * 0.1f && growth <= 0.15f;
}

KZ::RectF mean(const KZ::RectF& a, const KZ::RectF& b) {
    return KZ::RectF((a.left + b.left) * 0.5f, (a.top + b.top) * 0.5f, (a.right + b.right) * 0.5f,
                     (a.bottom + b.bottom) * 0.5f);
}

KZ::RectF smoothed(const LocationState& current) {
    LocationState& previous = previousLocationState;
    if (!previous.isSet()) {
        previous = current;
        return current.getRect();
    }
    if (isUnmoved(previous, current)) return previous.getRect();
    const KZ::RectF between = mean(previous.getRect(), current.getRect());
    previous = current;
    return between;
}

void publishHit(const DetectorResult& result) {
    framesToSkip = REST_FRAMES;
    greResultData.gesture = result.name;
    greResultData.angle = KZ::truncatedToInt(result.location.angle);
    const KZ::RectF box = useSmoothing ? smoothed(result.location) : result.location.getRect();
    greResultData.rect = KZ::truncatedToInt(box);
}

void publishMiss() {
    if (useSmoothing) previousLocationState.reset();
    greResultData.clear();
    if (framesToSkip != 0) --framesToSkip;
}

int limited(int64_t value) {
    return static_cast<int>(std::clamp<int64_t>(value, KZ::minValue<int>(), KZ::maxValue<int>()));
}

// From the region searched to the frame. A cleared box takes part. A place that was confirmed in a
// larger frame may lie anywhere.
void mapBoxToFrame(KZ::Rect& box) {
    int64_t left = box.left, right = box.right;
    if (isFlip) {
        const int64_t width = inputFrameRoi.width();
        left = width - box.right;
        right = width - box.left;
    }
    box = KZ::Rect(limited(left + roi.left), limited(int64_t{box.top} + roi.top),
                   limited(right + roi.left), limited(int64_t{box.bottom} + roi.top));
}

}  // namespace

void GRE_Init(int width, int height) {
    KZ_ASSERT_GE(width, 0);
    KZ_ASSERT_GE(height, 0);
    KZ_ASSERT(static_cast<int64_t>(width) * height <= KZ::maxValue<int>(),
              "wrong frame size " << KZ::Size(width, height));
    greResultData.clear();
    raisedHandDetector.reset();
    frameSize = KZ::Size(width, height);
    roi = KZ::Rect(frameSize);
    GRE_SetParameters("");
}

void GRE_Reset() {
    greResultData.clear();
    raisedHandDetector.reset();
}

void GRE_Release() {
    greResultData.clear();
    raisedHandDetector.reset();
    releaseCameraState();
    inputFrame.reset();
}

bool GRE_ProcessFrame(const unsigned char* frame) {
    if (isCameraMoving()) {
        greResultData.clear();
        raisedHandDetector.reset();
        greResultData.gesture = "MOVING";
        return true;
    }
    if (!frame) return false;
    showFrame(frame);

    const KZ::DetectRegion region(inputFrameRoi.rect(), KZ::RangeF(), KZ::AngleRange(),
                                  KZ::Side::BOTH);
    DetectorResult result;
    raisedHandDetector.setAngle(cameraAngle);
    if (framesToSkip == 0) raisedHandDetector.detect(data, region, result);

    if (framesToSkip == 0 && result.location.isSet()) {
        publishHit(result);
    } else {
        publishMiss();
    }
    greResultData.score = result.score > 1 ? 0 : result.score;
    mapBoxToFrame(greResultData.rect);
    return true;
}
