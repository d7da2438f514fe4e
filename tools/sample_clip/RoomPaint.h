#pragma once

#include <opencv2/core.hpp>

namespace sample {

/// Places that the still and the moving parts of the room share, in pixels of the room.
const cv::Rect windowPane(520, 70, 190, 240);
const cv::Rect monitorScreen(392, 352, 128, 84);
const cv::Point plantFoot(640, 500);

/// What stands still behind a person who walks through, 8-bit BGR.
cv::Mat paintBack(const cv::Size& size);
/// What stands before that person; `share` becomes 255 where it covers.
void paintFront(cv::Mat& front, cv::Mat& share);

}  // namespace sample
