#pragma once

#include <cstdint>
#include <limits>

// The form of the inputs of CallSequence.cpp: a byte chooses a call, those behind it its arguments,
// each by its index in one of the tables. New entries go to the ends, so that the corpus keeps its
// meaning.

namespace fuzz {

enum Call : uint8_t {
    VI_SET_PARAMETER,  // KEYS, VALUES
    VI_SET_TEXT,       // two texts, each behind its length
    VI_SET_SIZE,       // SIZES, SIZES: option "size" for pictures from frames twice as large
    VI_INIT,
    VI_SET_ROI,              // COORDINATES four times
    VI_SET_FRAME_PARAMETER,  // KEYS, VALUES
    VI_SET_FRAME,            // SIZES, SIZES, INDICES, fill
    VI_PROCESS_FRAME,
    VI_RESET,
    VI_RELEASE,
    VI_GET_ALL,   // INDICES
    VI_PROPERTY,  // PROPERTIES, VALUES
    GRE_INIT,     // SIZES, SIZES
    GRE_RESET,
    GRE_RELEASE,
    GRE_SET_PARAMETERS,           // KEYS, VALUES
    GRE_SET_FRAME_PARAMETERS,     // KEYS, VALUES
    GRE_SET_CAMERA_FLIP,          // 0 or 1
    GRE_SET_CAMERA_ANGLE,         // COORDINATES
    GRE_SET_CAMERA_ACCELERATION,  // SPEEDS three times
    GRE_SET_ROI,                  // COORDINATES four times
    GRE_PROCESS_FRAME,            // fill
    GRE_GET_ALL,                  // INDICES
    USE_SMOOTHING,                // 0 or 1
    VI_SET_FITTING_FRAME,         // SIZES, SIZES, fill: NV21, of twice that size
    PALM_AT,  // SIZES five times: x, y, width, height, angle of a palm in every frame from now on
    NUM_CALLS
};

const int SIZES[] = {64, 0, -1, 1, 2, 3, 15, 16, 33, 48, 65, 96, 97, 128, 160};

const int COORDINATES[] = {0,
                           1,
                           -1,
                           2,
                           5,
                           16,
                           33,
                           48,
                           64,
                           65,
                           90,
                           -90,
                           96,
                           128,
                           270,
                           359,
                           45,
                           30,
                           160,
                           180,
                           7,
                           500,
                           -400,
                           70000,
                           std::numeric_limits<int>::max(),
                           std::numeric_limits<int>::min()};

const int INDICES[] = {
    0, 1, -1, 2, 1000, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()};

const float SPEEDS[] = {0,
                        9.81f,
                        -9.81f,
                        0.5f,
                        -5,
                        12,
                        1e30f,
                        -1e-40f,
                        std::numeric_limits<float>::max(),
                        std::numeric_limits<float>::infinity(),
                        std::numeric_limits<float>::quiet_NaN()};

const char* const KEYS[] = {
    "size", "camera-flip",      "split-stereo",      "min-distance", "max-distance", "fov-angle",
    "flip", "input-frame-part", "output-frame-part", "rect",         "log",          "unknown",
    ""};

const char* const VALUES[] = {"",
                              "true",
                              "false",
                              "0",
                              "1",
                              "17",
                              "35",
                              "41",
                              "30",
                              "100",
                              "-1",
                              "180",
                              "360",
                              "1000000",
                              "2147483647",
                              "99999999999",
                              "Size(64, 48)",
                              "Size(0, 0)",
                              "Size(-1, 5)",
                              "Size(2000000000, 2000000000)",
                              "Size(48, 64",
                              "a b",
                              "{a b",
                              "word"};

const char* const PROPERTIES[] = {"image-format", "zoom-twice", "swap-red-blue"};

}  // namespace fuzz
