#pragma once

#include <stdbool.h>

#include "VI_Export.h"

// The gesture engine itself, below the VI_* interface (VI_Interface.h), which drives it: an
// application that goes through VI_* needs from here only the sensor side, that is
// GRE_SetCameraAcceleration, GRE_SetCameraAngle, GRE_SetCameraFlip and GRE_SetRoi. Alone it works
// on grey frames:
//
//     GRE_Init(320, 240);                                        // once
//     GRE_SetParameters("--min-distance=30 --max-distance=80");  // as often as wanted
//     GRE_SetCameraAcceleration(x, y, z);                        // as the sensor reports
//     GRE_ProcessFrame(pixels);                                  // per frame
//     const char* gesture; GRE_GetGesture(&gesture);             // "palm", "MOVING" or ""
//
// There is one engine per process, and no function here takes a lock. One thread initialises it,
// drives the frames and reads the results. The functions GRE_SetCamera* may be called from another
// thread; a running frame may then see part of the new values.
//
// A programmer's error (a null pointer, a number out of its range, a call out of order) is logged
// and thrown as a `const char*` with the text "assertion". Nothing else is thrown but
// std::bad_alloc.

#ifdef __cplusplus
extern "C" {
#endif

/// Starts the engine for grey frames of `width` by `height` pixels: neither is negative, and their
/// product is below 2^31. Clears the result, searches the whole frame, and applies the options
/// given so far.
VI_EXPORT void GRE_Init(int width, int height);

/// Clears the result and the detector's angle. Sizes, options and the camera's state stay.
VI_EXPORT void GRE_Reset(void);

/// Stops the engine: clears the result, the frame size, the sensor's history and the flip. A later
/// GRE_Init starts it again. Calling it twice, or first, is harmless.
VI_EXPORT void GRE_Release(void);

/// Options as one text, such as "--min-distance=30 --fov-angle=70", copied at once:
///   --min-distance  distance of the nearest hand (30)
///   --max-distance  distance of the farthest hand, in the same unit (100)
///   --fov-angle     field of view across the frame's diagonal, whole degrees (89)
/// What a text leaves out keeps its value. Before GRE_Init the call does nothing. An unknown option
/// costs one error record; a value that is no whole number, or a largest distance not above the
/// smallest, is an assertion, and in the latter case the values stay stored. A hand that would be
/// smaller than 15 pixels at the largest distance costs one error record and is not found.
VI_EXPORT void GRE_SetParameters(const char* options);

/// Parameters of the next frame in the same form: "--input-frame-part" and "--output-frame-part".
/// What the text leaves out becomes empty, unknown parameters are passed over.
VI_EXPORT void GRE_SetFrameParameters(const char* options);

/// Whether results are mirrored left to right. Initially true; false after GRE_Release.
VI_EXPORT void GRE_SetCameraFlip(bool flip);

/// Rotation of the camera, in degrees: the frame is turned by as much before the search. Holds
/// until the next accelerometer reading.
VI_EXPORT void GRE_SetCameraAngle(int degrees);

/// One accelerometer reading in m/s^2, each within a million: x and y lie in the picture plane, z
/// along the view. It sets the camera's angle, unless the phone lies flat, and tells
/// GRE_ProcessFrame how much the camera moves. Call it at about the frame rate.
VI_EXPORT void GRE_SetCameraAcceleration(float x, float y, float z);

/// Region to search, in frame pixels, right and bottom exclusive. It is checked when the next frame
/// is processed: a region that is empty or reaches out of the frame is an assertion there.
VI_EXPORT void GRE_SetRoi(int left, int top, int right, int bottom);

/// Processes one grey frame of the size told to GRE_Init: one byte a pixel, rows without gaps. The
/// pixels are read during the call only and not written. While the camera moves, the gesture is
/// "MOVING" and the frame is not looked at; in the five frames after a palm nothing is reported.
/// Returns true, or false for a null frame, which changes nothing. A call before GRE_Init or after
/// GRE_Release is an assertion.
VI_EXPORT bool GRE_ProcessFrame(const unsigned char* frame);

/// Gives "palm", "MOVING" or "". The engine owns the text; it is valid until the next frame.
VI_EXPORT void GRE_GetGesture(const char** gesture);

/// 1 when the gesture is "palm", else 0.
VI_EXPORT int GRE_GetGestureInt(void);
/// The same under its older name.
VI_EXPORT int GetGesture(void);

/// Box of the palm in frame pixels, right and bottom exclusive. Meaningful with "palm" only.
VI_EXPORT void GRE_GetResultRect(int* left, int* top, int* right, int* bottom);

/// Confidence of the last frame's detection, 0 to 1.
VI_EXPORT void GRE_GetScore(float* score);

/// Angle of the palm in the frame, in whole degrees.
VI_EXPORT void GRE_GetResultAngle(int* angle);

/// Number of points of the result; this engine gives none.
VI_EXPORT int GRE_GetNumPoints(void);
/// Reads point `pointNumber`, from 0 to GRE_GetNumPoints() - 1; another number is an assertion.
VI_EXPORT void GRE_GetPoint(int pointNumber, float* x, float* y, float* z);

/// This engine gives neither a flip nor a click: both are always false.
VI_EXPORT void GRE_GetFlipState(bool* flipped);
VI_EXPORT void GRE_GetClickEvent(bool* clicked);

/// Format of the frames: 0, one grey byte a pixel.
VI_EXPORT int GRE_GetColorMode(void);

/// Version of the engine, for the life of the process.
VI_EXPORT const char* GRE_GetVersion(void);

#ifdef __cplusplus
}
#endif
