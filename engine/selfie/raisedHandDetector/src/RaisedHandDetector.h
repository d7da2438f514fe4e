#pragma once

#include <string>

#include "BaseDetector.h"
#include "DetectorData.h"
#include "KZ_BaseSize.h"
#include "KZ_Image.h"
#include "KZ_SharedPtr.h"

/// Brings a grey frame upright and to the scale at which the smallest hand is 15 pixels wide, runs
/// the palm detection chain on it, and maps the answer back to the frame.
class RaisedHandDetector : public BaseDetector {
public:
    RaisedHandDetector();

    /// Hand widths to expect, in frame pixels. A smallest hand below 15 pixels costs one error
    /// record, and the frame is then searched as it is.
    void setHandSizes(float minHandSize, float maxHandSize);
    /// Radians by which the camera is turned, for the next `detect`.
    void setAngle(float angle) { angle_ = angle; }
    /// Makes the upright, reduced picture of a MONO frame; another mode is an assertion.
    void setData(const KZ::Image& currentFrame, float angle);
    /// Runs another chain than the built-in one, which is built only where none is set.
    void setDetector(const KZ::SharedPtr<BaseDetector>& detector) { detector_ = detector; }

    /// Looks at `data.inputImage`. A confirmed palm has a set location in frame pixels, its angle
    /// in degrees, and the name "palm"; else the result is empty or has no set location.
    void detect(DetectorData& data, const KZ::DetectRegion& region,
                DetectorResult& result) override;
    /// Sets the angle to 0; the chain keeps its memory of earlier frames.
    void reset() override { angle_ = 0; }
    std::string name() override { return "RaisedHandDetector"; }

    /// The picture that the chain sees.
    const KZ::Image& rotatedFrame() const { return rotatedFrame_; }
    /// Frame pixels per pixel of `rotatedFrame`; at least 1.
    float zoom() const { return zoom_; }
    /// A location in `rotatedFrame`, mapped to the frame that it was made of.
    void mapToInput(LocationState& location) const;

private:
    /// Whole-number part of the zoom, by which it makes `zoomedFrame_`.
    int reduce(const KZ::Image& frame);

    KZ::Image zoomedFrame_;
    KZ::Image rotatedFrame_;
    DetectorData pyramidData_;  ///< holds the pyramid parameters of the hand sizes; never computed
    KZ::SharedPtr<BaseDetector> detector_;
    KZ::Size inputSize_;
    KZ::Size rotatedSize_;
    DetectorData data_;  ///< the products of `rotatedFrame_`
    float angle_ = 0;
    float zoom_ = 1;
    bool zoomedIsView_ = false;  ///< `zoomedFrame_` shows the caller's pixels
};
