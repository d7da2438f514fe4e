#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "FakeDetector.h"
#include "GRE_Interface.h"

inline float radians(float degrees) {
    return degrees * 3.14159265f / 180;
}

/// A way to hold the camera: `degrees` when no accelerometer reading (x, y) is
/// given.
struct View {
    const char* what;
    float x, y;
    int degrees;

    void turnCamera() const {
        if (x != 0 || y != 0) {
            GRE_SetCameraAcceleration(x, y, 0);
        } else {
            GRE_SetCameraAngle(degrees);
        }
    }
    /// Where the scene's "down" points in the frame. A sensor at (1, 0) sees the
    /// world upright.
    KZ::PointF down() const {
        if (x == 0 && y == 0)
            return KZ::PointF(std::sin(radians(degrees)), std::cos(radians(degrees)));
        return KZ::PointF(-y, x) * (1 / std::sqrt(x * x + y * y));
    }
};

inline std::vector<View> views() {
    return {{"0", 0, 0, 0},           {"90", 0, 0, 90},           {"180", 0, 0, 180},
            {"270", 0, 0, 270},       {"30", 0, 0, 30},           {"landscape", 9.8f, 0, 0},
            {"portrait", 0, 9.8f, 0}, {"head down", 0, -9.8f, 0}, {"tilted", -5, 7, 0}};
}

/// Brightness of the upright scene at (x, y) pixels right of and below its
/// middle.
inline float brightness(float x, float y) {
    const float dx = x - 25, dy = y + 15;
    return 120 + 0.3f * x + 0.2f * y + 40 * std::exp(-(dx * dx + dy * dy) / 500);
}

/// The scene as the turned camera sees it, its middle in the frame's middle.
inline KZ::Image photograph(const KZ::Size& size, const View& view) {
    const KZ::PointF down = view.down(), right(down.y, -down.x);
    KZ::Image frame(size, KZ::COLOR_MODE_MONO);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const float dx = float(x - size.width / 2), dy = float(y - size.height / 2);
            const float value = brightness(dx * right.x + dy * right.y, dx * down.x + dy * down.y);
            *frame.data(x, y) = static_cast<unsigned char>(std::lround(std::fmin(255, value)));
        }
    }
    return frame;
}

/// A dark frame with a round bright spot.
inline KZ::Image spotImage(const KZ::Size& size, const KZ::Point& spot, float radius) {
    KZ::Image frame(size, KZ::COLOR_MODE_MONO);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const float dx = float(x - spot.x), dy = float(y - spot.y);
            const float value = 255 * std::exp(-(dx * dx + dy * dy) / (radius * radius));
            *frame.data(x, y) = static_cast<unsigned char>(value);
        }
    }
    return frame;
}

/// A detector that finds the spot: a hit at the middle of what is bright,
/// 20 by 30 pixels large and turned by 10 degrees.
inline void findSpot(DetectorData& frame, const KZ::DetectRegion&, DetectorResult& result) {
    double sum = 0, sumX = 0, sumY = 0;
    for (int y = 0; y < frame.mono.height(); ++y) {
        for (int x = 0; x < frame.mono.width(); ++x) {
            const double value = std::max(0, *frame.mono.data(x, y) - 60);
            sum += value;
            sumX += value * x;
            sumY += value * y;
        }
    }
    testing_support::setHit(result,
                            KZ::ObjectLocation(KZ::PointF(float(sumX / sum), float(sumY / sum)),
                                               KZ::SizeF(20, 30), 10, KZ::Side::RIGHT));
}
