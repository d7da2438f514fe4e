#pragma once

#include "VI_Export.h"

// Detector of a raised open palm in a camera's preview frames. A frame goes through in this order;
// everything that is set for a frame holds for that frame only.
//
//     VI_SetParameter("size", "Size(320, 240)");           // once: options, then the start
//     VI_Init();
//
//     VI_SetFrame(nv21, 640, 480 * 3 / 2, 0);              // per frame
//     VI_ProcessFrame();
//     const char* gesture;
//     if (VI_GetGesture(&gesture, 0) && strcmp(gesture, "palm") == 0) {
//         float left, top, right, bottom, score;
//         VI_GetRect(&left, &top, &right, &bottom, 0);
//         VI_GetFloat(&score, 0);
//     }
//
//     VI_Reset();                                          // between shots
//     VI_Release();                                        // at the end
//
// Threads. One thread drives the frames: VI_SetFrame and VI_ProcessFrame. Any thread may call the
// rest. VI_SetParameter, VI_Init, VI_SetRoi, VI_SetFrameParameter, VI_Reset, VI_Release,
// VI_GetEngineInfo_, VI_Request_ and the last step of VI_SetFrame wait for a frame that is being
// processed; the functions VI_Get* that read results do not, they answer for the frame before.
// VI_Init must not run beside VI_SetFrame.
//
// Errors. A programmer's error (a null pointer, a negative index, a buffer or an option that cannot
// be understood) is logged and thrown as a `const char*` with the text "assertion"; memory that
// runs out is thrown as std::bad_alloc. No lock stays held and the next call works. A C program
// cannot catch either and ends.
//
// Texts that go in are copied during the call. Pointers that come out belong to the library; unless
// told otherwise they hold until the next VI_ProcessFrame.

