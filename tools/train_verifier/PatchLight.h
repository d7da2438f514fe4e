#pragma once

#include <cstdint>

#include "KZ_BaseSize.h"
#include "Random.h"

namespace training {

/// Patches enter the training as `INPUT_SCALE * (x - INPUT_CENTRE)` of the network's input x, a
/// pixel over 256: about even around 0.
constexpr float INPUT_SCALE = 4, INPUT_CENTRE = 0.5f;

/// Changes a patch as other light, another sensor or something before the hand would, and writes
/// it as input of the training.
void varyPatch(const uint8_t* patch, const KZ::Size& size, Random& random, float* input);

/// The patch as it is.
void plainPatch(const uint8_t* patch, const KZ::Size& size, float* input);

}  // namespace training
