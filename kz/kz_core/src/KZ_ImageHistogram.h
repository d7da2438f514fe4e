#pragma once

#include "KZ_Image.h"

namespace KZ {

/// Counts of the 256 values of a MONO image.
class ImageHistogram {
public:
    static const int NUM_BINS = 256;

    ImageHistogram() = default;
    explicit ImageHistogram(const Image& image, const Rect& rect = Rect()) { compute(image, rect); }

    /// Counts the pixels of `rect`, or of the whole image when it has no width or height. Another
    /// mode and a rectangle that sticks out are assertions.
    void compute(const Image& image, const Rect& rect = Rect());

    /// Number of pixels of `value`, 0 ... 255 (others are an assertion).
    unsigned int count(int value) const;
    /// Number of all pixels.
    unsigned int total() const { return total_; }
    /// Smallest value that at least `fraction` (0 ... 1) of the pixels do not exceed; 0 when empty.
    int percentile(float fraction) const;
    /// Smallest and largest value that occur; 0 when empty.
    int minValue() const;
    int maxValue() const;

private:
    unsigned int counts_[NUM_BINS] = {};
    unsigned int total_ = 0;
};

/// Spreads the values of a MONO image so that their cumulative histogram over `rect` becomes a
/// straight line from 0 to 255; an image of one value keeps it. Only `rect` is written; no width or
/// height means the whole image.
void equalizeHistogram(const Image& source, Image& target, const Rect& rect = Rect());

}  // namespace KZ
