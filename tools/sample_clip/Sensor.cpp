#include "Sensor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "Dice.h"

namespace sample {

namespace {

float toLinear(float v) {
    return v <= .04045f ? v / 12.92f : std::pow((v + .055f) / 1.055f, 2.4f);
}

float toDisplay(float v) {
    return v <= .0031308f ? 12.92f * v : 1.055f * std::pow(v, 1 / 2.4f) - .055f;
}

// The tone curve with a soft shoulder, for 0 to 2.
class ToneCurve {
public:
    ToneCurve() {
        for (int i = 0; i < steps; ++i) {
            const float linear = 2.f * float(i) / steps;
            const float shoulder =
                linear < .7f ? linear : .7f + .3f * std::tanh((linear - .7f) / .3f);
            values_[i] = 255 * toDisplay(shoulder);
        }
    }
    float operator()(float linear) const {
        return values_[std::min(steps - 1, std::max(0, int(linear * (steps / 2.f))))];
    }

private:
    static constexpr int steps = 8192;
    std::array<float, steps> values_;
};

cv::Mat linearTable() {
    cv::Mat table(1, 256, CV_32F);
    for (int i = 0; i < 256; ++i) table.at<float>(i) = toLinear(float(i) / 255);
    return table;
}

}  // namespace

cv::Mat lightRoom(const cv::Mat& painted, const RoomLight& light) {
    static const cv::Mat table = linearTable();
    cv::Mat linear;
    cv::LUT(painted, table, linear);
    for (int y = 0; y < linear.rows; ++y) {
        for (int x = 0; x < linear.cols; ++x) {
            // Daylight from the window on the right, lamplight from the lower left.
            const float day = light.window * (.55f + .6f * float(x) / float(linear.cols));
            const float dx = float(x - 62) / 330, dy = float(y - 330) / 260;
            const float lamp = .75f * light.lamp * std::exp(-dx * dx - dy * dy);
            cv::Vec3f& pixel = linear.at<cv::Vec3f>(y, x);
            pixel = {pixel[0] * (day + .55f * lamp), pixel[1] * (day + .85f * lamp),
                     pixel[2] * (day + 1.1f * lamp)};
        }
    }
    return linear;
}

void layOver(cv::Mat& picture, const hand::HandLayer& layer) {
    for (int y = 0; y < picture.rows; ++y) {
        for (int x = 0; x < picture.cols; ++x) {
            const size_t i = size_t(y) * layer.width + x;
            if (layer.coverage[i] <= 0) continue;
            const hand::Vector3& c = layer.colour[i];
            cv::Vec3f& pixel = picture.at<cv::Vec3f>(y, x);
            pixel = pixel * (1 - layer.coverage[i]) + cv::Vec3f(c.z, c.y, c.x);
        }
    }
}

cv::Mat develop(const cv::Mat& linear, int frame) {
    static const ToneCurve curve;
    cv::Mat sharp;
    cv::GaussianBlur(linear, sharp, cv::Size(3, 3), .5);
    Dice dice(uint32_t(frame) * 7919 + 101);
    cv::Mat picture(linear.size(), CV_8UC3);
    for (int y = 0; y < picture.rows; ++y) {
        for (int x = 0; x < picture.cols; ++x) {
            const cv::Vec3f& light = sharp.at<cv::Vec3f>(y, x);
            const float grey = dice.normal();
            for (int c = 0; c < 3; ++c) {
                const float value = curve(light[c]);
                // Shadows are noisier, and most of the noise is common to the three colours.
                const float noise = (3.6f - value / 130) * (grey + .5f * dice.normal());
                picture.at<cv::Vec3b>(y, x)[c] = cv::saturate_cast<uchar>(value + noise);
            }
        }
    }
    return picture;
}

}  // namespace sample
