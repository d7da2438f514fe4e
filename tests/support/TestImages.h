#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "GuardedBuffer.h"
#include "KZ_Image.h"

/// Byte `c` of pixel (x, y).
inline int byteAt(const KZ::Image& image, int x, int y, int c = 0) {
    return image.data(x, y)[c];
}

/// Cell `c` of a pixel: a byte, or the 16-bit number or float of modes of one such cell.
inline double valueAt(const KZ::Image& image, int x, int y, int c = 0) {
    switch (image.colorMode()) {
        case KZ::COLOR_MODE_MONO16:
        case KZ::COLOR_MODE_DEPTH:
            return image.row<uint16_t>(y)[x];
        case KZ::COLOR_MODE_FLOAT:
            return image.row<float>(y)[x];
        default:
            return byteAt(image, x, y, c);
    }
}

inline int channelsOf(const KZ::Image& image) {
    const KZ::ColorMode mode = image.colorMode();
    const bool isOneCell = mode == KZ::COLOR_MODE_MONO16 || mode == KZ::COLOR_MODE_DEPTH ||
                           mode == KZ::COLOR_MODE_FLOAT;
    return isOneCell ? 1 : image.depth();
}

/// An image of random cells over foreign memory, with `padding` bytes between rows, whose last
/// pixel lies before an unreadable page.
class GuardedImage {
public:
    GuardedImage(const KZ::Size& size, KZ::ColorMode mode, int padding = 0, unsigned int seed = 1)
        : pitch_(size.width * int(KZ::depth(mode)) + padding),
          buffer_(size_t(pitch_) * size_t(size.height) - size_t(padding)) {
        std::mt19937 random(seed);
        for (unsigned char& byte : buffer_) byte = static_cast<unsigned char>(random());
        image.createRef(buffer_.data(), size, mode, unsigned(pitch_));
        for (int i = 0; mode == KZ::COLOR_MODE_FLOAT && i < size.area(); ++i)  // no NaN
            image.row<float>(i / size.width)[i % size.width] = float(int(random() % 99) - 40) / 8;
        bytes_.assign(buffer_.begin(), buffer_.end());
        before = image;
    }

    /// True when the bytes between the rows are as they were made.
    bool paddingKept() {
        for (size_t i = 0; i < bytes_.size(); ++i)
            if (int(i) % pitch_ >= image.width() * image.depth() && buffer_[i] != bytes_[i])
                return false;
        return true;
    }

    KZ::Image image;
    KZ::Image before;  ///< the pixels as they were made

private:
    int pitch_;
    testing_support::GuardedBuffer<unsigned char> buffer_;
    std::vector<unsigned char> bytes_;
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

/// Compares every cell with `expected(x, y, c)`; the first difference is told.
template <typename Expected>
void expectValues(const KZ::Image& image, Expected expected) {
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            for (int c = 0; c < channelsOf(image); ++c)
                ASSERT_EQ(double(expected(x, y, c)), valueAt(image, x, y, c))
                    << x << ", " << y << ", " << c;
}

/// True for every pixel when the rectangle has no area.
inline bool isIn(const KZ::Rect& rect, int x, int y) {
    return rect.area() == 0 || rect.contains(KZ::Rect(x, y, x + 1, y + 1));
}

/// Runs `run(a, b, target, rect)` on views of sizes around the vector widths, odd and even, on all
/// of them and on parts. Inside the rectangle the target has `expected(a, b, x, y, c)`, and
/// nothing else is written.
template <typename Run, typename Expected>
void expectOnViews(KZ::ColorMode from, KZ::ColorMode to, Run run, Expected expected) {
    for (const KZ::Size& size : {KZ::Size(1, 1), KZ::Size(2, 3), KZ::Size(15, 2), KZ::Size(16, 1),
                                 KZ::Size(17, 5), KZ::Size(33, 4), KZ::Size(67, 3)})
        for (const KZ::Rect& rect :
             {KZ::Rect(), KZ::Rect(size),
              KZ::Rect(size.width / 3, size.height / 2, size.width, size.height)}) {
            SCOPED_TRACE(testing::Message() << size << rect);
            const GuardedImage a(size, from, 8, 1), b(size, from, 4, 2);
            GuardedImage target(size, to, 12, 3);
            run(a.image, b.image, target.image, rect);
            EXPECT_TRUE(target.paddingKept());
            expectValues(target.image, [&](int x, int y, int c) {
                return isIn(rect, x, y) ? double(expected(a.image, b.image, x, y, c))
                                        : valueAt(target.before, x, y, c);
            });
        }
}
