#pragma once

#include <cmath>
#include <opencv2/imgproc.hpp>

#include "Composer.h"

/// A right palm as an unmirrored picture shows it, fingers up and thumb on the right, in the
/// middle of a grey picture of 120 by 120; the palm is 36 pixels wide.
inline cv::Mat drawnHand() {
    cv::Mat picture(120, 120, CV_8U, cv::Scalar(70));
    const cv::Scalar skin(190);
    cv::ellipse(picture, {60, 78}, {18, 20}, 0, 0, 360, skin, cv::FILLED);
    const cv::Point fingers[][2] = {
        {{47, 66}, {43, 32}}, {{56, 62}, {55, 22}}, {{65, 62}, {67, 25}}, {{73, 66}, {78, 36}}};
    for (const auto& finger : fingers) cv::line(picture, finger[0], finger[1], skin, 7);
    cv::line(picture, {72, 84}, {95, 62}, skin, 8);
    return picture;
}
constexpr double DRAWN_PALM = 36;

inline cv::Mat drawnFist() {
    cv::Mat picture(120, 120, CV_8U, cv::Scalar(70));
    cv::ellipse(picture, {60, 78}, {18, 20}, 0, 0, 360, cv::Scalar(190), cv::FILLED);
    return picture;
}

/// The drawn hand in the middle of another picture, its palm `width` wide, turned
/// counter-clockwise.
inline cv::Mat placedHand(const cv::Size& size, double width, double angle, double blur) {
    cv::Mat picture(size, CV_8U, cv::Scalar(70));
    training::Placement placement;
    placement.anchor = {59.5, 59.5};
    placement.position = {(size.width - 1) * 0.5, (size.height - 1) * 0.5};
    placement.scale = width / DRAWN_PALM;
    placement.turn = angle;
    training::paste(drawnHand(), placement, 1, 1, picture);
    cv::GaussianBlur(picture, picture, {0, 0}, blur);
    return picture;
}

inline cv::Mat flipped(const cv::Mat& picture) {
    cv::Mat result;
    cv::flip(picture, result, 1);
    return result;
}

/// Correlation of two pictures of equal size: 1 for the same up to light, about 0 for unrelated.
inline double correlation(const cv::Mat& a, const cv::Mat& b) {
    cv::Mat result;
    cv::matchTemplate(a, b, result, cv::TM_CCOEFF_NORMED);
    return result.at<float>(0, 0);
}
