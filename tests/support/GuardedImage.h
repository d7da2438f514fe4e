#pragma once

#include <random>
#include <vector>

#include "GuardedBuffer.h"
#include "KZ_Image.h"

/// An image over foreign memory with `padding` bytes between rows, whose last pixel lies before an
/// unreadable page.
class GuardedImage {
public:
    /// All bytes alike.
    GuardedImage(int width, int height, KZ::ColorMode mode, int padding = 0)
        : pitch_(width * int(KZ::depth(mode)) + padding),
          buffer_(size_t(pitch_) * size_t(height) - size_t(padding)) {
        for (unsigned char& byte : buffer_) byte = 0xA5;
        image.createRef(buffer_.data(), KZ::Size(width, height), mode, unsigned(pitch_));
        before_.assign(buffer_.begin(), buffer_.end());
    }
    /// Random bytes, also between the rows.
    GuardedImage(const KZ::Size& size, KZ::ColorMode mode, int padding, unsigned int seed)
        : GuardedImage(size.width, size.height, mode, padding) {
        std::mt19937 random(seed);
        for (unsigned char& byte : buffer_) byte = static_cast<unsigned char>(random());
        before_.assign(buffer_.begin(), buffer_.end());
    }

    /// Random bytes in all pixels, up to `highest`.
    GuardedImage& randomize(std::mt19937& random, unsigned int highest = 255) {
        for (int y = 0; y < image.height(); ++y)
            for (int i = 0; i < image.width() * image.depth(); ++i)
                image.data(0, y)[i] = static_cast<unsigned char>(random() % (highest + 1));
        return *this;
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
