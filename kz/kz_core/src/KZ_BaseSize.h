#pragma once

#include <istream>
#include <ostream>

namespace KZ {

template <typename T>
struct BaseSize {
    T width;
    T height;

    constexpr BaseSize() : width(0), height(0) {}
    constexpr BaseSize(T columns, T rows) : width(columns), height(rows) {}
    template <typename U>
    explicit constexpr BaseSize(const BaseSize<U>& other)
        : width(static_cast<T>(other.width)), height(static_cast<T>(other.height)) {}

    constexpr T area() const { return width * height; }
    constexpr bool operator==(const BaseSize& other) const {
        return width == other.width && height == other.height;
    }
    constexpr bool operator!=(const BaseSize& other) const { return !(*this == other); }
};

using Size = BaseSize<int>;
using SizeF = BaseSize<float>;

/// Text form "Size(w, h)".
template <typename T>
std::ostream& operator<<(std::ostream& stream, const BaseSize<T>& size) {
    return stream << "Size(" << +size.width << ", " << +size.height << ")";
}

/// Reads exactly "Size(" integer ", " integer ")"; anything else is an assertion.
std::istream& operator>>(std::istream& stream, BaseSize<int>& size);

}  // namespace KZ
