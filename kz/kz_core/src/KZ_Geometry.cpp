#include "KZ_Geometry.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "KZ_Assert.h"
#include "KZ_Truncate.h"

namespace KZ {

namespace {

const float SHORTEST = 1.1920929e-7f;

int truncated(double value) {
    if (value >= maxValue<int>()) return maxValue<int>();
    if (value <= minValue<int>()) return minValue<int>();
    return value == value ? static_cast<int>(value) : 0;
}

float dot(const PointF& a, const PointF& b) {
    return a.x * b.x + a.y * b.y;
}

PointF unit(const PointF& v) {
    const float length = std::sqrt(dot(v, v));
    return length > SHORTEST ? PointF(v.x / length, v.y / length) : PointF();
}

// Steps of `period` that no longer change the value end the walk, and so does a period that is not
// positive.
void raise(float& value, float goal, float period) {
    while (value < goal) {
        const float next = value + period;
        if (!(next > value)) return;
        value = next;
    }
}

}  // namespace

float degreeToRadian(float degrees) {
    return static_cast<float>((degrees < 0 ? degrees + 360.0 : degrees) * 3.1415927 / 180.0);
}

float radianToDegree(float radians) {
    return static_cast<float>((radians < 0 ? radians + 6.2831855 : radians) * 180.0 / 3.1415927);
}

float mixPeriodic(float t, float a, float b, float period) {
    if (std::fabs(a - b) > period * 0.5f) {
        if (a < b) {
            raise(a, b, period);
        } else {
            raise(b, a, period);
        }
    }
    return a + (b - a) * t;
}

float normalizePeriodic(float value, float a, float b) {
    KZ_ASSERT(a < b, a << " >= " << b);
    return value + (b - a) * std::floor((b - value) / (b - a));
}

float getAngle(const PointF& a, const PointF& b) {
    const PointF u = unit(a);
    const PointF v = unit(b);
    return std::atan2(u.x * v.y - u.y * v.x, dot(u, v));
}

PointF rotate(const PointF& p, float radians) {
    const float cos = std::cos(radians);
    const float sin = std::sin(radians);
    return PointF(cos * p.x - sin * p.y, cos * p.y + sin * p.x);
}

Point rotate(const Point& p, float radians) {
    const double cos = std::cos(static_cast<double>(radians));
    const double sin = std::sin(static_cast<double>(radians));
    return Point(truncated(sin * p.y + cos * p.x), truncated(cos * p.y - sin * p.x));
}

Rect rotateRect(const Rect& rect, float radians) {
    const float cos = std::cos(radians);
    const float sin = std::sin(radians);
    const int64_t cx = (static_cast<int64_t>(rect.left) + rect.right) / 2;
    const int64_t cy = (static_cast<int64_t>(rect.top) + rect.bottom) / 2;
    const auto corner = [&](int x, int y) {
        const float dx = static_cast<float>(x - cx);
        const float dy = static_cast<float>(y - cy);
        return Point(truncatedToInt(cos * dx - sin * dy + static_cast<float>(cx)),
                     truncatedToInt(sin * dx + cos * dy + static_cast<float>(cy)));
    };
    const Point leftTop = corner(rect.left, rect.top);
    const Point leftBottom = corner(rect.left, rect.bottom);
    const Point rightTop = corner(rect.right, rect.top);
    const Point rightBottom = corner(rect.right, rect.bottom);
    return Rect(std::min(leftTop.x, leftBottom.x), std::min(leftTop.y, rightTop.y),
                std::max(rightTop.x, rightBottom.x), std::max(leftBottom.y, rightBottom.y));
}

PointF projectPointOnLine(const PointF& p, const PointF& a, const PointF& direction) {
    const PointF n = unit(direction);
    return a + n * dot(n, p - a);
}

bool intersectLines(const PointF& p1, const PointF& d1, const PointF& p2, const PointF& d2,
                    PointF& out) {
    const float den = d1.y * d2.x - d1.x * d2.y;
    if (!(std::fabs(den) > 1e-5f)) return false;
    const float t = (d2.x * (p2.y - p1.y) - d2.y * (p2.x - p1.x)) / den;
    out = p1 + d1 * t;
    return true;
}

bool makeCircleThrough3Points(const PointF& a, const PointF& b, const PointF& c, PointF& center,
                              float& radius) {
    PointF middle;
    if (!intersectLines((a + b) * 0.5f, getOrthogonal(b - a), (b + c) * 0.5f, getOrthogonal(c - b),
                        middle))
        return false;
    center = middle;
    radius = std::sqrt(dot(a - middle, a - middle));
    return true;
}

PointF getOrthogonal(const PointF& v) {
    return PointF(-v.y, v.x);
}

float getPositionPointOnSegment(const PointF& p, const PointF& a, const PointF& b) {
    return dot(p - a, b - a) / dot(b - a, b - a);
}

PointF getNearestPointOnSegment(const PointF& p, const PointF& a, const PointF& b) {
    const float position = getPositionPointOnSegment(p, a, b);
    const float t = position < 0 ? 0 : position > 1 ? 1 : position;
    return a * (1 - t) + b * t;
}

float getSignedDistanceToLine(const PointF& p, const PointF& a, const PointF& direction) {
    const PointF n = unit(direction);
    return (p.y - a.y) * n.x - (p.x - a.x) * n.y;
}

bool solveQuadraticEquation(float a, float b, float c, float& x1, float& x2, float eps) {
    if (std::fabs(a) < 1e-6f) {
        if (std::fabs(b) < 1e-6f) return false;
        x1 = x2 = -c / b;
        return true;
    }
    const float discriminant = b * b - 4 * a * c;
    if (discriminant < -eps) {
        x1 = x2 = b / (-2 * a);
        return false;
    }
    const float root = std::sqrt(discriminant > 0 ? discriminant : 0);
    x1 = (-b - root) / (2 * a);
    x2 = (root - b) / (2 * a);
    return true;
}

}  // namespace KZ
