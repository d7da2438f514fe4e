#pragma once

#include <string>

#include "BaseDetectorWrapper.h"
#include "KZ_History.h"
#include "LocationState.h"

/// Reports an object only after it has shown up on enough of the last frames. While nothing is
/// known, it looks over the whole picture on every n-th frame (trigger mode); once an object was
/// seen, on every frame, near the last location and at a like size (tracking mode), until the
/// memory holds misses only. One `getDataRoi` before each `detect` is what counts the frames.
class MultiFrameVerification : public BaseDetectorWrapper {
public:
    struct Parameters {
        int triggerPeriod;                ///< trigger mode works on every n-th frame; at least 1
        int historySize = 5;              ///< frames of memory; with 0 nothing is ever reported
        int minHits = 3;                  ///< hits in the memory needed to report
        float trackRoiScale = 1.8f;       ///< tracking search area against the last object
        float trackSizeTolerance = 1.3f;  ///< allowed factor of width change
        bool reserved = true;
        float triggerRoiScale = 1.0f;  ///< trigger search area against the frame
        bool sweepAngle = false;       ///< trigger mode searches 30 degrees, turned by 60 a frame

        explicit Parameters(int period) : triggerPeriod(period) {}
    };

    /// Takes ownership of `detector`.
    MultiFrameVerification(BaseDetector* detector, const Parameters& parameters);
    MultiFrameVerification(const KZ::SharedPtr<BaseDetector>& detector,
                           const Parameters& parameters);

    /// Counts the frame. Empty on the frames that trigger mode leaves out.
    KZ::Rect getDataRoi(const DetectorData& data, const KZ::DetectRegion& region) override;
    void detect(DetectorData& data, const KZ::DetectRegion& region,
                DetectorResult& result) override;
    /// Back to trigger mode before the first frame; the wrapped detector is not reset.
    void reset() override;
    std::string name() override;

    /// `region` narrowed to the surroundings and widths of the last known object.
    KZ::DetectRegion getTrackingDetectRegion(const KZ::DetectRegion& region) const;
    void detectTriggerBase(DetectorData& data, const KZ::DetectRegion& region,
                           DetectorResult& result);

private:
    bool isTracking() const { return hits_.size() != 0; }
    bool isTriggerFrame() const { return frameCount_ % parameters_.triggerPeriod == 0; }
    KZ::DetectRegion triggerRegion(const DetectorData& data, const KZ::DetectRegion& region) const;
    void detectTracking(DetectorData& data, const KZ::DetectRegion& region, DetectorResult& result);
    void detectTrigger(DetectorData& data, const KZ::DetectRegion& region, DetectorResult& result);
    void remember(const DetectorResult& hit);
    void forgetHistory();
    int countHits();

    Parameters parameters_;
    int frameCount_;
    int sideVotes_;
    LocationState lastLocation_;
    std::string lastName_;
    float lastScore_;
    KZ::History<int> hits_;
};
