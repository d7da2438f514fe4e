#pragma once

#include <opencv2/core/mat.hpp>

#include "Engine.h"

namespace palm {

/// What the marked-up picture says of a frame beyond its outcome.
struct FrameState {
    int number = 0;
    double time = 0;
    int framesSinceHit = -1;  ///< 0 on a hit, then counting; -1 before the first
    Outcome lastHit;          ///< drawn fading while the library rests
};

/// "palm", "MOVING", "rest" (after a hit) or "looking".
const char* stateName(const Outcome& outcome, const FrameState& state);

/// Draws rectangle, angle, score and the frame's state into `picture` (BGR).
void drawOutcome(cv::Mat& picture, const Outcome& outcome, const FrameState& state);

}  // namespace palm
