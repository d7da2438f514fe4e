#pragma once

#include "DetectorData.h"
#include "RaisedHandDetector.h"

// State of the palm engine behind the GRE_* functions, one per process. What the camera's side
// holds is in GreCameraState.h.

// Options; exported by name.
extern int minDistance;    ///< of the nearest hand
extern int maxDistance;    ///< of the farthest hand, in the same unit
extern int fovAngle;       ///< field of view across the frame's diagonal, degrees
extern bool useSmoothing;  ///< keep the box still while the palm hardly moves

extern RaisedHandDetector raisedHandDetector;
extern DetectorData data;  ///< input of the detector
/// Frames of rest left after a hit; no start, reset or release touches it.
extern int framesToSkip;
