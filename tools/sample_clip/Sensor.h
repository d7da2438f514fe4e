#pragma once

#include <opencv2/core.hpp>

#include "HandRenderer.h"
#include "Timeline.h"

namespace sample {

/// The painted room (8-bit BGR) under the light of the moment, as linear light in 32-bit BGR.
cv::Mat lightRoom(const cv::Mat& painted, const RoomLight& light);

/// Puts the hand over a picture of linear light of the same size.
void layOver(cv::Mat& picture, const hand::HandLayer& layer);

/// From linear light to the 8-bit picture of a small camera: lens, noise, tone curve. The noise of
/// each frame is its own.
cv::Mat develop(const cv::Mat& linear, int frame);

}  // namespace sample
