#pragma once

#include "KZ_Image.h"

// Bilinear scaling of 8-bit images to the created target's size. The outer edges of the two
// pictures coincide: the middle of target pixel x is at (x + 0.5) * W / w of the source, positions
// have eight fractional bits, and beyond the middles of the outermost pixels those are repeated.

namespace KZ {

/// One channel; both images MONO.
void scaleBilinearV_N32(const Image& source, Image& target);

namespace Vectorize {

/// Chooses by mode: BGR, RGB and YUV, or MONO and RGBA; other modes, and targets of another pixel
/// size, are assertions.
void bilinearScale(const Image& source, Image& target);

/// Three interleaved channels.
void scaleBilinearRGB8bit(const Image& source, Image& target);
/// Any number of interleaved channels of 8 bits.
void bilinearScaleRGB_cStyle(const Image& source, Image& target);

}  // namespace Vectorize
}  // namespace KZ
