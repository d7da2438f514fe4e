#pragma once

#include <vector>

#include "HandPose.h"
#include "Lighting.h"
#include "SkinAppearance.h"

namespace hand {

/// A pinhole in the origin that looks along -z; the picture's middle is on its axis.
struct Camera {
    int width = 640, height = 480;
    float focal = 407;  ///< pixels; 407 gives a 4:3 picture of 640 pixels 89 degrees over corners
};

/// Pixel coordinates (x right, y down, (0, 0) the corner of the first pixel) and in z the inverse
/// of the distance along the axis.
Vector3 project(const Camera& camera, const Vector3& p);

/// A picture of the hand alone: linear RGB already multiplied by the coverage, and the coverage.
struct HandLayer {
    int width = 0, height = 0;
    std::vector<Vector3> colour;
    std::vector<float> coverage;  ///< 0 to 1

    HandLayer(int w, int h);
    /// Adds `share` of a layer of the same size: for exposures of several moments.
    void add(const HandLayer& layer, float share);
};

enum class Parts { HAND, HAND_AND_FOREARM };

/// Draws a posed hand with `samples` by `samples` samples a pixel, of which the whole grid is
/// shifted by (shiftX, shiftY) pixels.
HandLayer render(const HandMesh& mesh, const Surface& surface, const PosedHand& posed,
                 const Illumination& illumination, const Light& light, const Camera& camera,
                 Parts parts = Parts::HAND_AND_FOREARM, int samples = 2, float shiftX = 0,
                 float shiftY = 0);

}  // namespace hand
