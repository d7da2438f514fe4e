#pragma once

#include <vector>

namespace KZ {

/// What a row of bilinear samples of a MONO picture needs. Positions are in 1/256 pixel.
struct InterpolatedRow {
    const unsigned char* pixels;
    /// Bytes from row to row of the picture.
    int stride;
    /// The last position that has a neighbour to the right and below; not negative.
    int limitX;
    int limitY;
    /// Beyond the limits: the nearest position inside, else the sample is 0.
    bool extendBorder;
    /// The way from the row's base to each sample, which along the row never turns back.
    const int* columnsX;
    const int* columnsY;
};

/// Writes `width` samples, sample i at (baseX + columnsX[i], baseY + columnsY[i]): the mean of the
/// four pixels around it by their shares, truncated. Only pixels that count are read.
struct InterpolatedRowVariant {
    const char* name;
    void (*run)(const InterpolatedRow& row, int baseX, int baseY, unsigned char* out, int width);
};

/// The variants in this binary: first the scalar definition, last the one in use.
const std::vector<InterpolatedRowVariant>& interpolatedRowVariants();

}  // namespace KZ