#ifdef __cplusplus
extern "C" {
#endif

// ---- Set-up

/// Collects one option, "--key" or, unless `value` is null or empty, "--key=value". Options take
/// effect at the next VI_Init, which reads them as one text: `key` has at least two characters,
/// `value` holds no double quote and no word that begins with "#". They are kept as they are, and
/// with others every VI_Init from then on fails. Options of the palm engine:
///   size          picture after VI_SetFrame, "Size(w, h)" in pixels: half the camera's ("Size(320,
///                 240)")
///   camera-flip   results are mirrored left to right ("false")
///   split-stereo  only the left half of the picture counts ("false")
///   min-distance, max-distance, fov-angle
///                 see GRE_SetParameters; they count from the second VI_Init on
VI_EXPORT void VI_SetParameter(const char* key, const char* value);

/// Starts the engine, or starts it again, with all options collected so far; without any it runs on
/// its defaults. An unknown option costs one error record in the log. One that cannot be read is an
/// assertion.
VI_EXPORT void VI_Init(void);

/// Clears the engine's outcome, states and count of frames. Options and the results that VI_Get*
/// read stay; so does the confirmation's memory of the last frames, which fades on its own. Makes
/// the folder for profiles, "/storage/emulated/0/tmp", where it can.
VI_EXPORT void VI_Reset(void);

/// Stops the engine. VI_Init starts it again.
VI_EXPORT void VI_Release(void);

// ---- Per frame

/// Sets the frame parameter "rect" to "Rect(x, y, width, height)", as it is given and unchecked. A
/// second call for the same frame replaces the first. The palm engine does not read it: see
/// GRE_SetRoi.
VI_EXPORT void VI_SetRoi(int x, int y, int width, int height);

/// Sets a parameter of the next frame. A second call with the same key changes nothing: the first
/// value counts. The palm engine reads "input-frame-part". All parameters of a frame reach it as
/// one text of options: a key has at least two characters and no "=" or blank, no word of a value
/// begins with "#", and its quotes and braces come in pairs; else VI_ProcessFrame fails. The keys
/// "help" (prints usage to standard output) and "import" (reads options from a file) are taken.
VI_EXPORT void VI_SetFrameParameter(const char* key, const char* value);

/// Takes image `i` of the next frame: 0, "bgr", is the only one of the palm engine. `frame` holds
/// rows of `width` bytes without gaps: `width` * h bytes of luma for a picture h pixels high, then
/// one (V, U) pair for each 2 by 2 block (NV21); `height` counts the rows of the whole buffer, 3/2
/// of h. The picture is converted, at half size, before this call returns and before it waits for
/// anything, so the next frame can be prepared while one is being processed. An engine may ask for
/// another format by its properties: 35, (U, V) pairs, or 41, three bytes a pixel in the order B,
/// G, R, with `height` the picture's own. Full-size pictures of format 41 and grey ones are not
/// copied: their buffer must hold until VI_ProcessFrame has returned.
///
/// `frame` must not be null: the process ends. An `i` without an image, a negative size and a
/// buffer without a pixel are assertions. A later call for the same image replaces the earlier one.
VI_EXPORT void VI_SetFrame(const void* frame, int width, int height, int i);

/// Processes the frame and replaces the results. The frame and what was set for it are gone after
/// the call, also when it throws; then the old results stay. Without a frame from VI_SetFrame it is
/// an assertion, as is a picture that, at half size, is not of the option "size", or not of the
/// size of a GRE_Init after VI_Init.
VI_EXPORT void VI_ProcessFrame(void);

// ---- Results
//
// Each reads element `i`, from 0, of the last frame that was finished. They return 1, or 0 with all
// outputs 0 (pointers null) when there is no such element, which is the ordinary end of a list. A
// negative `i` and a null output are assertions.

/// Name of the gesture: "palm", or "MOVING" while the camera moves. Without one `*gesture` is the
/// empty text, never null.
VI_EXPORT int VI_GetGesture(const char** gesture, int i);

/// Box of the gesture in pixels of the camera's frame. The third and fourth value are the right and
/// bottom edge (exclusive), not sizes.
VI_EXPORT int VI_GetRect(float* x, float* y, float* width, float* height, int i);

/// Points in the picture and in space. The palm engine gives none.
VI_EXPORT int VI_GetPoint(float* x, float* y, int i);
VI_EXPORT int VI_GetPoint3d(float* x, float* y, float* z, int i);

/// Numbers. With a gesture, 0 is its score, 0 to 1, and 1 its angle in whole degrees.
VI_EXPORT int VI_GetFloat(float* value, int i);

/// The text under `key` in the map number `i`; 0 also when the key is absent. The palm engine gives
/// no maps.
VI_EXPORT int VI_GetParameter(const char* key, const char** value, int i);

/// First pixel, width and height in pixels of a result picture. The palm engine gives none.
VI_EXPORT int VI_GetFrame(const void** data, int* width, int* height, int i);

// ---- Not needed by an application proper

/// What the engine accepts: a C++ record, declared in KZ_ViInterface.h. It lives as long as the
/// process.
struct ViEngineInfo;
typedef struct ViEngineInfo ViEngineInfo;
VI_EXPORT const ViEngineInfo* VI_GetEngineInfo_(void);

/// Hands a special request to the engine and returns its answer. The palm engine knows none: 0.
VI_EXPORT int VI_Request_(const char* what, const void* data);

/// Pictures that detectors leave while an engine is being developed: name, first pixel, colour
/// mode's name (for the life of the process), width and height in pixels, bytes from row to row.
/// Call it on the thread that drives the frames.
VI_EXPORT int VI_GetDebugImage_(const char** name, const void** data, const char** colorMode,
                                int* width, int* height, int* stripLength, int i);

/// Name of the colour mode of the picture that VI_GetFrame gives under the same `i`, for the life
/// of the process.
VI_EXPORT int VI_GetFrameColorMode_(const char** colorMode, int i);

#ifdef __cplusplus
}
#endif

/// Version of the engine; the palm engine leaves it empty (see GRE_GetVersion). It is exported
/// under its C++ name, which the label gives to C programs.
#ifdef __cplusplus
VI_EXPORT const char* VI_GetVersion();
#else
VI_EXPORT const char* VI_GetVersion(void) __asm__("_Z13VI_GetVersionv");
#endif
