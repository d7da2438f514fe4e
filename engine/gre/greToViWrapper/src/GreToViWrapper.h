#pragma once

#include <string>

#include "KZ_BaseSize.h"
#include "KZ_ViDetectorInterface.h"

/// Puts the gesture engine behind the generic engine interface: takes the half-size BGR frame
/// "bgr", hands its grey form to GRE_ProcessFrame, and publishes gesture, rectangle (times 2: in
/// camera pixels), score and angle.
class GreToViWrapper : public KZ::ViDetectorInterface {
public:
    GreToViWrapper();

    KZ::ViEngineInfo& getEngineInfo() override { return viEngineInfo_; }
    /// An assertion when the frame is missing or not of the size told by "--size". Exceptions of
    /// the gesture engine go to the caller.
    KZ::ViResult& processFrame(const KZ::ViFrameParameters& params) override;
    void reset() override;
    /// Stops the gesture engine and leaves the frame driver as it is.
    void release() override;
    using KZ::ViDetectorInterface::init;
    /// Starts the gesture engine with the options in `parameters`, one command line.
    void init(const std::string& parameters) override;
    void detect() override {}

private:
    /// The grey picture of this frame, `frameSize_` wide and high, with tight rows.
    const KZ::Image& greyFrame(const KZ::ViFrameParameters& params);
    static void publishResult(KZ::ViResult& result);

    KZ::BaseSize<int> frameSize_;  ///< of the grey frame that the gesture engine receives
};
