#include "KZ_ResampleImage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "KZ_BilinearRows.h"
#include "KZ_Check.h"
#include "KZ_Footprints.h"
#include "KZ_PixelBytes.h"
#include "KZ_Vectorize.h"

namespace KZ {

namespace {

// Below this scale bilinear samples would miss pixels.
const float MIN_BILINEAR_SCALE = 0.5f;

void checkSampledMode(const Image& source) {
    const ColorMode mode = source.colorMode();
    KZ_ASSERT(isColor(mode) || mode == COLOR_MODE_MONO || mode == COLOR_MODE_DEPTH,
              "color mode is not supported: " << colorModeName(mode));
}

int scaledSide(int side, float scale) {
    return truncatedToInt(static_cast<float>(side) * scale);
}

void createScaled(const Image& source, Image& target, float scale) {
    KZ_ASSERT(scale > 0, "Scale value must be positive");
    target.create(Size(scaledSide(source.width(), scale), scaledSide(source.height(), scale)),
                  source.colorMode());
}

// The rectangle to write; one of no area means the whole target.
Rect writtenRect(const Image& target, const Rect& rect) {
    const Rect targetRect = rect.area() == 0 ? target.rect() : rect;
    KZ_CHECK_CONTAINS(target.rect(), targetRect);
    return targetRect;
}

template <typename Cell, int CHANNELS>
void averageBlock(const Image& source, const Span& columns, const Span& rows, unsigned char* out) {
    uint64_t sums[CHANNELS] = {};
    for (int y = rows.from; y < rows.to; ++y) {
        const Cell* row = source.row<Cell>(y);
        for (int x = columns.from; x < columns.to; ++x)
            for (int c = 0; c < CHANNELS; ++c) sums[c] += row[x * CHANNELS + c];
    }
    const uint64_t area =
        static_cast<uint64_t>(columns.length()) * static_cast<uint64_t>(rows.length());
    for (int c = 0; c < CHANNELS; ++c)
        reinterpret_cast<Cell*>(out)[c] = static_cast<Cell>(sums[c] / area);
}

template <typename Cell, int CHANNELS>
void averageImage(const Image& source, Image& target, float zoom, const Rect& rect) {
    const std::vector<Span> columns = footprints(rect.left, rect.right, zoom, source.width());
    const std::vector<Span> rows = footprints(rect.top, rect.bottom, zoom, source.height());
    for (int y = 0; y < rect.height(); ++y)
        for (int x = 0; x < rect.width(); ++x)
            averageBlock<Cell, CHANNELS>(source, columns[static_cast<size_t>(x)],
                                         rows[static_cast<size_t>(y)],
                                         target.data(rect.left + x, rect.top + y));
}

// `position(i)`, in 1/256 pixel, for the target indices `from` to `to`.
template <typename Position>
std::vector<BilinearTap> taps(int from, int to, int side, Position position) {
    std::vector<BilinearTap> result;
    for (int i = from; i < to; ++i) result.push_back(bilinearTap(position(i), side));
    return result;
}

template <typename Position>
void bilinearBytes(const Image& source, Image& target, const Rect& rect, Position position) {
    scaleBilinearBytes(source, target, rect, taps(rect.left, rect.right, source.width(), position),
                       taps(rect.top, rect.bottom, source.height(), position));
}

// `index(i)` for the target indices `from` to `to`, at most the last one of the source's side.
template <typename Index>
std::vector<int> nearestTable(int from, int to, int side, Index index) {
    std::vector<int> table;
    for (int i = from; i < to; ++i) table.push_back(std::min(index(i), side - 1));
    return table;
}

auto stepped(float step) {
    return [step](int i) { return truncatedToInt(static_cast<float>(i) * step); };
}

// The last position of a side whose right or lower neighbour exists.
int lastPosition(int side) {
    return (side - 1) * 256 - 1;
}

// Invalid cells take no part, which Image knows how to do. A side of one cell has nothing to
// interpolate between and repeats the nearest cell.
template <typename Position>
void bilinearDepth(const Image& source, Image& target, const Rect& rect, Position position) {
    const int lastX = lastPosition(source.width());
    const int lastY = lastPosition(source.height());
    for (int y = rect.top; y < rect.bottom; ++y)
        for (int x = rect.left; x < rect.right; ++x) {
            const int x256 = std::max(std::min(position(x), lastX), 0);
            const int y256 = std::max(std::min(position(y), lastY), 0);
            if (lastX < 0 || lastY < 0)
                copyPixel<2>(source.data(x256 / 256, y256 / 256), target.data(x, y));
            else
                source.fractionalPixel256(x256, y256, target.data(x, y));
        }
}

}  // namespace

void zoomImageAverage(const Image& source, Image& target, float zoom, Rect rect) {
    KZ_ASSERT_GT(zoom, 1.f);
    checkSampledMode(source);
    target.create(Size(truncatedToInt(static_cast<float>(source.width()) / zoom),
                       truncatedToInt(static_cast<float>(source.height()) / zoom)),
                  source.colorMode());
    rect = writtenRect(target, rect);
    if (source.colorMode() == COLOR_MODE_DEPTH)
        return averageImage<uint16_t, 1>(source, target, zoom, rect);
    switch (source.depth()) {
        case 1:
            return averageImage<unsigned char, 1>(source, target, zoom, rect);
        case 3:
            return averageImage<unsigned char, 3>(source, target, zoom, rect);
        case 4:
            return averageImage<unsigned char, 4>(source, target, zoom, rect);
        default:
            KZ_ASSERT(0, "zooming of image with depth > 4 is not supported."
                             << "Color mode is " << colorModeName(source.colorMode()));
    }
}

void resizeImageBilinear(const Image& source, Image& target, float scale, Rect rect) {
    checkSampledMode(source);
    createScaled(source, target, scale);
    rect = writtenRect(target, rect);
    const auto floatPosition = [scale](int i) {
        return truncatedToInt(static_cast<float>(i) / scale * 256.0f);
    };
    if (source.colorMode() == COLOR_MODE_DEPTH)
        return bilinearDepth(source, target, rect, floatPosition);
    if (source.colorMode() == COLOR_MODE_MONO)
        return bilinearBytes(source, target, rect, floatPosition);
    const int step = truncatedToInt(256.0f / scale);
    const int start = truncatedToInt(128.0f / scale);
    bilinearBytes(source, target, rect, [step, start](int i) { return start + i * step; });
}

void resizeImageNn(const Image& source, Image& target, float scale, Rect rect) {
    createScaled(source, target, scale);
    const Rect targetRect = rect.area() == 0 ? target.rect() : rect;
    KZ_CHECK_CONTAINS(target.rect(), targetRect);
    const auto nearest = [scale](int i) { return truncatedToInt(static_cast<float>(i) / scale); };
    const std::vector<int> columns =
        nearestTable(targetRect.left, targetRect.right, source.width(), nearest);
    const std::vector<int> rows =
        nearestTable(targetRect.top, targetRect.bottom, source.height(), nearest);
    forPixelBytes(source.depth(), [&](auto bytes) {
        for (int y = 0; y < targetRect.height(); ++y) {
            const unsigned char* from = source.data(0, rows[static_cast<size_t>(y)]);
            unsigned char* to = target.data(targetRect.left, targetRect.top + y);
            for (const int column : columns) {
                copyPixel<bytes()>(from + column * bytes(), to);
                to += bytes();
            }
        }
    });
}

void scale_some_cpp_usage_sl(int srcWidth, int srcHeight, int srcStride, int dstWidth,
                             int dstHeight, int dstStride, const unsigned char* src,
                             unsigned char* dst) {
    const float stepX = static_cast<float>(srcWidth) / static_cast<float>(dstWidth);
    const float stepY = static_cast<float>(srcHeight) / static_cast<float>(dstHeight);
    const std::vector<int> columns = nearestTable(0, dstWidth, srcWidth, stepped(stepX));
    const std::vector<int> rows = nearestTable(0, dstHeight, srcHeight, stepped(stepY));
    for (const int row : rows) {
        const unsigned char* from = src + static_cast<ptrdiff_t>(row) * srcStride;
        for (size_t x = 0; x < columns.size(); ++x) dst[x] = from[columns[x]];
        dst += dstStride;
    }
}

void resizeImageAccurate(const Image& source, Image& target, float scale, Rect rect) {
    if (scale >= MIN_BILINEAR_SCALE)
        resizeImageBilinear(source, target, scale, rect);
    else
        zoomImageAverage(source, target, 1 / scale, rect);
}

void resizeBilinearGray(const Image& source, Image& target) {
    scaleBilinearV_N32(source, target);
}

}  // namespace KZ
