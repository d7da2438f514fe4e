#pragma once

#include <opencv2/core.hpp>
#include <vector>

#include "Limits.h"

namespace evaluate {

/// The rows one below the other, 1392 pixels wide: of each cell its value, an example, the share as
/// a number, as a bar and as the colour of the frame. Green is right, red is wrong, grey is
/// neither. Every row has eight cells or fewer.
cv::Mat limitsPicture(const std::vector<LimitsRow>& rows);

}  // namespace evaluate
