#pragma once

#include <opencv2/core.hpp>

namespace sample {

/// The moving things of the room, drawn into 8-bit BGR at the time `t` in seconds.
void drawWindowView(cv::Mat& room, float t);  ///< sky and a tree in the wind, behind bars
void drawWalker(cv::Mat& room, float t);      ///< someone who crosses the room twice
void drawMonitor(cv::Mat& room, float t);     ///< lines that scroll on the screen
void drawPlant(cv::Mat& room, float t);       ///< leaves in a draught

}  // namespace sample
