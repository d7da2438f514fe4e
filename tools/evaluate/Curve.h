#pragma once

#include <string>
#include <vector>

#include "Outcome.h"

namespace evaluate {

/// What another threshold on the score of the chain's last stage would give.
struct CurvePoint {
    double threshold = 0;
    double recall = 0, poseAlarms = 0, sceneAlarms = 0;
};

/// From the scores that the last stage gave in one run: a palm counts as found at a threshold when
/// two of three looks in a row reached it. The run itself decides which frames the chain looked
/// at. Where the last stage judges below its own threshold, as verifiers do, looser thresholds are
/// seen too, a little too pessimistically: a chain with a looser threshold would have tracked
/// instead of waiting for the next scan.
std::vector<CurvePoint> curveOf(const std::vector<PhotoOutcome>& outcomes);

}  // namespace evaluate
