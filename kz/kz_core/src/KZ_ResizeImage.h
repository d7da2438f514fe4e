#pragma once

#include <vector>

#include "KZ_Image.h"

// Resizing of the frame path. Zoom means smaller by that factor: a target of zoom z has the width
// W / z, truncated. Targets are created by the routines, and must not be the source.

namespace KZ {

/// The 2 by 2 mean of a mono block: `height >> 1` rows of `width >> 1` pixels. Strides are bytes.
/// The first 16 * (width / 32) pixels of a row are means of the means of rows,
/// ((a + b >> 1) + (c + d >> 1)) >> 1; the others are (a + b + c + d) >> 2.
void zoomMonoTwice(int width, int height, const unsigned char* src, unsigned char* dst,
                   int srcStride, int dstStride);

/// One row of zoomMonoTwice: `width` pixels of two source rows give `width >> 1` pixels. No byte
/// beyond those is read or written.
struct MonoTwiceVariant {
    const char* name;
    void (*run)(const unsigned char* upper, const unsigned char* lower, unsigned char* dst,
                int width);
};

/// The variants in this binary: first the scalar definition, last the one in use.
const std::vector<MonoTwiceVariant>& zoomMonoTwiceVariants();

/// The same on 16-bit depth: the mean of the block's cells of 1 to 4999, or 0 if it has none. A
/// width of 1 gives a single column. Strides are bytes.
void zoomDepthTwice(int width, int height, const unsigned char* src, unsigned char* dst,
                    int srcStride, int dstStride);

/// (a + b + c + d) >> 2 per channel of interleaved bytes. Strides are bytes.
void zoomImageTwice(int width, int height, const unsigned char* src, unsigned char* dst,
                    int srcStride, int dstStride, int channels);

/// Half the source, in its mode. `rect` is in target pixels and must lie in the target; one of no
/// area means all of it.
void zoomImageTwice(const Image& source, Image& target, Rect rect = Rect());

/// zoomImageTwice on raw mono buffers; `height` and `width` are the source's.
void scale_half(int height, int width, unsigned char* src, unsigned char* dst, int srcStride,
                int dstStride);

/// Half the source, MONO or DEPTH. `rect` is in source pixels and must lie in the source, its sides
/// are taken down to even numbers; one of no area means all of it. Only the target's half of `rect`
/// is written.
void scaleHalfImage(const Image& source, Image& target, Rect rect = Rect());

/// Nearest neighbour of a MONO or DEPTH image: target pixel (x, y) is the source pixel
/// (x * zoom, y * zoom), truncated. `roi` must lie in the source; every pixel is computed.
void zoomSkipImage(const Image& source, Image& target, float zoom, Rect roi = Rect());

/// The same into the given target of cells T (unsigned char or unsigned short). Samples beyond the
/// source are an assertion.
template <typename T>
void zoom_skip(const Image& source, Image& target, float zoom);
extern template void zoom_skip<unsigned char>(const Image& source, Image& target, float zoom);
extern template void zoom_skip<unsigned short>(const Image& source, Image& target, float zoom);

/// The same on images of three channels.
void zoomSkipImageColor(const Image& source, Image& target, float zoom);

/// The truncated mean of squares of `zoom` by `zoom` pixels, per channel of 8 bits, or of 16 bits
/// for MONO16, DEPTH and USHORT2. The target has at least one pixel each way: where the source is
/// narrower or lower than `zoom`, the caller vouches that the memory around it can be read.
void zoomImage(const Image& source, Image& target, unsigned int zoom);

/// Each source pixel fills a block of `zoom` by `zoom`.
void expandImage(const Image& source, Image& target, unsigned int zoom);
/// The same with a fractional factor: the target has the source's size times `zoom`, truncated, and
/// its pixel (x, y) is the source pixel (x / zoom, y / zoom), truncated.
void expandImage(const Image& source, Image& target, float zoom);

}  // namespace KZ
