#pragma once

#include "KZ_Image.h"

// Resamplers of tools and debug output. `rect` is in target pixels and must lie in the target; one
// of no area means all of it, and only its pixels are written.

namespace KZ {

/// `zoom` above 1: each target pixel is the truncated mean, per channel, of the source pixels from
/// x * zoom to (x + 1) * zoom, both truncated. Colours, MONO and DEPTH.
void zoomImageAverage(const Image& source, Image& target, float zoom, Rect rect = Rect());

/// The same mean from an integral image, into a MONO target.
void zoomImageIntegral(const Image& integral, Image& target, float zoom, Rect rect = Rect());

/// Bilinear, for colours, MONO and DEPTH; the target has the source's size times `scale`,
/// truncated. MONO and DEPTH take the position x / scale, colours start at trunc(128 / scale) and
/// step by trunc(256 / scale), in 1/256 pixel. Positions past the last pixel take the last one.
void resizeImageBilinear(const Image& source, Image& target, float scale, Rect rect = Rect());

/// The source pixel x / scale, truncated, of any mode.
void resizeImageNn(const Image& source, Image& target, float scale, Rect rect = Rect());

/// Bilinear down to half the size, the mean of footprints below.
void resizeImageAccurate(const Image& source, Image& target, float scale, Rect rect = Rect());

/// Bilinear for MONO, to the created target's size; see KZ_Vectorize.h for the geometry.
void resizeBilinearGray(const Image& source, Image& target);

/// Nearest neighbour on raw mono buffers, by float steps of source size / target size. Strides are
/// bytes.
void scale_some_cpp_usage_sl(int srcWidth, int srcHeight, int srcStride, int dstWidth,
                             int dstHeight, int dstStride, const unsigned char* src,
                             unsigned char* dst);

/// Box mean, truncated, of the square of `blockSize` pixels around each pixel (from blockSize / 2
/// pixels before it), cut off at the border, from an integral image into a MONO one.
void integralSmooth(const Image& integral, Image& target, int blockSize);

/// Resizes to the created target's size by means of footprints from integral images. The source is
/// an integral image (the target is then MONO) or has channels of 8 bits, MONO or a colour, as the
/// target has. `from` and `to` are in pixels of the source picture and of the target and lie in
/// them; only pixels of `to` are written.
void integralZoom(const Image& source, Image& target);
void integralZoom(const Image& source, Image& target, Rect from, Rect to);
/// The same with footprints `blockScale` times as large, around their middles.
void integralZoomAndSmooth(const Image& source, Image& target, Rect from, Rect to,
                           float blockScale);

}  // namespace KZ
