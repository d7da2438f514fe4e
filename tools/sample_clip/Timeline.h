#pragma once

#include "HandPose.h"

namespace sample {

constexpr double framesPerSecond = 30;
constexpr double shutter = 1 / 60.;  ///< seconds that a frame is exposed
constexpr int frameCount = 390;

/// What the hand does at one moment. The units are those of the picture, 640 by 480.
struct HandKey {
    double time;
    float cx, cy;     ///< pixels, middle of the open hand
    float palmWidth;  ///< pixels, as long as the hand is not turned about its length
    float roll;       ///< degrees, counter-clockwise
    float yaw;        ///< degrees; 180 shows the back
    float curl;       ///< 0 open, 1 fist
    float together;   ///< 0 fingers apart, 1 together
};

/// One hand, from before it comes into the picture until after it has left.
struct Appearance {
    bool left;
    HandKey key;
};

/// The hand at `time` (seconds), or null while there is none.
bool handAt(double time, Appearance& appearance);

/// How hard the phone is shaken at `time`: 0 at rest, 1 at most.
float shakeAt(double time);

/// Light of the room: the window's share and the lamp's, about 1 and 0 to 1.
struct RoomLight {
    float window, lamp;
};
RoomLight roomLightAt(double time);

}  // namespace sample
