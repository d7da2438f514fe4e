#pragma once

#include <vector>

#include "KZ_Image.h"

namespace KZ {

/// 512 rows of 512 bytes, addressed [a + 256][b + 256] for a, b in -255 ... 255; row 0 and column 0
/// are 0. Built at first use, kept for the life of the process.
using GradientTable = const unsigned char (*)[512];

/// min(sqrt(a * a + b * b), 255), truncated.
GradientTable getMagnitudes();
/// Direction atan2(a, b) in 6 bins of 30 degrees, opposite directions alike.
GradientTable getHogUnsigned6();
/// Direction atan2(a, b) in 12 bins of 30 degrees.
GradientTable getHogSigned12();

/// Integral histogram of gradients of the pixels of `rect`: (w + 1) by (h + 1) cells of unsigned
/// 32-bit sums over the pixels above and to the left, one for each bin, then their total. `mode` is
/// COLOR_MODE_INTEGRAL_HOG_UNSIGNED6 or _SIGNED12. Pixels of the rectangle's outer ring count
/// nothing. The rectangle is not checked against the source, which is read inside it alone.
void computeIntegralHog(const Image& mono, Image& out, const Rect& rect, ColorMode mode);
void computeIntegralHog(const unsigned char* data, int stripLength, Image& out, const Rect& rect,
                        ColorMode mode);

/// Adds up a part of a row: for each of `count` pixels, of bin `bins[i]` and magnitude
/// `magnitudes[i]`, the magnitude joins `sums` (one for each bin, then the total), and the cell of
/// `out` becomes the cell of `above` plus `sums`.
using HogRow = void (*)(const unsigned char* bins, const unsigned char* magnitudes,
                        const unsigned int* above, unsigned int* out, unsigned int* sums,
                        int count);
struct HogRowVariant {
    const char* name;
    HogRow unsigned6;
    HogRow signed12;
};

/// The variants in this binary: first the scalar definition, last the one in use.
const std::vector<HogRowVariant>& hogRowVariants();

}  // namespace KZ
