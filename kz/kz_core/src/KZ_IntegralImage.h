#pragma once

#include "KZ_Image.h"

// An integral image of a W by H picture has (W + 1) by (H + 1) unsigned 32-bit cells: cell (x, y)
// is the sum of the pixels left of column x and above row y. Sums wrap; differences come out right.

namespace KZ {

/// The integral image of a MONO image.
void computeIntegral(const Image& mono, Image& integral);
/// The same of the pixels in `rect` alone, which must lie in the image. Cells that no pixel of the
/// rectangle belongs to are 0, also to its right and below: only differences inside it mean
/// anything.
void computeIntegral(const Image& mono, Image& integral, const Rect& rect);

/// The same for the whole of an image without gaps between rows; a target with gaps is refused too.
void computeIntegralOptimized(const Image& image, Image& integral);

/// Raw form on tight buffers of `width` by `height`: cell (x, y) includes column x and row y, there
/// is no zero row or column.
void integral_image(const unsigned char* src, unsigned int* dst, int width, int height);

/// The rectangle of the picture that an integral image belongs to.
Rect integralRect(const Image& integral);

}  // namespace KZ
