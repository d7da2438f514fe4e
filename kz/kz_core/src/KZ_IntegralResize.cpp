#include <cstdint>
#include <vector>

#include "KZ_Check.h"
#include "KZ_Footprints.h"
#include "KZ_IntegralImage.h"
#include "KZ_PixelArithmetic.h"
#include "KZ_ResampleImage.h"

namespace KZ {

namespace {

// The truncated mean of a block of the picture; `upper` and `lower` are the rows of cells at its
// top and below its bottom.
unsigned char blockMean(const uint32_t* upper, const uint32_t* lower, const Span& columns,
                        int height) {
    const uint32_t sum =
        lower[columns.to] - lower[columns.from] - upper[columns.to] + upper[columns.from];
    return static_cast<unsigned char>(sum / static_cast<uint32_t>(columns.length() * height));
}

// Means of the blocks columns x rows into `rect` of a MONO target.
void fillMeans(const Image& integral, Image& target, const Rect& rect,
               const std::vector<Span>& columns, const std::vector<Span>& rows) {
    for (int y = 0; y < rect.height(); ++y) {
        const Span& row = rows[static_cast<size_t>(y)];
        unsigned char* out = target.data(rect.left, rect.top + y);
        for (const Span& column : columns)
            *out++ = blockMean(integral.row<uint32_t>(row.from), integral.row<uint32_t>(row.to),
                               column, row.length());
    }
}

// Blocks of `blockScale` footprints around the middles of `count` pixels that `from` to `to` of a
// side is resized to.
std::vector<Span> blocks(int from, int to, int count, float blockScale, int side) {
    const float step = static_cast<float>(to - from) / static_cast<float>(count);
    const float half = step * blockScale * 0.5f;
    std::vector<Span> spans;
    for (int i = 0; i < count; ++i) {
        const float middle = static_cast<float>(from) + (static_cast<float>(i) + 0.5f) * step;
        spans.push_back(
            spanInside(truncatedToInt(middle - half), truncatedToInt(middle + half), side));
    }
    return spans;
}

void zoomPlane(const Image& integral, Image& target, const Rect& from, const Rect& to,
               float blockScale) {
    const Rect picture = integralRect(integral);
    fillMeans(integral, target, to,
              blocks(from.left, from.right, to.width(), blockScale, picture.right),
              blocks(from.top, from.bottom, to.height(), blockScale, picture.bottom));
}

Rect wholeIfEmpty(const Rect& rect, const Rect& whole) {
    return rect.area() == 0 ? whole : rect;
}

}  // namespace

void zoomImageIntegral(const Image& integral, Image& target, float zoom, Rect rect) {
    KZ_CHECK_COLOR_MODE(integral, COLOR_MODE_INTEGRAL);
    KZ_ASSERT(zoom > 0, "Zoom value must be positive");
    const Rect picture = integralRect(integral);
    target.create(Size(truncatedToInt(static_cast<float>(picture.right) / zoom),
                       truncatedToInt(static_cast<float>(picture.bottom) / zoom)),
                  COLOR_MODE_MONO);
    const Rect targetRect = wholeIfEmpty(rect, target.rect());
    KZ_CHECK_CONTAINS(integralRect(integral), targetRect);
    KZ_CHECK_CONTAINS(target.rect(), targetRect);
    fillMeans(integral, target, targetRect,
              footprints(targetRect.left, targetRect.right, zoom, picture.right),
              footprints(targetRect.top, targetRect.bottom, zoom, picture.bottom));
}

void integralSmooth(const Image& integral, Image& target, int blockSize) {
    KZ_ASSERT(blockSize > 0, "Block size value must be positive");
    KZ_CHECK_COLOR_MODE(integral, COLOR_MODE_INTEGRAL);
    const Rect picture = integralRect(integral);
    target.create(picture.size(), COLOR_MODE_MONO);
    const auto centred = [blockSize](int side) {
        std::vector<Span> spans;
        for (int i = 0; i < side; ++i) {
            const int from = i - blockSize / 2;
            spans.push_back(spanInside(from, from + blockSize, side));
        }
        return spans;
    };
    fillMeans(integral, target, picture, centred(picture.right), centred(picture.bottom));
}

void integralZoom(const Image& source, Image& target) {
    integralZoom(source, target, Rect(), Rect());
}

void integralZoom(const Image& source, Image& target, Rect from, Rect to) {
    integralZoomAndSmooth(source, target, from, to, 1.0f);
}

void integralZoomAndSmooth(const Image& source, Image& target, Rect from, Rect to,
                           float blockScale) {
    KZ_CHECK_CREATED(source);
    KZ_CHECK_CREATED(target);
    const bool isIntegral = source.colorMode() == COLOR_MODE_INTEGRAL;
    KZ_CHECK_COLOR_MODE(target, isIntegral ? COLOR_MODE_MONO : source.colorMode());
    const Rect picture = isIntegral ? integralRect(source) : source.rect();
    from = wholeIfEmpty(from, picture);
    to = wholeIfEmpty(to, target.rect());
    KZ_CHECK_CONTAINS(picture, from);
    KZ_CHECK_CONTAINS(target.rect(), to);
    if (from.area() == 0) return;
    if (isIntegral) return zoomPlane(source, target, from, to, blockScale);

    std::vector<Image> planes, targetPlanes;
    splitChannels(source, planes);
    splitChannels(target, targetPlanes);
    for (size_t c = 0; c < planes.size(); ++c) {
        Image integral;
        computeIntegral(planes[c], integral);
        zoomPlane(integral, targetPlanes[c], from, to, blockScale);
    }
    mergeChannels(targetPlanes, target, target.colorMode());
}

}  // namespace KZ
