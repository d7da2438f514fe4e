#pragma once

#include "KZ_Image.h"

namespace KZ {

/// Horizontal and vertical Sobel difference of a MONO image as a GRADIENT image of its size: two
/// signed bytes a pixel, each difference divided by 8 and truncated, which maps its range of +-1020
/// onto +-127. Pixels on the image's border, which lack neighbours, get 0. Only `rect` is written;
/// no width or height means the whole image, and one that sticks out is an assertion.
void SobelGradient(const Image& source, Image& target, const Rect& rect = Rect());

}  // namespace KZ
