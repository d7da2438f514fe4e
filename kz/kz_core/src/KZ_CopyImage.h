#pragma once

#include "KZ_Image.h"

// Moves of pixels of any mode. An all-zero rectangle means the whole source.

namespace KZ {

/// Copies `rect` of the source to the same place in the target.
void copyImage(const Image& source, Image& target, const Rect& rect = Rect());
/// Copies `rect` of the source, its top left to `targetPoint`, as far as it lies in both images. A
/// target not created is created like the source, else the modes must agree; its other pixels stay.
void copyImage(const Image& source, Image& target, const Rect& rect, const Point& targetPoint);

/// An image of the source's size that shows the source inside `rect` and around it the pixels of
/// the rectangle's edge. An empty common part with the source is an assertion.
void copyImageBorder(const Image& source, Image& target, const Rect& rect);

/// Turns by quarters: a positive one takes pixel (x, y) to (y, width - 1 - x).
void rotatePi4(const Image& source, Image& target, int quarters);

/// target(y, x) = source(x, y).
void transpose(const Image& source, Image& target);

/// Mirrors the columns.
void flipLeftRight(Image& source);
void flipLeftRight(const Image& source, Image& target);
/// Mirrors the rows.
void flipTopBottom(const Image& source, Image& target);

}  // namespace KZ
