#pragma once

#include <cstring>
#include <random>
#include <vector>

#include "GuardedBuffer.h"
#include "KZ_Image.h"

/// An image of random bytes over foreign memory with `padding` bytes between rows, whose last pixel
/// lies before an unreadable page.
class GuardedImage {
public:
    GuardedImage(const KZ::Size& size, KZ::ColorMode mode, int padding, unsigned int seed)
        : pitch_(size.width * int(KZ::depth(mode)) + padding),
          buffer_(size_t(pitch_ * size.height - padding)) {
        std::mt19937 random(seed);
        for (unsigned char& byte : buffer_) byte = static_cast<unsigned char>(random());
        image.createRef(buffer_.data(), size, mode, static_cast<unsigned int>(pitch_));
        before_.assign(buffer_.begin(), buffer_.end());
    }

    /// True when the bytes between the rows are as they were made.
    bool paddingKept() {
        for (int i = 0; i < int(buffer_.size()); ++i)
            if (i % pitch_ >= image.width() * image.depth() &&
                buffer_[size_t(i)] != before_[size_t(i)])
                return false;
        return true;
    }

    /// Byte `c` of a pixel as it was made.
    unsigned char before(int x, int y, int c) const {
        return before_[size_t(y * pitch_ + x * image.depth() + c)];
    }

    KZ::Image image;

private:
    int pitch_;
    testing_support::GuardedBuffer<unsigned char> buffer_;
    std::vector<unsigned char> before_;
};

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
