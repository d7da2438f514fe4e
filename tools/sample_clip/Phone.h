#pragma once

#include "Vector3.h"

namespace sample {

/// How the picture is displaced because the phone moves: pixels and degrees.
struct PictureMotion {
    float x, y, roll;
};
PictureMotion pictureMotionAt(double time);

constexpr double accelerometerRate = 100;  ///< readings a second

/// The accelerometer, m/s2. At rest the phone stands upright with gravity on its x axis and exactly
/// nothing on y, so that -atan2(y, x), the angle by which the picture would have to be turned, is
/// 0.
hand::Vector3 accelerationAt(double time);

}  // namespace sample
