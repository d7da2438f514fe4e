#include "Phone.h"

#include "Dice.h"
#include "Timeline.h"

namespace sample {

PictureMotion pictureMotionAt(double time) {
    const float t = float(time);
    const float shake = shakeAt(time);
    return {1.6f * std::sin(1.7f * t) + .6f * std::sin(4.9f * t) + 20 * shake * std::sin(31 * t),
            1.2f * std::sin(2.1f * t + 1) + 14 * shake * std::sin(37 * t + 1),
            .25f * std::sin(1.3f * t) + 2.5f * shake * std::sin(29 * t + 2)};
}

hand::Vector3 accelerationAt(double time) {
    constexpr float gravity = 9.81f;
    const float t = float(time);
    const float shake = shakeAt(time);
    Dice dice(uint32_t(time * accelerometerRate + .5) * 2654435761u + 17);
    // The sensor's noise, but for y, whose still value decides the picture's angle.
    const float noiseX = .015f * dice.normal(), noiseZ = .02f * dice.normal();
    // As lively as the picture's motion; about 2.5 m/s2 from one frame to the next.
    return {gravity + noiseX + shake * 1.8f * std::sin(37 * t + 1), shake * 3.0f * std::sin(31 * t),
            .12f + noiseZ + shake * 1.5f * std::sin(29 * t + 2)};
}

}  // namespace sample
