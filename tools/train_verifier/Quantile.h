#pragma once

#include <vector>

namespace training {

/// The highest threshold that at least `share` of the margins lie above. Without margins 0.
float thresholdKeeping(std::vector<float> margins, double share);

}  // namespace training
