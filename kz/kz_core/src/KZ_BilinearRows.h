#pragma once

#include <vector>

#include "KZ_Image.h"

namespace KZ {

/// The two source pixels that a target column or row lies between, and how far it is from the first
/// to the second in 1/256.
struct BilinearTap {
    int first;
    int second;
    int fraction;
};

/// The tap of a position in 1/256 pixel; outside the first and last of `side` pixels it is those.
BilinearTap bilinearTap(int position256, int side);

/// Fills `rect` of the target with bilinear samples of interleaved bytes, truncated. `columns` and
/// `rows` hold a tap for each column and row of the rectangle.
void scaleBilinearBytes(const Image& source, Image& target, const Rect& rect,
                        const std::vector<BilinearTap>& columns,
                        const std::vector<BilinearTap>& rows);

}  // namespace KZ
