#pragma once

#include "KZ_Color.h"
#include "KZ_Image.h"

namespace KZ {

/// Draws a line of square brush strokes, `thickness` pixels wide, that passes through both ends.
/// What lies outside the image is cut off; a thickness below 1 draws nothing. The image must be
/// MONO, BGR, RGB, RGBA or YUV.
void drawLine(Image& image, const Point& from, const Point& to, const Color& color, int thickness);

/// Outlines `rect` along its outermost pixels, turned about its centre by `radians`,
/// counter-clockwise on the screen. An inverted or empty rectangle draws nothing.
void drawRectangle(Image& image, const Rect& rect, const Color& color, int thickness,
                   float radians = 0);

}  // namespace KZ
