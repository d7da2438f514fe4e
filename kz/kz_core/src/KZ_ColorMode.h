#pragma once

#include <string>

namespace KZ {

/// Pixel formats. The numbers are stored in archives.
enum ColorMode {
    COLOR_MODE_UNDEFINED = 0,
    COLOR_MODE_MONO = 1,
    COLOR_MODE_MONO16 = 2,
    COLOR_MODE_DEPTH = 3,
    COLOR_MODE_GRADIENT = 4,
    COLOR_MODE_RMCT = 5,
    COLOR_MODE_BGR = 6,
    COLOR_MODE_RGB = 7,
    COLOR_MODE_YUV = 8,
    COLOR_MODE_RGBA = 9,
    COLOR_MODE_INTEGRAL = 10,
    COLOR_MODE_FLOAT = 11,
    COLOR_MODE_INTEGRAL_HOG_UNSIGNED6 = 12,
    COLOR_MODE_INTEGRAL_HOG_SIGNED12 = 13,
    COLOR_MODE_FLOAT2 = 14,
    COLOR_MODE_USHORT2 = 15,
    COLOR_MODE_END = 16
};

/// Bytes a pixel; a value of 16 or more is an assertion.
unsigned int depth(ColorMode mode);

/// True for BGR, RGB, YUV and RGBA.
bool isColor(ColorMode mode);

/// The long name, such as "COLOR_MODE_MONO".
const char* colorModeName(ColorMode mode);

}  // namespace KZ
