#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "GuardedImage.h"

/// Byte `c` of pixel (x, y).
inline int byteAt(const KZ::Image& image, int x, int y, int c = 0) {
    return image.data(x, y)[c];
}

/// 16-bit cell (x, y).
inline int cellAt(const KZ::Image& image, int x, int y) {
    return image.row<uint16_t>(y)[x];
}

/// Channel `c` of a pixel, or its 16-bit cell.
inline int valueAt(const KZ::Image& image, int x, int y, int c) {
    return image.colorMode() == KZ::COLOR_MODE_DEPTH ? cellAt(image, x, y) : byteAt(image, x, y, c);
}

inline int channelsOf(const KZ::Image& image) {
    return image.colorMode() == KZ::COLOR_MODE_DEPTH ? 1 : image.depth();
}

/// Compares every channel with `expected(x, y, c)`; the first difference is told.
template <typename Expected>
void expectValues(const KZ::Image& image, Expected expected) {
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            for (int c = 0; c < channelsOf(image); ++c)
                ASSERT_EQ(expected(x, y, c), valueAt(image, x, y, c))
                    << x << ", " << y << ", " << c;
}

/// True for every pixel when the rectangle has no area.
inline bool isIn(const KZ::Rect& rect, int x, int y) {
    return rect.area() == 0 || rect.contains(KZ::Rect(x, y, x + 1, y + 1));
}

inline void setCell(KZ::Image& image, int x, int y, unsigned int value) {
    image.row<uint16_t>(y)[x] = static_cast<uint16_t>(value);
}
