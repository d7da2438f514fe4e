#pragma once

#include "KZ_Image.h"

namespace KZ {

class Matrix;

/// Width and height blended by the squared cosine, rounded: at a quarter turn they are exchanged.
/// It is no bounding box.
Size getRotatedFrameSize(const Size& size, float radians);

// rotateAndZoomImage fills the created target: its pixel p is the source at
// center + M * (p - targetCenter), M the rotation by `angle` radians times `zoom`, in fixed point
// with eight fractional bits. A zoom of up to 3 interpolates between four pixels, a larger one
// takes the mean of a square of `zoom` pixels. Beyond the source, `extendBorder` repeats its
// border, else pixels become 0. The modes must be equal; modes without sub-pixel access (see
// Image::fractionalPixel256) or imageMean are assertions. Returns allInside() of the mapping.

/// Without a target centre: the middle between the target's first and last pixel.
bool rotateAndZoomImage(const Image& source, Image& target, float angle, float zoom,
                        const PointF& center, bool extendBorder);
/// The two zooms must be equal.
bool rotateAndZoomImage(const Image& source, Image& target, float angle, float zoomX, float zoomY,
                        const PointF& center, bool extendBorder);
bool rotateAndZoomImage(const Image& source, Image& target, float angle, float zoomX, float zoomY,
                        const PointF& center, const PointF& targetCenter, bool extendBorder);
bool rotateAndZoomImage(const Image& source, Image& target, float angle, float zoom,
                        const PointF& center, const PointF& targetCenter, bool extendBorder);

/// The interpolating path, for any zoom.
bool rotateAndZoomImageNn(const Image& source, Image& target, float angle, float zoom,
                          const PointF& center, const PointF& targetCenter, bool extendBorder);
/// The averaging path, for any zoom; a zoom below 1 counts as 1. A square larger than the source
/// leaves the target all zero.
bool rotateAndZoomImageAverage(const Image& source, Image& target, float angle, float zoom,
                               const PointF& center, const PointF& targetCenter, bool extendBorder);

/// True when the four corner pixels of the target map strictly into the source,
/// 0 <= x < W - 1 and 0 <= y < H - 1. `matrix` is 2 by 2, rotation times zoom.
bool allInside(const Size& sourceSize, const Size& targetSize, const Matrix& matrix,
               const PointF& center, const PointF& targetCenter);

}  // namespace KZ
