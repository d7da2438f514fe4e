#pragma once

#include "HandRenderer.h"

namespace hand {

/// Where a hand is in the picture.
struct HandTruth {
    float cx = 0, cy = 0;  ///< pixels: half way along the hand from the wrist to the finger tips
    float palmWidth = 0;   ///< pixels, breadth of the palm at the knuckles
    float angle = 0;       ///< degrees, 0 upright, positive counter-clockwise, -180 to 180
    bool inside = false;   ///< all of the hand, from the wrist up, is in the picture
};

HandTruth measure(const HandMesh& mesh, const PosedHand& posed, const Camera& camera);

}  // namespace hand
