#pragma once

#include "KZ_BasePoint.h"
#include "KZ_BaseRect.h"
#include "KZ_BaseSize.h"
#include "KZ_History.h"

// State of the camera that engines share, one per process. All of it is exported by name.

extern bool isFlip;                   ///< mirror results in x
extern KZ::BaseSize<int> frameSize;   ///< of the grey frame; (0, 0): not initialised
extern KZ::BaseRect<int> roi;         ///< region searched, in frame pixels
extern KZ::Point3d cameraAccel;       ///< last accelerometer reading, m/s^2
extern KZ::Point3d cameraLastAccel;   ///< the reading that the frame before saw
extern float cameraAngle;             ///< rotation of the camera, radians
extern KZ::History<float> angleHist;  ///< recent angles of upright readings
extern float averageSpeed;            ///< smoothed change of `cameraAccel` per frame

/// Counts the frame in and tells whether the camera moves too much to look at it.
bool isCameraMoving();

/// What GRE_Release does to this state; `roi` and `cameraAngle` stay.
void releaseCameraState();
