#pragma once

#include <ostream>

#include "KZ_Limits.h"

namespace KZ {

template <typename T>
struct BasePoint {
    T x;
    T y;

    constexpr BasePoint() : x(0), y(0) {}
    constexpr BasePoint(T pointX, T pointY) : x(pointX), y(pointY) {}
    template <typename U>
    explicit constexpr BasePoint(const BasePoint<U>& other)
        : x(static_cast<T>(other.x)), y(static_cast<T>(other.y)) {}

    constexpr BasePoint operator+(const BasePoint& p) const { return BasePoint(x + p.x, y + p.y); }
    constexpr BasePoint operator-(const BasePoint& p) const { return BasePoint(x - p.x, y - p.y); }
    constexpr BasePoint operator*(T k) const { return BasePoint(x * k, y * k); }
    constexpr bool operator==(const BasePoint& p) const { return x == p.x && y == p.y; }
    constexpr bool operator!=(const BasePoint& p) const { return !(*this == p); }
};

template <typename T>
struct BasePoint3d {
    T x;
    T y;
    T z;

    constexpr BasePoint3d() : x(0), y(0), z(0) {}
    constexpr BasePoint3d(T pointX, T pointY, T pointZ) : x(pointX), y(pointY), z(pointZ) {}

    constexpr bool operator==(const BasePoint3d& p) const {
        return x == p.x && y == p.y && z == p.z;
    }
    constexpr bool operator!=(const BasePoint3d& p) const { return !(*this == p); }
};

using Point = BasePoint<int>;
using PointF = BasePoint<float>;
using Point3d = BasePoint3d<float>;

/// Text form "Point" + type letter + "(x, y)".
template <typename T>
std::ostream& operator<<(std::ostream& stream, const BasePoint<T>& p) {
    return stream << "Point" << typeChar<T>() << "(" << +p.x << ", " << +p.y << ")";
}

template <typename T>
std::ostream& operator<<(std::ostream& stream, const BasePoint3d<T>& p) {
    return stream << "Point3d" << typeChar<T>() << "(" << +p.x << ", " << +p.y << ", " << +p.z
                  << ")";
}

}  // namespace KZ
