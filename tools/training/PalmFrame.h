#pragma once

#include <opencv2/core.hpp>

#include "PhotoStore.h"

/// A labelled palm as it stands in a camera frame.
struct ShownPalm {
    cv::Point2d centre;  ///< frame pixels
    double width = 0;    ///< of the palm, frame pixels
};

/// Palm widths, in pixels of a frame of 320 by 240, and tilt for which the detector answers.
constexpr double MIN_PALM = 20, MAX_PALM = 60, MAX_TILT = 35;

/// Shows `photo` as large as it fits into a frame of 320 by 240, with `scene` around it. A palm
/// that then is too small or too large is shown at a width between the limits, drawn from `seed`
/// on a logarithmic scale, at a place drawn likewise.
ShownPalm drawPalmFrame(const cv::Mat& photo, const training::ManifestRow& row,
                        const cv::Mat& scene, uint64_t seed, cv::Mat& frame);
