#pragma once

#include "KZ_Image.h"

// The camera's NV21 buffer: width * height bytes of Y, then width * height / 2 bytes of chroma, one
// (V, U) pair for each 2 by 2 block. Rows are tight. Width and height must be even.

namespace KZ {

/// The Y plane as a MONO image of `size`; "Flip" mirrors left to right.
void nv21ToMono(const unsigned char* data, const Size& size, Image& target);
void nv21ToMonoFlip(const unsigned char* data, const Size& size, Image& target);

/// A YUV image of `size`; the four pixels of a block share its chroma.
void nv21ToYuv(const unsigned char* data, const Size& size, Image& target);
void nv21ToYuvFlip(const unsigned char* data, const Size& size, Image& target);

/// A YUV image of half the width and height: the top-left luma of each block with its chroma.
void nv21ToYuvZoom2(const unsigned char* data, const Size& size, Image& target);
void nv21ToYuvZoom2Flip(const unsigned char* data, const Size& size, Image& target);

/// Packs a YUV image as NV21 into a new allocation of W * H * 3 / 2 bytes, W and H being width and
/// height taken down to even. The chroma is that of each block's top-left pixel.
void yuvToNv21(const Image& yuv, SharedArray<unsigned char>& out);

/// Packs a YUV image as Y0 U Y1 V into a new allocation of width * height * 2 bytes, with the mean
/// chroma of each pixel pair. The last pixel of an odd row keeps its Y and U.
void yuvToYuy2(const Image& yuv, SharedArray<unsigned char>& out);

}  // namespace KZ
