#include "KZ_RotateImage.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "KZ_Check.h"
#include "KZ_InterpolatedRow.h"
#include "KZ_Matrix.h"
#include "KZ_PixelArithmetic.h"
#include "KZ_Truncate.h"

namespace KZ {

namespace {

// The largest zoom that interpolates.
const float MAX_INTERPOLATED_ZOOM = 3.0f;

// A position in 1/256 pixel.
struct Position {
    int x;
    int y;
};

// Far beyond any image, and small enough for a sum of two.
int fixedPoint(float value) {
    const int limit = (1 << 30) - 1;
    return std::clamp(truncatedToInt(value * 256.0f), -limit, limit);
}

PointF mapped(const Matrix& m, const PointF& center, float dx, float dy) {
    return PointF(center.x + dy * m[1] + dx * m[0], center.y + dy * m[3] + dx * m[2]);
}

// Where the target's pixels lie in the source: the position of pixel (x, y) is row(y) plus
// (columnsX[x], columnsY[x]).
class Mapping {
public:
    Mapping(float angle, float zoom, const PointF& center, const PointF& targetCenter, int width)
        : matrix_(rotationMatrix2d(angle) * zoom), center_(center), targetCenter_(targetCenter) {
        columns_.reserve(2 * static_cast<size_t>(std::max(width, 0)));
        for (const int row : {0, 2})
            for (int i = 0; i < width; ++i)
                columns_.push_back(fixedPoint(matrix_[row] * static_cast<float>(i)));
    }

    const int* columnsX() const { return columns_.data(); }
    const int* columnsY() const { return columns_.data() + columns_.size() / 2; }
    Position row(int y) const {
        const PointF base =
            mapped(matrix_, center_, -targetCenter_.x, static_cast<float>(y) - targetCenter_.y);
        return Position{fixedPoint(base.x), fixedPoint(base.y)};
    }
    bool allInside(const Size& source, const Size& target) const {
        return KZ::allInside(source, target, matrix_, center_, targetCenter_);
    }

private:
    Matrix matrix_;
    PointF center_;
    PointF targetCenter_;
    std::vector<int> columns_;  // x of all columns, then y
};

// What a path needs for a row.
struct RowSource {
    const Image& image;
    const int* columnsX;
    const int* columnsY;
    bool extendBorder;
    // The last position that has a neighbour to the right and below.
    int limitX;
    int limitY;

