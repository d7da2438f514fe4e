#include "KZ_CopyImage.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "KZ_Check.h"
#include "KZ_PixelBytes.h"

namespace KZ {

namespace {

const int QUARTERS = 4;

using WideRect = BaseRect<int64_t>;

WideRect wide(const Rect& rect) {
    return WideRect(rect.left, rect.top, rect.right, rect.bottom);
}

template <int BYTES>
void repeatPixel(const unsigned char* pixel, unsigned char* from, int count) {
    for (int i = 0; i < count; ++i) copyPixel<BYTES>(pixel, from + i * BYTES);
}

template <int BYTES>
void mirrorRow(const unsigned char* from, unsigned char* to, int width) {
    const unsigned char* last = from + (width - 1) * BYTES;
    for (int x = 0; x < width; ++x) copyPixel<BYTES>(last - x * BYTES, to + x * BYTES);
}

// target(y, x) = source(x, y), walked so that writes are in order.
void transposePixels(const Image& source, Image& target) {
    forPixelBytes(source.depth(), [&](auto bytes) {
        const int stride = source.stripLength();
        for (int y = 0; y < target.height(); ++y) {
            const unsigned char* from = source.data(y, 0);
            unsigned char* to = target.data(0, y);
            for (int x = 0; x < target.width(); ++x, from += stride, to += bytes())
                copyPixel<bytes()>(from, to);
        }
    });
}

// Calls `run` with the source, or with a copy of it where source and target are the same image.
template <typename Run>
void withoutAlias(const Image& source, const Image& target, Run run) {
    if (&source != &target) return run(source);
    const Image copy(source);
    run(copy);
}

}  // namespace

void copyImage(const Image& source, Image& target, const Rect& rect) {
    copyImage(source, target, rect, Point(rect.left, rect.top));
}

void copyImage(const Image& source, Image& target, const Rect& rect, const Point& targetPoint) {
    if (!target.isCreated()) target.create(source.size(), source.colorMode());
    KZ_CHECK_COLOR_MODE(target, source.colorMode());
    const Rect wanted = rect == Rect() ? source.rect() : rect;
    // Wide, for the target point may be anywhere.
    const int64_t dx = static_cast<int64_t>(wanted.left) - targetPoint.x;
    const int64_t dy = static_cast<int64_t>(wanted.top) - targetPoint.y;
    const WideRect shown(dx, dy, dx + target.width(), dy + target.height());
    const WideRect inside = wide(wanted).clipped(wide(source.rect())).clipped(shown);
    if (inside.width() <= 0) return;
    const size_t bytes = static_cast<size_t>(inside.width()) * static_cast<size_t>(source.depth());
    for (int64_t y = inside.top; y < inside.bottom; ++y)
        std::memmove(target.data(static_cast<int>(inside.left - dx), static_cast<int>(y - dy)),
                     source.data(static_cast<int>(inside.left), static_cast<int>(y)), bytes);
}

void copyImageBorder(const Image& source, Image& target, const Rect& rect) {
    const Rect innerRect = rect.clipped(source.rect());
    KZ_ASSERT(innerRect.area() != 0, rect << " is out of " << source.rect());
    target.create(source.size(), source.colorMode());
    copyImage(source, target, innerRect);

    forPixelBytes(source.depth(), [&](auto bytes) {
        for (int y = innerRect.top; y < innerRect.bottom; ++y) {
            repeatPixel<bytes()>(target.data(innerRect.left, y), target.data(0, y), innerRect.left);
            repeatPixel<bytes()>(target.data(innerRect.right - 1, y),
                                 target.data(innerRect.right, y), target.width() - innerRect.right);
        }
    });
    const size_t rowBytes =
        static_cast<size_t>(target.width()) * static_cast<size_t>(target.depth());
    for (int y = innerRect.top - 1; y >= 0; --y)
        std::memcpy(target.data(0, y), target.data(0, innerRect.top), rowBytes);
    for (int y = innerRect.bottom; y < target.height(); ++y)
        std::memcpy(target.data(0, y), target.data(0, innerRect.bottom - 1), rowBytes);
}

void rotatePi4(const Image& source, Image& target, int quarters) {
    KZ_CHECK_CREATED(source);
    switch ((quarters % QUARTERS + QUARTERS) % QUARTERS) {
        case 0:
            target = source;
            return;
        case 1: {  // (x, y) goes to (y, width - 1 - x)
            Image turned;
            transpose(source, turned);
            flipTopBottom(turned, target);
            return;
        }
        case 2: {
            flipTopBottom(source, target);
            flipLeftRight(target);
            return;
        }
        default: {
            Image turned;
            transpose(source, turned);
            flipLeftRight(turned, target);
        }
    }
}

void transpose(const Image& source, Image& target) {
    KZ_CHECK_CREATED(source);
    withoutAlias(source, target, [&](const Image& image) {
        target.create(Size(image.height(), image.width()), image.colorMode());
        transposePixels(image, target);
    });
}

void flipLeftRight(Image& source) {
    KZ_CHECK_CREATED(source);
    forPixelBytes(source.depth(), [&](auto bytes) {
        for (int y = 0; y < source.height(); ++y) {
            unsigned char* left = source.data(0, y);
            unsigned char* right = source.data(source.width() - 1, y);
            for (; left < right; left += bytes(), right -= bytes())
                std::swap_ranges(left, left + bytes(), right);
        }
    });
}

void flipLeftRight(const Image& source, Image& target) {
    if (&source == &target) return flipLeftRight(target);
    KZ_CHECK_CREATED(source);
    target.create(source.size(), source.colorMode());
    forPixelBytes(source.depth(), [&](auto bytes) {
        for (int y = 0; y < source.height(); ++y)
            mirrorRow<bytes()>(source.data(0, y), target.data(0, y), source.width());
    });
}

void flipTopBottom(const Image& source, Image& target) {
    KZ_CHECK_CREATED(source);
    withoutAlias(source, target, [&](const Image& image) {
        target.create(image.size(), image.colorMode());
        const size_t bytes =
            static_cast<size_t>(image.width()) * static_cast<size_t>(image.depth());
        if (bytes == 0) return;
        for (int y = 0; y < image.height(); ++y)
            std::memcpy(target.data(0, image.height() - 1 - y), image.data(0, y), bytes);
    });
}

}  // namespace KZ
