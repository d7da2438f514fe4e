#pragma once

#include <cmath>
#include <limits>

namespace KZ {

/// Lowest and highest finite value of a numeric type.
template <typename T>
constexpr T minValue() {
    return std::numeric_limits<T>::lowest();
}
template <typename T>
constexpr T maxValue() {
    return std::numeric_limits<T>::max();
}

/// True when the difference is at most 1e-6 times the larger magnitude, in double precision. A NaN
/// equals nothing.
inline bool equal(float a, float b) {
    const float larger = std::fabs(a) > std::fabs(b) ? std::fabs(a) : std::fabs(b);
    return larger * 1e-6 >= std::fabs(a - b);
}

/// Character that tags a numeric type in text forms.
template <typename T>
char typeChar();
template <>
inline char typeChar<signed char>() {
    return 'C';
}
template <>
inline char typeChar<short>() {
    return 'S';
}
template <>
inline char typeChar<int>() {
    return 'I';
}
template <>
inline char typeChar<unsigned int>() {
    return 'U';
}
template <>
inline char typeChar<float>() {
    return 'F';
}
template <>
inline char typeChar<double>() {
    return 'D';
}

}  // namespace KZ
