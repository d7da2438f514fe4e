#include "Timeline.h"

#include <iterator>

namespace sample {

namespace {

// A right hand: raised palm first, turned both ways, brought near, taken back, lowered.
constexpr HandKey rightHand[] = {
    {1.10, 300, 590, 62, 12, 0, .06f, .3f}, {1.65, 312, 236, 60, 4, -4, 0, .2f},
    {2.05, 318, 232, 62, 0, 0, 0, .1f},     {2.60, 340, 238, 66, 25, 3, 0, .1f},
    {3.15, 300, 244, 72, -24, -3, 0, .3f},  {3.65, 316, 262, 114, 0, 0, .03f, .1f},
    {3.80, 318, 262, 114, 1, 2, .03f, .1f}, {4.35, 356, 226, 46, 6, 4, 0, .4f},
    {4.65, 360, 224, 45, 4, 2, 0, .4f},     {5.05, 372, 560, 48, 14, 0, .1f, .4f},
};

// A left hand: raised, turned to its back, closed, the fist turned round, lowered.
constexpr HandKey leftHand[] = {
    {7.15, 236, 620, 84, -14, 0, .06f, .2f}, {7.65, 262, 240, 82, -8, 4, 0, .1f},
    {8.20, 292, 234, 86, -14, 2, 0, .1f},    {8.80, 318, 236, 80, 7, 0, .02f, .3f},
    {9.20, 322, 238, 80, 3, 178, 0, .3f},    {9.50, 326, 236, 82, -4, 186, 0, .1f},
    {9.85, 320, 240, 82, 4, 180, .04f, .3f}, {10.15, 318, 248, 82, 2, 178, 1, .3f},
    {10.45, 322, 246, 82, -2, 176, 1, .3f},  {10.85, 326, 250, 84, 0, 12, 1, .3f},
    {11.35, 322, 246, 84, 3, -6, 1, .3f},    {11.75, 300, 640, 84, -8, 0, .8f, .3f},
};

float between(float a, float b, float t) {
    return a + (b - a) * t;
}

// Slow at every key: each is a place where the hand comes to rest.
HandKey interpolate(const HandKey& a, const HandKey& b, double time) {
    const float t = hand::smoothStep(0, 1, float((time - a.time) / (b.time - a.time)));
    return {time, between(a.cx, b.cx, t), between(a.cy, b.cy, t),
            // Apparent size goes with the inverse of the distance.
            1 / between(1 / a.palmWidth, 1 / b.palmWidth, t), between(a.roll, b.roll, t),
            between(a.yaw, b.yaw, t), between(a.curl, b.curl, t),
            between(a.together, b.together, t)};
}

// No hand is held quite still.
void tremble(HandKey& key) {
    const float t = float(key.time);
    key.cx += 1.4f * std::sin(7.1f * t) + .5f * std::sin(23 * t + 1);
    key.cy += 1.1f * std::sin(8.3f * t + 2) + .5f * std::sin(27 * t);
    key.roll += .8f * std::sin(5.7f * t + 1);
    key.curl = std::max(0.f, key.curl + .012f * std::sin(6 * t));
}

template <size_t N>
bool keyAt(const HandKey (&keys)[N], double time, HandKey& key) {
    if (time < keys[0].time || time > keys[N - 1].time) return false;
    size_t i = 1;
    while (keys[i].time < time) ++i;
    key = interpolate(keys[i - 1], keys[i], time);
    tremble(key);
    return true;
}

}  // namespace

bool handAt(double time, Appearance& appearance) {
    appearance.left = false;
    if (keyAt(rightHand, time, appearance.key)) return true;
    appearance.left = true;
    return keyAt(leftHand, time, appearance.key);
}

float shakeAt(double time) {
    const float t = float(time);
    return hand::smoothStep(5.25f, 5.4f, t) * hand::smoothStep(6.2f, 6.0f, t);
}

RoomLight roomLightAt(double time) {
    const float t = float(time);
    const float clouds = .12f * std::sin(.9f * t) + .07f * std::sin(2.3f * t + 1);
    const float flicker = .012f * std::sin(61 * t);
    return {1 + clouds, hand::smoothStep(7.45f, 7.6f, t) * (1 + flicker)};
}

}  // namespace sample
