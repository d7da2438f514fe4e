#include "KZ_RotateImage.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "KZ_Check.h"
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
// columns[x].
class Mapping {
public:
    Mapping(float angle, float zoom, const PointF& center, const PointF& targetCenter, int width)
        : matrix_(rotationMatrix2d(angle) * zoom), center_(center), targetCenter_(targetCenter) {
        columns_.reserve(static_cast<size_t>(std::max(width, 0)));
        for (int i = 0; i < width; ++i) {
            const float x = static_cast<float>(i);
            columns_.push_back(Position{fixedPoint(matrix_[0] * x), fixedPoint(matrix_[2] * x)});
        }
    }

    const Position* columns() const { return columns_.data(); }
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
    std::vector<Position> columns_;
};

// What a path needs of its source for a row.
struct RowSource {
    const Image& image;
    bool extendBorder;
    // The last position that has a neighbour to the right and below.
    int limitX;
    int limitY;

    bool contains(const Position& p) const {
        return p.x >= 0 && p.x <= limitX && p.y >= 0 && p.y <= limitY;
    }
    Position clamped(const Position& p) const {
        return Position{std::min(std::max(p.x, 0), limitX), std::min(std::max(p.y, 0), limitY)};
    }
};

inline Position sum(const Position& a, const Position& b) {
    return Position{a.x + b.x, a.y + b.y};
}

inline unsigned char interpolated(const unsigned char* pixels, int stride, const Position& p) {
    const unsigned char* upper = pixels + static_cast<ptrdiff_t>(p.y >> 8) * stride + (p.x >> 8);
    const unsigned char* lower = upper + stride;
    const int fx = p.x & 255;
    const int fy = p.y & 255;
    const int top = (upper[0] << 8) + fx * (upper[1] - upper[0]);
    const int bottom = (lower[0] << 8) + fx * (lower[1] - lower[0]);
    return static_cast<unsigned char>(((top << 8) + fy * (bottom - top)) >> 16);
}

// The hot loop of the frame's rotation: positions by additions alone.
void interpolatedRowMono(const RowSource& row, const Position* columns, const Position& rowBase,
                         unsigned char* out, int width) {
    // Copies, for the compiler must take `out` to point anywhere else.
    const RowSource source = row;
    const Position base = rowBase;
    const unsigned char* pixels = source.image.data();
    const int stride = source.image.stripLength();
    if (source.extendBorder) {
        for (int x = 0; x < width; ++x)
            out[x] = interpolated(pixels, stride, source.clamped(sum(base, columns[x])));
        return;
    }
    for (int x = 0; x < width; ++x) {
        const Position p = sum(base, columns[x]);
        out[x] = source.contains(p) ? interpolated(pixels, stride, p) : 0;
    }
}

void interpolatedRow(const RowSource& source, const Position* columns, const Position& base,
                     unsigned char* out, int width) {
    const int depth = source.image.depth();
    for (int x = 0; x < width; ++x, out += depth) {
        Position p = sum(base, columns[x]);
        if (source.extendBorder) p = source.clamped(p);
        if (source.contains(p))
            source.image.fractionalPixel256(p.x, p.y, out);
        else
            std::memset(out, 0, static_cast<size_t>(depth));
    }
}

// An image of a single row or column has nothing to interpolate between.
void nearestRow(const RowSource& source, const Position* columns, const Position& base,
                unsigned char* out, int width) {
    const Image& image = source.image;
    const size_t depth = static_cast<size_t>(image.depth());
    for (int x = 0; x < width; ++x, out += depth) {
        const Position p = sum(base, columns[x]);
        if (source.extendBorder && image.size().area() > 0)
            std::memcpy(out,
                        image.data(std::clamp(p.x / 256, 0, image.width() - 1),
                                   std::clamp(p.y / 256, 0, image.height() - 1)),
                        depth);
        else
            std::memset(out, 0, depth);
    }
}

void averageRow(const RowSource& source, const Position* columns, const Position& base, int block,
                unsigned char* out, int width) {
    const Rect whole = source.image.rect();
    const int depth = source.image.depth();
    for (int x = 0; x < width; ++x, out += depth) {
        const Position p = sum(base, columns[x]);
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

RowSource rowSource(const Image& source, bool extendBorder) {
    return RowSource{source, extendBorder, (source.width() - 1) * 256 - 1,
                     (source.height() - 1) * 256 - 1};
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
    const RowSource from = rowSource(source, extendBorder);
    const bool isThin = source.width() < 2 || source.height() < 2;
    const bool isMono = source.colorMode() == COLOR_MODE_MONO;
    const auto fillRow = isThin ? nearestRow : isMono ? interpolatedRowMono : interpolatedRow;
    for (int y = 0; y < target.height(); ++y)
        fillRow(from, mapping.columns(), mapping.row(y), target.data(0, y), target.width());
    return mapping.allInside(source.size(), target.size());
}

bool rotateAndZoomImageAverage(const Image& source, Image& target, float angle, float zoom,
                               const PointF& center, const PointF& targetCenter,
                               bool extendBorder) {
    KZ_CHECK_COLOR_MODE(source, target.colorMode());
    const Mapping mapping(angle, zoom, center, targetCenter, target.width());
    const RowSource from = rowSource(source, extendBorder);
    const int block = truncatedToInt(std::max(zoom, 1.0f));
    if (block > source.width() || block > source.height())
        zero(target);
    else
        for (int y = 0; y < target.height(); ++y)
            averageRow(from, mapping.columns(), mapping.row(y), block, target.data(0, y),
                       target.width());
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
