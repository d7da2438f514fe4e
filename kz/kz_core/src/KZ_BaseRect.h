#pragma once

#include <ostream>

#include "KZ_Assert.h"
#include "KZ_BasePoint.h"
#include "KZ_BaseSize.h"

namespace KZ {

/// `right` and `bottom` are exclusive.
template <typename T>
struct BaseRect {
    T left;
    T top;
    T right;
    T bottom;

    constexpr BaseRect() : left(0), top(0), right(0), bottom(0) {}
    constexpr BaseRect(T fromX, T fromY, T toX, T toY)
        : left(fromX), top(fromY), right(toX), bottom(toY) {}
    explicit constexpr BaseRect(const BaseSize<T>& size)
        : left(0), top(0), right(size.width), bottom(size.height) {}

    constexpr T width() const { return right - left; }
    constexpr T height() const { return bottom - top; }
    constexpr T area() const { return width() * height(); }
    constexpr BaseSize<T> size() const { return BaseSize<T>(width(), height()); }

    constexpr bool contains(const BaseRect& rect) const {
        return left <= rect.left && right >= rect.right && top <= rect.top && bottom >= rect.bottom;
    }

    /// Grows the rectangle by `dx` on the left and right and by `dy` above and below.
    BaseRect& resize(T dx, T dy) {
        left -= dx;
        right += dx;
        top -= dy;
        bottom += dy;
        return *this;
    }

    /// The common part with `other`; inverted when there is none.
    constexpr BaseRect intersection(const BaseRect& other) const {
        return BaseRect(left > other.left ? left : other.left, top > other.top ? top : other.top,
                        right < other.right ? right : other.right,
                        bottom < other.bottom ? bottom : other.bottom);
    }

    /// The common part with `other`, or the all-zero rectangle when it is inverted.
    constexpr BaseRect clipped(const BaseRect& other) const {
        const BaseRect common = intersection(other);
        return common.left > common.right || common.top > common.bottom ? BaseRect() : common;
    }

    /// The bounding box of both.
    constexpr BaseRect united(const BaseRect& other) const {
        return BaseRect(left < other.left ? left : other.left, top < other.top ? top : other.top,
                        right > other.right ? right : other.right,
                        bottom > other.bottom ? bottom : other.bottom);
    }

    /// Moves the rectangle, keeping its size, into the boundary, which must be large enough.
    void shiftInBoundary(const BaseRect& rectBoundary) {
        const T width = right - left;
        const T height = bottom - top;
        KZ_ASSERT(width <= T(rectBoundary.size().width) && height <= T(rectBoundary.size().height),
                  "sizes of current rect can't be higher then rectBoundary sizes");
        if (left < rectBoundary.left) moveHorizontally(rectBoundary.left - left);
        if (top < rectBoundary.top) moveVertically(rectBoundary.top - top);
        if (right > rectBoundary.right) moveHorizontally(rectBoundary.right - right);
        if (bottom > rectBoundary.bottom) moveVertically(rectBoundary.bottom - bottom);
    }

    constexpr bool operator==(const BaseRect& r) const {
        return left == r.left && top == r.top && right == r.right && bottom == r.bottom;
    }
    constexpr bool operator!=(const BaseRect& r) const { return !(*this == r); }

private:
    void moveHorizontally(T distance) {
        left += distance;
        right += distance;
    }
    void moveVertically(T distance) {
        top += distance;
        bottom += distance;
    }
};

using Rect = BaseRect<int>;
using RectF = BaseRect<float>;

/// Text form "Rect(left, top, right, bottom)".
template <typename T>
std::ostream& operator<<(std::ostream& stream, const BaseRect<T>& r) {
    return stream << "Rect(" << +r.left << ", " << +r.top << ", " << +r.right << ", " << +r.bottom
                  << ")";
}

}  // namespace KZ
