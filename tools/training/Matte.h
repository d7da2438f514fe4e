#pragma once

#include <opencv2/core.hpp>

namespace training {

/// Opacity (8-bit, of the picture's size) of what stands before plain ground in the grey close-up
/// `photo`: 255 on it, 0 on the ground. Empty where the ground is not plain, or where what stands
/// out leaves holes in the palm, a disc of `radius` pixels about `middle`.
cv::Mat matteOf(const cv::Mat& photo, const cv::Point2d& middle, double radius);

}  // namespace training
