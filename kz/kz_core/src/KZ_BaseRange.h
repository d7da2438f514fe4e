#pragma once

#include <ostream>

#include "KZ_Limits.h"

namespace KZ {

/// A closed interval; by default all values of the type.
template <typename T>
struct BaseRange {
    T min;
    T max;

    constexpr BaseRange() : min(minValue<T>()), max(maxValue<T>()) {}
    constexpr BaseRange(T from, T to) : min(from), max(to) {}
};

using RangeF = BaseRange<float>;

/// Field by field with the tolerance of `equal`.
inline bool operator==(const RangeF& a, const RangeF& b) {
    return equal(a.min, b.min) && equal(a.max, b.max);
}
inline bool operator!=(const RangeF& a, const RangeF& b) {
    return !(a == b);
}

template <typename T>
std::ostream& operator<<(std::ostream& stream, const BaseRange<T>& r) {
    return stream << "Range" << typeChar<T>() << "(" << +r.min << ", " << +r.max << ")";
}

}  // namespace KZ
