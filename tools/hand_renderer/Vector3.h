#pragma once

#include <cmath>

namespace hand {

/// A point, a direction or a linear RGB colour.
struct Vector3 {
    float x = 0, y = 0, z = 0;
};

inline Vector3 operator+(const Vector3& a, const Vector3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vector3 operator-(const Vector3& a, const Vector3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vector3 operator-(const Vector3& a) {
    return {-a.x, -a.y, -a.z};
}
inline Vector3 operator*(const Vector3& a, float s) {
    return {a.x * s, a.y * s, a.z * s};
}
/// Component by component, for colours.
inline Vector3 operator*(const Vector3& a, const Vector3& b) {
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
inline Vector3& operator+=(Vector3& a, const Vector3& b) {
    return a = a + b;
}

inline float dot(const Vector3& a, const Vector3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vector3 cross(const Vector3& a, const Vector3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(const Vector3& a) {
    return std::sqrt(dot(a, a));
}
/// Zero stays zero.
inline Vector3 normalized(const Vector3& a) {
    const float norm = length(a);
    return norm > 0 ? a * (1 / norm) : a;
}
inline Vector3 mix(const Vector3& a, const Vector3& b, float t) {
    return a * (1 - t) + b * t;
}

inline float clamp01(float t) {
    return t < 0 ? 0 : t > 1 ? 1 : t;
}
/// 0 below `from`, 1 above `to` (which may be the smaller one), smooth between.
inline float smoothStep(float from, float to, float value) {
    const float t = clamp01((value - from) / (to - from));
    return t * t * (3 - 2 * t);
}

/// A rotation (the images of the three axes) followed by a shift.
struct Transform {
    Vector3 x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1}, origin;
};

inline Vector3 turn(const Transform& t, const Vector3& v) {
    return t.x * v.x + t.y * v.y + t.z * v.z;
}
inline Vector3 apply(const Transform& t, const Vector3& p) {
    return turn(t, p) + t.origin;
}
inline Transform operator*(const Transform& a, const Transform& b) {
    return {turn(a, b.x), turn(a, b.y), turn(a, b.z), apply(a, b.origin)};
}
inline Transform inverse(const Transform& t) {
    Transform back{{t.x.x, t.y.x, t.z.x}, {t.x.y, t.y.y, t.z.y}, {t.x.z, t.y.z, t.z.z}, {}};
    back.origin = -turn(back, t.origin);
    return back;
}

constexpr float degrees = 3.14159265f / 180;

/// Rotations about the axes, the angle in degrees, positive by the right-hand rule.
inline Transform rotationX(float angle) {
    const float c = std::cos(angle * degrees), s = std::sin(angle * degrees);
    return {{1, 0, 0}, {0, c, s}, {0, -s, c}, {}};
}
inline Transform rotationY(float angle) {
    const float c = std::cos(angle * degrees), s = std::sin(angle * degrees);
    return {{c, 0, -s}, {0, 1, 0}, {s, 0, c}, {}};
}
inline Transform rotationZ(float angle) {
    const float c = std::cos(angle * degrees), s = std::sin(angle * degrees);
    return {{c, s, 0}, {-s, c, 0}, {0, 0, 1}, {}};
}

}  // namespace hand
