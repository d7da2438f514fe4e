#include "KZ_ResizeImage.h"

#include <algorithm>
#include <cstdint>

#include "KZ_Check.h"
#include "KZ_PixelBytes.h"
#include "KZ_Truncate.h"

namespace KZ {

namespace {

// Source index of each target index.
std::vector<int> skipTable(int count, float zoom) {
    std::vector<int> shifts(static_cast<size_t>(std::max(count, 0)));
    for (size_t i = 0; i < shifts.size(); ++i)
        shifts[i] = truncatedToInt(static_cast<float>(i) * zoom);
    return shifts;
}

int shrunk(int side, float zoom) {
    return truncatedToInt(static_cast<float>(side) / zoom);
}

void checkShifts(const std::vector<int>& shifts, const Image& source, const Image& target) {
    const size_t targetWidth = static_cast<size_t>(target.width());
    const size_t targetHeight = static_cast<size_t>(target.height());
    KZ_ASSERT(shifts[targetWidth - 1] < (int)source.size().width,
              shifts[targetWidth - 1] << " >= " << source.size().width);
    KZ_ASSERT(shifts[targetHeight - 1] < (int)source.size().height,
              shifts[targetHeight - 1] << " >= " << source.size().height);
}

// Calls `skipRow(source row, target row, shifts, width)` for each row of a target that has pixels.
template <typename SkipRow>
void skipRows(const Image& source, Image& target, float zoom, SkipRow skipRow) {
    if (target.width() < 1 || target.height() < 1) return;
    const std::vector<int> shifts = skipTable(std::max(target.width(), target.height()), zoom);
    checkShifts(shifts, source, target);
    for (int y = 0; y < target.height(); ++y)
        skipRow(source.data(0, shifts[static_cast<size_t>(y)]), target.data(0, y), shifts.data(),
                target.width());
}

void checkSkipZoom(float zoom) {
    KZ_ASSERT(zoom > 0, "Zoom value must be positive");
}

// Truncated means of squares of `zoom` by `zoom` cells of a row. A zoom known at compile time makes
// the division cheap.
template <typename Cell, int CHANNELS, unsigned int ZOOM>
void boxRow(const unsigned char* src, int srcStride, unsigned char* dst, int width,
            unsigned int runtimeZoom) {
    const unsigned int zoom = ZOOM ? ZOOM : runtimeZoom;
    const unsigned int area = zoom * zoom;
    Cell* out = reinterpret_cast<Cell*>(dst);
    for (int x = 0; x < width; ++x)
        for (int c = 0; c < CHANNELS; ++c) {
            const unsigned char* corner =
                src +
                (static_cast<size_t>(x) * zoom * CHANNELS + static_cast<size_t>(c)) * sizeof(Cell);
            unsigned int sum = 0;
            for (unsigned int row = 0; row < zoom; ++row, corner += srcStride)
                for (unsigned int column = 0; column < zoom; ++column)
                    sum += reinterpret_cast<const Cell*>(corner)[column * CHANNELS];
            out[x * CHANNELS + c] = static_cast<Cell>(sum / area);
        }
}

template <typename Cell, int CHANNELS, unsigned int ZOOM>
void boxImage(const Image& source, Image& target, unsigned int zoom) {
    for (int y = 0; y < target.height(); ++y)
        boxRow<Cell, CHANNELS, ZOOM>(source.data(0, y * static_cast<int>(zoom)),
                                     source.stripLength(), target.data(0, y), target.width(), zoom);
}

void boxImageMono(const Image& source, Image& target, unsigned int zoom) {
    switch (zoom) {
        case 2:
            return boxImage<unsigned char, 1, 2>(source, target, zoom);
        case 3:
            return boxImage<unsigned char, 1, 3>(source, target, zoom);
        case 4:
            return boxImage<unsigned char, 1, 4>(source, target, zoom);
        default:
            return boxImage<unsigned char, 1, 0>(source, target, zoom);
    }
}

// Fills each target row with the source pixels of a column table.
void expandByTable(const Image& source, Image& target, const std::vector<int>& columns,
                   const std::vector<int>& rows) {
    forPixelBytes(source.depth(), [&](auto bytes) {
        for (int y = 0; y < target.height(); ++y) {
            const unsigned char* from = source.data(0, rows[static_cast<size_t>(y)]);
            unsigned char* to = target.data(0, y);
            for (const int column : columns) {
                copyPixel<bytes()>(from + column * bytes(), to);
                to += bytes();
            }
        }
    });
}

// Source index of each of `count` target indices, at most the last one of `side`.
template <typename Divide>
std::vector<int> expandTable(int count, int side, Divide divide) {
    std::vector<int> table(static_cast<size_t>(std::max(count, 0)));
    for (size_t i = 0; i < table.size(); ++i)
        table[i] = std::min(divide(static_cast<int>(i)), side - 1);
    return table;
}

template <typename Divide>
void expandTo(const Size& size, const Image& source, Image& target, Divide divide) {
    target.create(size, source.colorMode());
    expandByTable(source, target, expandTable(size.width, source.width(), divide),
                  expandTable(size.height, source.height(), divide));
}

}  // namespace

template <typename T>
void zoom_skip(const Image& source, Image& target, float zoom) {
    skipRows(source, target, zoom,
             [](const unsigned char* src, unsigned char* dst, const int* shifts, int width) {
                 const T* from = reinterpret_cast<const T*>(src);
                 T* to = reinterpret_cast<T*>(dst);
                 for (int x = 0; x < width; ++x) to[x] = from[shifts[x]];
             });
}
template void zoom_skip<unsigned char>(const Image& source, Image& target, float zoom);
template void zoom_skip<unsigned short>(const Image& source, Image& target, float zoom);

void zoomSkipImageColor(const Image& source, Image& target, float zoom) {
    checkSkipZoom(zoom);
    KZ_ASSERT_EQ(source.depth(), 3);
    target.create(Size(shrunk(source.width(), zoom), shrunk(source.height(), zoom)),
                  source.colorMode());
    skipRows(source, target, zoom,
             [](const unsigned char* src, unsigned char* dst, const int* shifts, int width) {
                 for (int x = 0; x < width; ++x) copyPixel<3>(src + shifts[x] * 3, dst + x * 3);
             });
}

void zoomSkipImage(const Image& source, Image& target, float zoom, Rect roi) {
    checkSkipZoom(zoom);
    KZ_ASSERT(source.rect().contains(roi),
              "source.rect() = " << source.rect() << ", roi = " << roi);
    target.create(Size(shrunk(source.width(), zoom), shrunk(source.height(), zoom)),
                  source.colorMode());
    zero(target);
    switch (source.colorMode()) {
        case COLOR_MODE_MONO:
            return zoom_skip<unsigned char>(source, target, zoom);
        case COLOR_MODE_DEPTH:
            return zoom_skip<unsigned short>(source, target, zoom);
        default:
            KZ_ASSERT(0, "have " << colorModeName(source.colorMode())
                                 << ", but need COLOR_MODE_MONO or COLOR_MODE_DEPTH");
    }
}

void zoomImage(const Image& source, Image& target, unsigned int zoom) {
    KZ_CHECK_CREATED(source);
    KZ_ASSERT(zoom > 0, "Zoom value must be positive");
    const int width = static_cast<int>(static_cast<unsigned int>(source.width()) / zoom);
    const int height = static_cast<int>(static_cast<unsigned int>(source.height()) / zoom);
    target.create(Size(std::max(width, 1), std::max(height, 1)), source.colorMode());
    switch (source.colorMode()) {
        case COLOR_MODE_MONO:
        case COLOR_MODE_RMCT:
            return boxImageMono(source, target, zoom);
        case COLOR_MODE_GRADIENT:
            return boxImage<unsigned char, 2, 0>(source, target, zoom);
        case COLOR_MODE_BGR:
        case COLOR_MODE_RGB:
        case COLOR_MODE_YUV:
            return boxImage<unsigned char, 3, 0>(source, target, zoom);
        case COLOR_MODE_RGBA:
            return boxImage<unsigned char, 4, 0>(source, target, zoom);
        case COLOR_MODE_MONO16:
        case COLOR_MODE_DEPTH:
            return boxImage<uint16_t, 1, 0>(source, target, zoom);
        case COLOR_MODE_USHORT2:
            return boxImage<uint16_t, 2, 0>(source, target, zoom);
        default:
            KZ_ASSERT(0, "color mode is not supported: " << colorModeName(source.colorMode()));
    }
}

void expandImage(const Image& source, Image& target, unsigned int zoom) {
    KZ_CHECK_CREATED(source);
    KZ_ASSERT(zoom > 0, "Zoom value must be positive");
    const int factor = static_cast<int>(zoom);
    expandTo(Size(source.width() * factor, source.height() * factor), source, target,
             [factor](int i) { return i / factor; });
}

void expandImage(const Image& source, Image& target, float zoom) {
    KZ_CHECK_CREATED(source);
    checkSkipZoom(zoom);
    const Size size(truncatedToInt(static_cast<float>(source.width()) * zoom),
                    truncatedToInt(static_cast<float>(source.height()) * zoom));
    expandTo(size, source, target,
             [zoom](int i) { return truncatedToInt(static_cast<float>(i) / zoom); });
}

}  // namespace KZ