    Position at(const Position& base, int x) const {
        return Position{base.x + columnsX[x], base.y + columnsY[x]};
    }
    bool contains(const Position& p) const {
        return p.x >= 0 && p.x <= limitX && p.y >= 0 && p.y <= limitY;
    }
    Position clamped(const Position& p) const {
        return Position{std::min(std::max(p.x, 0), limitX), std::min(std::max(p.y, 0), limitY)};
    }
};

// The hot loop of the frame's rotation.
void interpolatedRowMono(const RowSource& source, const Position& base, unsigned char* out,
                         int width) {
    const InterpolatedRow row = {source.image.data(), source.image.stripLength(), source.limitX,
                                 source.limitY,       source.extendBorder,        source.columnsX,
                                 source.columnsY};
    interpolatedRowVariants().back().run(row, base.x, base.y, out, width);
}

void interpolatedRow(const RowSource& source, const Position& base, unsigned char* out, int width) {
    const int depth = source.image.depth();
    for (int x = 0; x < width; ++x, out += depth) {
        Position p = source.at(base, x);
        if (source.extendBorder) p = source.clamped(p);
        if (source.contains(p))
            source.image.fractionalPixel256(p.x, p.y, out);
        else
            std::memset(out, 0, static_cast<size_t>(depth));
    }
}

// An image of a single row or column has nothing to interpolate between.
void nearestRow(const RowSource& source, const Position& base, unsigned char* out, int width) {
    const Image& image = source.image;
    const size_t depth = static_cast<size_t>(image.depth());
    for (int x = 0; x < width; ++x, out += depth) {
        const Position p = source.at(base, x);
        if (source.extendBorder && image.size().area() > 0)
            std::memcpy(out,
                        image.data(std::clamp(p.x / 256, 0, image.width() - 1),
                                   std::clamp(p.y / 256, 0, image.height() - 1)),
                        depth);
        else
            std::memset(out, 0, depth);
    }
}

void averageRow(const RowSource& source, const Position& base, int block, unsigned char* out,
                int width) {
    const Rect whole = source.image.rect();
    const int depth = source.image.depth();
    for (int x = 0; x < width; ++x, out += depth) {
        const Position p = source.at(base, x);
        const int left = p.x / 256 - block / 2;
        const int top = p.y / 256 - block / 2;
        Rect square(left, top, left + block, top + block);
        if (source.extendBorder) square.shiftInBoundary(whole);
        if (whole.contains(square))
            imageMean(source.image, out, square);
        else
            std::memset(out, 0, static_cast<size_t>(depth));
    }
}

PointF pixelCenter(const Size& size) {
    return PointF(static_cast<float>(size.width - 1) * 0.5f,
                  static_cast<float>(size.height - 1) * 0.5f);
}

// The last position along a side that has a neighbour behind it; of a side of millions of pixels
// the last that a number holds.
int lastPosition(int side) {
    return static_cast<int>(
        std::min(int64_t{side - 1} * 256 - 1, int64_t{std::numeric_limits<int>::max()}));
}

RowSource rowSource(const Image& source, const Mapping& mapping, bool extendBorder) {
    return RowSource{source,       mapping.columnsX(),           mapping.columnsY(),
                     extendBorder, lastPosition(source.width()), lastPosition(source.height())};
}

}  // namespace

Size getRotatedFrameSize(const Size& size, float radians) {
    const double cosine = std::cos(static_cast<double>(radians));
    const double c2 = cosine * cosine;
    const double width = static_cast<float>(size.width);
    const double height = static_cast<float>(size.height);
    return Size(static_cast<int>((1 - c2) * height + c2 * width + 0.5),
                static_cast<int>(c2 * height + (1 - c2) * width + 0.5));
}

bool rotateAndZoomImage(const Image& source, Image& target, float angle, float zoom,
                        const PointF& center, bool extendBorder) {
    return rotateAndZoomImage(source, target, angle, zoom, center, pixelCenter(target.size()),
                              extendBorder);
}

bool rotateAndZoomImage(const Image& source, Image& target, float angle, float zoomX, float zoomY,
                        const PointF& center, bool extendBorder) {
    return rotateAndZoomImage(source, target, angle, zoomX, zoomY, center,
                              pixelCenter(target.size()), extendBorder);
}

bool rotateAndZoomImage(const Image& source, Image& target, float angle, float zoomX, float zoomY,
                        const PointF& center, const PointF& targetCenter, bool extendBorder) {
    KZ_ASSERT(equal(zoomX, zoomY), "different zooms not implemented yet");
    return rotateAndZoomImage(source, target, angle, zoomX, center, targetCenter, extendBorder);
}

bool rotateAndZoomImage(const Image& source, Image& target, float angle, float zoom,
                        const PointF& center, const PointF& targetCenter, bool extendBorder) {
    const auto path =
        zoom > MAX_INTERPOLATED_ZOOM ? rotateAndZoomImageAverage : rotateAndZoomImageNn;
    return path(source, target, angle, zoom, center, targetCenter, extendBorder);
}

bool rotateAndZoomImageNn(const Image& source, Image& target, float angle, float zoom,
                          const PointF& center, const PointF& targetCenter, bool extendBorder) {
    KZ_CHECK_COLOR_MODE(source, target.colorMode());
    const Mapping mapping(angle, zoom, center, targetCenter, target.width());
    const RowSource from = rowSource(source, mapping, extendBorder);
    const bool isThin = source.width() < 2 || source.height() < 2;
    const bool isMono = source.colorMode() == COLOR_MODE_MONO;
    const auto fillRow = isThin ? nearestRow : isMono ? interpolatedRowMono : interpolatedRow;
    for (int y = 0; y < target.height(); ++y)
        fillRow(from, mapping.row(y), target.data(0, y), target.width());
    return mapping.allInside(source.size(), target.size());
}

bool rotateAndZoomImageAverage(const Image& source, Image& target, float angle, float zoom,
                               const PointF& center, const PointF& targetCenter,
                               bool extendBorder) {
    KZ_CHECK_COLOR_MODE(source, target.colorMode());
    const Mapping mapping(angle, zoom, center, targetCenter, target.width());
    const RowSource from = rowSource(source, mapping, extendBorder);
    const int block = truncatedToInt(std::max(zoom, 1.0f));
    if (block > source.width() || block > source.height())
        zero(target);
    else
        for (int y = 0; y < target.height(); ++y)
            averageRow(from, mapping.row(y), block, target.data(0, y), target.width());
    return mapping.allInside(source.size(), target.size());
}

bool allInside(const Size& sourceSize, const Size& targetSize, const Matrix& matrix,
               const PointF& center, const PointF& targetCenter) {
    const float limitX = static_cast<float>(sourceSize.width - 1);
    const float limitY = static_cast<float>(sourceSize.height - 1);
    for (const int x : {0, targetSize.width - 1})
        for (const int y : {0, targetSize.height - 1}) {
            const PointF p = mapped(matrix, center, static_cast<float>(x) - targetCenter.x,
                                    static_cast<float>(y) - targetCenter.y);
            if (!(p.x >= 0 && p.x < limitX && p.y >= 0 && p.y < limitY)) return false;
        }
    return true;
}

}  // namespace KZ
