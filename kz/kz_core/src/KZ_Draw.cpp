#include "KZ_Draw.h"

#include <algorithm>
#include <cmath>

namespace KZ {

namespace {

struct Segment {
    double x, y;    // start
    double dx, dy;  // to the end
};

// Narrows the part [from, to] of a segment to where p * t <= q; false when nothing is left.
bool clip(double p, double q, double& from, double& to) {
    if (p == 0) return q >= 0;
    const double t = q / p;
    if (p < 0)
        from = std::max(from, t);
    else
        to = std::min(to, t);
    return from <= to;
}

// The part of a segment inside `bounds` (both ends inclusive), in 0 ... 1; false when there is
// none.
bool visiblePart(const Segment& s, const Rect& bounds, double& from, double& to) {
    from = 0;
    to = 1;
    return clip(-s.dx, s.x - bounds.left, from, to) && clip(s.dx, bounds.right - s.x, from, to) &&
           clip(-s.dy, s.y - bounds.top, from, to) && clip(s.dy, bounds.bottom - s.y, from, to);
}

// A square brush of one colour.
class Brush {
public:
    Brush(Image& image, const Color& color, int thickness)
        : image_(image), word_(color.prepareColor(image.colorMode())), thickness_(thickness) {}

    void stamp(int x, int y) {
        const int left = x - (thickness_ - 1) / 2, top = y - (thickness_ - 1) / 2;
        const Rect area =
            Rect(left, top, left + thickness_, top + thickness_).clipped(image_.rect());
        for (int row = area.top; row < area.bottom; ++row)
            for (int column = area.left; column < area.right; ++column) set(column, row);
    }

private:
    void set(int x, int y) {
        unsigned char* pixel = image_.data(x, y);
        for (int c = 0; c < image_.depth(); ++c)
            pixel[c] = static_cast<unsigned char>(word_ >> (8 * c));
    }

    Image& image_;
    uint32_t word_;
    int thickness_;
};

// Nearest pixel, kept within +-2^30 so that sums with it stay in range.
int nearestPixel(double position) {
    const double limit = 1 << 30;
    return static_cast<int>(std::floor(std::min(std::max(-limit, position), limit) + 0.5));
}

// Where a brush that is thicker than that touches every pixel of the image anyway.
int limitedThickness(const Image& image, int thickness) {
    return std::min(thickness, 2 * std::max(image.width(), image.height()) + 1);
}

}  // namespace

void drawLine(Image& image, const Point& from, const Point& to, const Color& color, int thickness) {
    const int width = limitedThickness(image, thickness);
    Brush brush(image, color, width);
    if (width < 1) return;
    const Segment line = {static_cast<double>(from.x), static_cast<double>(from.y),
                          static_cast<double>(to.x) - from.x, static_cast<double>(to.y) - from.y};
    Rect bounds = image.rect();
    double first, last;
    if (!visiblePart(line, bounds.resize(width, width), first, last)) return;
    // One stroke for each column or row, whichever the line crosses more of.
    const double length = std::max(std::fabs(line.dx), std::fabs(line.dy));
    const double begin = std::floor(first * length), end = std::ceil(last * length);
    for (double step = begin; step <= end; ++step) {
        const double t = length > 0 ? step / length : 0;
        brush.stamp(nearestPixel(line.x + t * line.dx), nearestPixel(line.y + t * line.dy));
    }
}

void drawRectangle(Image& image, const Rect& rect, const Color& color, int thickness,
                   float radians) {
    if (rect.left >= rect.right || rect.top >= rect.bottom) return;
    const double c = std::cos(static_cast<double>(radians));
    const double s = std::sin(static_cast<double>(radians));
    const double left = rect.left, top = rect.top, right = rect.right - 1.0,
                 bottom = rect.bottom - 1.0;
    const double centerX = (left + right) / 2, centerY = (top + bottom) / 2;
    const auto turned = [=](double x, double y) {
        const double dx = x - centerX, dy = y - centerY;
        return Point(nearestPixel(centerX + c * dx + s * dy),
                     nearestPixel(centerY - s * dx + c * dy));
    };
    const Point corners[4] = {turned(left, top), turned(left, bottom), turned(right, bottom),
                              turned(right, top)};
    for (int i = 0; i < 4; ++i) drawLine(image, corners[i], corners[(i + 1) % 4], color, thickness);
}

}  // namespace KZ
