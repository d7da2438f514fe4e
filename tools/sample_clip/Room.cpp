#include "Room.h"

#include <cmath>
#include <opencv2/imgproc.hpp>

#include "RoomMotion.h"
#include "RoomPaint.h"

namespace sample {

Room::Room() {
    const cv::Size size(640 + 2 * roomMargin, 480 + 2 * roomMargin);
    back_ = paintBack(size);
    front_ = cv::Mat::zeros(size, CV_8UC3);
    frontShare_ = cv::Mat::zeros(size, CV_8UC1);
    paintFront(front_, frontShare_);
}

cv::Mat Room::at(double time) const {
    cv::Mat room = back_.clone();
    const float t = float(time);
    drawWindowView(room, t);
    drawWalker(room, t);
    front_.copyTo(room, frontShare_);
    drawMonitor(room, t);
    drawPlant(room, t);
    // The room is behind the plane of focus.
    cv::GaussianBlur(room, room, cv::Size(5, 5), .75);
    return room;
}

}  // namespace sample
