#pragma once

#include <cstring>
#include <random>
#include <vector>

#include "GuardedImage.h"

/// A tight image of the given numbers, row after row.
template <typename T>
KZ::Image imageOf(const KZ::Size& size, KZ::ColorMode mode, const std::vector<T>& cells) {
    KZ::Image image(size, mode);
    std::memcpy(image.data(), cells.data(), cells.size() * sizeof(T));
    return image;
}

/// The pixels of an image, without what lies between rows.
template <typename T>
std::vector<T> cellsOf(const KZ::Image& image) {
    const size_t rowCells = size_t(image.width() * image.depth()) / sizeof(T);
    std::vector<T> cells(rowCells * size_t(image.height()));
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(&cells[size_t(y) * rowCells], image.data(0, y), rowCells * sizeof(T));
    return cells;
}

/// Sizes around the vector widths, odd and even, and the rectangles that tests run on them.
inline std::vector<KZ::Size> oddSizes() {
    return {{1, 1}, {2, 3}, {15, 2}, {16, 1}, {17, 5}, {33, 4}, {67, 3}};
}
inline std::vector<KZ::Rect> rectsIn(const KZ::Size& size) {
    return {KZ::Rect(), KZ::Rect(size),
            KZ::Rect(size.width / 3, size.height / 2, size.width, size.height)};
}
