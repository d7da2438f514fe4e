#pragma once

#include <vector>

#include "KZ_Image.h"

namespace KZ {

/// Computes the RMCT code of each pixel: mean = (sum of the eight neighbours + 20) >> 3, and a bit
/// for each neighbour above the mean, from bit 7, top left, in reading order to bit 0, bottom
/// right. The target gets mode RMCT and the size of `mono`. The border repeats the codes beside it.
void computeRmct(const Image& mono, Image& rmct);
/// The same, but of the border only what `rect` touches is filled, and that only when the rectangle
/// is at least 3 by 3 inside the image; the rest of it is 0. The interior is always whole.
void computeRmct(const Image& mono, Image& rmct, Rect rect);

/// The code of the pixel whose neighbours, in reading order, lie at `pixel[offsets[0 ... 7]]`.
unsigned int computeRmctPixel(const unsigned char* pixel, const int* offsets);

/// Codes of `count` pixels of a row: `upper`, `middle` and `lower` point at the first of them and
/// the pixels above and below it. One pixel more is read at either end of each row.
struct RmctRowVariant {
    const char* name;
    void (*run)(const unsigned char* upper, const unsigned char* middle, const unsigned char* lower,
                unsigned char* codes, int count);
};

/// The variants in this binary: first the scalar definition, last the one in use.
const std::vector<RmctRowVariant>& rmctRowVariants();

/// Writes a MONO image of the size of `a` with the number of bits that differ between two RMCT
/// images; 0 outside `rect`. A rectangle of no area means the whole image.
void bitDiff(const Image& a, const Image& b, Image& out, const Rect& rect = Rect());

/// The sum of those numbers over images of equal mode and size.
unsigned int bitDiffSum(const Image& source1, const Image& source2);
/// The same over the window of `width` by `height` at (x1, y1) in the one and (x2, y2) in the
/// other; a window that sticks out is an assertion.
unsigned int bitDiffSum(const Image& source1, const Image& source2, int x1, int y1, int x2, int y2,
                        int width, int height);

/// The number of set bits of each byte.
const unsigned char* getNumbits256();

}  // namespace KZ
