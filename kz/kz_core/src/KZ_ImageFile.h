#pragma once

#include <string>

#include "KZ_Image.h"

// The forms that Image::save and Image::load choose by the file's extension:
//
// ".pgm"  Binary grey map. MONO and RMCT as they are; MONO16 and DEPTH with 16 bits, high byte
//         first; colours as their luma. GRADIENT, INTEGRAL, FLOAT and the modes of several numbers
//         a pixel are shown: one grey picture a component, from left to right, each stretched from
//         its smallest value (black) to its largest (white). Loads as MONO or MONO16.
// ".ppm"  Binary colour map. Colours without alpha, DEPTH in false colours, other modes as their
//         grey map, in 8 bits. Loads as BGR.
// ".txt"  "Image <mode> <width> <height>", then one line of numbers a row. Every mode, exactly.

namespace KZ {

/// The bytes of a file of the given form. The image must be created.
std::string toPgm(const Image& image);
std::string toPpm(const Image& image);
std::string toText(const Image& image);

/// The image in the bytes of a PGM (P5) or PPM (P6) file, or of the text form. Anything malformed
/// or cut short is an assertion.
Image fromPnm(const std::string& bytes);
Image fromText(const std::string& text);

}  // namespace KZ
