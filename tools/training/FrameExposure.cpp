#include "FrameExposure.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <vector>

namespace training {

namespace {

/// The mean over a straight way of `motion`, its middle in the middle of the kernel.
cv::Mat motionKernel(const cv::Point2d& motion) {
    constexpr int SIDE = 5, STEPS = 16;
    cv::Mat kernel = cv::Mat::zeros(SIDE, SIDE, CV_32F);
    for (int i = 0; i < STEPS; ++i) {
        const double way = (i + 0.5) / STEPS - 0.5;
        const double x = SIDE / 2 + way * motion.x, y = SIDE / 2 + way * motion.y;
        const int left = cvFloor(x), top = cvFloor(y);
        const double right = x - left, low = y - top;
        kernel.at<float>(top, left) += static_cast<float>((1 - right) * (1 - low) / STEPS);
        kernel.at<float>(top, left + 1) += static_cast<float>(right * (1 - low) / STEPS);
        kernel.at<float>(top + 1, left) += static_cast<float>((1 - right) * low / STEPS);
        kernel.at<float>(top + 1, left + 1) += static_cast<float>(right * low / STEPS);
    }
    return kernel;
}

void shade(const SideLight& light, cv::Mat& frame) {
    for (int y = 0; y < frame.rows; ++y) {
        uchar* f = frame.ptr(y);
        for (int x = 0; x < frame.cols; ++x) {
            const double share =
                light.at((x + 0.5) / frame.cols - 0.5, (y + 0.5) / frame.rows - 0.5);
            f[x] = static_cast<uchar>(f[x] * share + 0.5);
        }
    }
}

void compress(int quality, cv::Mat& frame) {
    std::vector<uchar> bytes;
    cv::imencode(".jpg", frame, bytes, {cv::IMWRITE_JPEG_QUALITY, quality});
    frame = cv::imdecode(bytes, cv::IMREAD_GRAYSCALE);
}

/// Gamma, then contrast about `mean` with brightness, in sixteenths of a grey level.
std::vector<int> toneCurve(const Exposure& exposure, double mean) {
    std::vector<int> curve(256);
    for (int p = 0; p < 256; ++p) {
        const double bent = 255 * std::pow(p / 255.0, exposure.gamma);
        const double value = mean + (bent - mean) * exposure.contrast + exposure.brightness;
        curve[p] = static_cast<int>(std::floor(value * 16 + 0.5));
    }
    return curve;
}

}  // namespace

SideLight SideLight::draw(Random& random) {
    SideLight light;
    const double direction = random.uniform(0, 2 * M_PI);
    light.towards = {std::cos(direction), std::sin(direction)};
    light.darkest = random.uniform(0.2, 0.8);
    light.middle = random.uniform(-0.3, 0.3);
    light.steepness = random.uniform(1, 5);
    return light;
}

double SideLight::at(double x, double y) const {
    const double along = x * towards.x + y * towards.y - middle;
    return darkest + (1 - darkest) * std::clamp(0.5 + along * steepness, 0.0, 1.0);
}

Exposure Exposure::draw(Random& random, double hardship) {
    Exposure exposure;
    if (random.chance(0.12 * hardship)) exposure.sideLight = SideLight::draw(random);
    if (random.chance(0.5)) exposure.gamma = std::exp(random.uniform(-0.3, 0.3));
    // A hand before a wall of its own brightness, too.
    exposure.contrast =
        random.chance(0.12 * hardship) ? random.uniform(0.4, 0.7) : random.uniform(0.7, 1.25);
    exposure.brightness = random.uniform(-30, 30);
    exposure.blur = random.chance(0.5) ? random.uniform(0.2, 0.6) : 0;
    if (random.chance(0.15 * hardship)) {
        const double length = random.uniform(1, 3), direction = random.uniform(0, CV_PI);
        exposure.motion = {length * std::cos(direction), length * std::sin(direction)};
    }
    exposure.noise = random.uniform(0, 2.5);
    exposure.jpegQuality = random.chance(0.15 * hardship) ? 35 + random.below(56) : 0;
    return exposure;
}

void expose(const Exposure& exposure, Random& random, cv::Mat& frame) {
    if (exposure.sideLight) shade(*exposure.sideLight, frame);
    if (exposure.blur > 0) {
        cv::GaussianBlur(frame, frame, cv::Size(3, 3), exposure.blur);
    }
    if (exposure.motion != cv::Point2d()) {
        cv::filter2D(frame, frame, CV_8U, motionKernel(exposure.motion));
    }
    const std::vector<int> curve = toneCurve(exposure, cv::mean(frame)[0]);
    cv::Mat noise(frame.size(), CV_16S);
    cv::RNG(random.next()).fill(noise, cv::RNG::NORMAL, 0, std::max(exposure.noise, 0.01) * 16);
    for (int y = 0; y < frame.rows; ++y) {
        uchar* f = frame.ptr(y);
        const short* n = noise.ptr<short>(y);
        for (int x = 0; x < frame.cols; ++x) {
            f[x] = cv::saturate_cast<uchar>((curve[f[x]] + n[x] + 8) >> 4);
        }
    }
    if (exposure.jpegQuality > 0) compress(exposure.jpegQuality, frame);
}

}  // namespace training
