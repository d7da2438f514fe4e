#include "Matte.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <vector>

namespace training {

namespace {

/// Grey levels by which plain ground may differ from an even slope of light.
constexpr double PLAIN = 9;
/// What stands out by less is ground, by more it is not.
constexpr double FAINT = 9, CLEAR = 22;
/// Parts of the picture: what a hand in a close-up covers, and how much of the sides and the top it
/// may touch (an arm comes from below).
constexpr double LEAST = 0.08, MOST = 0.7, TOUCHED = 0.2;
/// Of the palm that has to stand out.
constexpr double WHOLE = 0.9;

/// The picture's sides and top: a band a sixteenth of its width.
cv::Mat groundBand(const cv::Size& size) {
    const int band = std::max(size.width / 16, 2);
    cv::Mat mask = cv::Mat::zeros(size, CV_8U);
    mask.rowRange(0, std::min(band, size.height)).setTo(255);
    mask.colRange(0, std::min(band, size.width)).setTo(255);
    mask.colRange(std::max(size.width - band, 0), size.width).setTo(255);
    return mask;
}

/// Light that changes evenly over the picture.
struct Slope {
    double middle = 0, right = 0, down = 0;

    double at(int x, int y) const { return middle + right * x + down * y; }
};

/// The slope nearest to the pixels under `mask`, in the sense of least squares.
Slope fitSlope(const cv::Mat& photo, const cv::Mat& mask) {
    cv::Matx33d products = cv::Matx33d::zeros();
    cv::Vec3d right(0, 0, 0);
    for (int y = 0; y < photo.rows; ++y) {
        for (int x = 0; x < photo.cols; ++x) {
            if (!mask.at<uchar>(y, x)) continue;
            const cv::Vec3d p(1, x, y);
            products += p * p.t();
            right += p * static_cast<double>(photo.at<uchar>(y, x));
        }
    }
    const cv::Vec3d best = products.inv(cv::DECOMP_SVD) * right;
    return {best[0], best[1], best[2]};
}

/// How far each pixel is from the slope.
cv::Mat distances(const cv::Mat& photo, const Slope& slope) {
    cv::Mat distance(photo.size(), CV_32F);
    for (int y = 0; y < photo.rows; ++y) {
        for (int x = 0; x < photo.cols; ++x) {
            distance.at<float>(y, x) =
                static_cast<float>(std::fabs(photo.at<uchar>(y, x) - slope.at(x, y)));
        }
    }
    return distance;
}

/// The largest connected part of `mask`, its holes filled.
cv::Mat largestPart(const cv::Mat& mask) {
    std::vector<std::vector<cv::Point>> outlines;
    cv::findContours(mask.clone(), outlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    cv::Mat part = cv::Mat::zeros(mask.size(), CV_8U);
    const auto largest = std::max_element(
        outlines.begin(), outlines.end(),
        [](const auto& a, const auto& b) { return cv::contourArea(a) < cv::contourArea(b); });
    if (largest == outlines.end()) return part;
    cv::drawContours(part, outlines, static_cast<int>(largest - outlines.begin()), cv::Scalar(255),
                     cv::FILLED);
    return part;
}

double share(const cv::Mat& mask, const cv::Mat& of) {
    return static_cast<double>(cv::countNonZero(mask & of)) / std::max(cv::countNonZero(of), 1);
}

}  // namespace

cv::Mat matteOf(const cv::Mat& photo, const cv::Point2d& middle, double radius) {
    const cv::Mat band = groundBand(photo.size());
    const cv::Mat first = distances(photo, fitSlope(photo, band));
    // Once more without what a finger or an arm at the edge pulled aside.
    cv::Mat ground = band & (first < 2 * PLAIN);
    if (share(ground, band) < 1 - TOUCHED) return cv::Mat();
    cv::Mat distance = distances(photo, fitSlope(photo, ground));
    if (std::sqrt(cv::mean(distance.mul(distance), ground)[0]) > PLAIN) return cv::Mat();

    cv::GaussianBlur(distance, distance, cv::Size(3, 3), 0);
    cv::Mat clear = distance > CLEAR;
    const int reach = std::max(photo.cols / 20, 1) * 2 + 1;
    cv::morphologyEx(clear, clear, cv::MORPH_CLOSE,
                     cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(reach, reach)));
    const cv::Mat part = largestPart(clear);
    const double covered = static_cast<double>(cv::countNonZero(part)) / photo.total();
    if (covered < LEAST || covered > MOST || share(part, band) > TOUCHED) return cv::Mat();
    cv::Mat palm = cv::Mat::zeros(photo.size(), CV_8U);
    cv::circle(palm, middle, cvRound(radius), cv::Scalar(255), cv::FILLED);
    if (share(clear, palm) < WHOLE) return cv::Mat();

    // Opaque inside; at the rim as far as the pixels stand out.
    cv::Mat inside, reachable, matte;
    const cv::Mat disc = cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(3, 3));
    cv::erode(part, inside, disc);
    cv::dilate(part, reachable, disc);
    distance.convertTo(matte, CV_8U, 255 / (CLEAR - FAINT), -255 * FAINT / (CLEAR - FAINT));
    matte = (matte & reachable) | inside;
    cv::GaussianBlur(matte, matte, cv::Size(3, 3), 0);
    return matte;
}

}  // namespace training
