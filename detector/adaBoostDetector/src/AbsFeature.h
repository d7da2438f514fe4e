#pragma once

#include "KZ_BaseRect.h"
#include "WeakClassifierHaar.h"

/// The table of a brightness feature and a threshold as two bounds of a sum: the vote reaches the
/// threshold when the sum over `rect` is from `minValue` to `maxValue`, provided that the votes
/// that do so stand side by side.
struct AbsFeature {
    KZ::Rect rect;
    int minValue = 0;
    int maxValue = 0;
    int width = 0;
    int start = 0;  ///< elements of the integral image, as are the two others
    int heightLen = 0;

    AbsFeature() = default;
    /// `haar` must have votes and a `posRect` without width.
    AbsFeature(const WeakClassifierHaar& haar, int threshold);

    /// Makes the offsets for an integral image with rows of `stripBytes`.
    void setStripLength(unsigned short stripBytes);

    /// `integral` is the window's corner in the integral image.
    bool passes(const unsigned int* integral) const {
        const int sum = static_cast<int>(integral[start + heightLen + width] + integral[start] -
                                         integral[start + heightLen] - integral[start + width]);
        return minValue <= sum && sum <= maxValue;
    }
};
