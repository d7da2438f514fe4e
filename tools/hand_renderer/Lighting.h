#pragma once

#include <vector>

#include "HandPose.h"

namespace hand {

/// Light in the camera's axes. Colours are linear RGB; a white sheet that lies square in a key
/// light of 1 comes out as 1.
struct Light {
    Vector3 toKey{-.45f, .65f, .6f};  ///< towards the key light; any length
    float keySpread = 12;             ///< half angle in degrees; large for soft shadows
    Vector3 key{.75f, .72f, .68f};
    Vector3 above{.42f, .43f, .46f};  ///< ambient light from above, from the sides, from below
    Vector3 aside{.30f, .29f, .28f};
    Vector3 below{.16f, .14f, .12f};
};

/// What reaches each vertex past the hand itself.
struct Illumination {
    std::vector<Vector3> ambient;  ///< linear RGB, as a white surface would show it
    std::vector<float> key;        ///< share of the key light that is seen, 0 to 1
};

/// Occlusion and soft shadows by depth maps from many directions.
Illumination illuminate(const HandMesh& mesh, const PosedHand& posed, const Light& light);

}  // namespace hand
