#pragma once

#include "KZ_Check.h"
#include "KZ_Image.h"

namespace KZ {

/// True for rectangles that mean the whole image.
inline bool meansAll(const Rect& rect) {
    return rect.left == rect.right || rect.top == rect.bottom;
}

/// The pixels that an operation over `rect` touches: the whole image where it has no width or
/// height, else the rectangle, which must lie inside (an assertion).
inline Rect regionOf(const Image& source, const Rect& rect) {
    if (meansAll(rect)) return source.rect();
    KZ_CHECK_CONTAINS(source.rect(), rect);
    return rect;
}

/// Calls `kernel(source cells, target cells, pixels)` for each row of `region`.
template <typename S, typename T, typename Kernel>
void forRows(const Image& source, Image& target, const Rect& region, Kernel kernel) {
    const int n = region.width();
    for (int y = region.top; y < region.bottom && n > 0; ++y)
        kernel(reinterpret_cast<const S*>(source.data(region.left, y)),
               reinterpret_cast<T*>(target.data(region.left, y)), n);
}

/// target = operation(source) for each cell of `region`, of modes with one cell a pixel.
template <typename S, typename T, typename Operation>
void mapCells(const Image& source, Image& target, const Rect& region, Operation operation) {
    forRows<S, T>(source, target, region, [operation](const S* s, T* t, int n) {
        for (int x = 0; x < n; ++x) t[x] = operation(s[x]);
    });
}

/// target = operation(source1, source2) for each cell of `region`, `cells` cells a pixel.
template <typename S, typename T, typename Operation>
void mapCellPairs(const Image& source1, const Image& source2, Image& target, const Rect& region,
                  int cells, Operation operation) {
    const int n = region.width() * cells;
    for (int y = region.top; y < region.bottom; ++y) {
        const S* s1 = reinterpret_cast<const S*>(source1.data(region.left, y));
        const S* s2 = reinterpret_cast<const S*>(source2.data(region.left, y));
        T* t = reinterpret_cast<T*>(target.data(region.left, y));
        for (int x = 0; x < n; ++x) t[x] = operation(s1[x], s2[x]);
    }
}

/// Truncated and limited to the range of T, an unsigned type; a NaN gives 0. The comparisons work
/// on floats, so that no value out of the range of int is ever converted.
template <typename T>
inline T saturated(float value) {
    const float high = sizeof(T) == 1 ? 255.0f : 65535.0f;
    const float floored = value > 0.0f ? value : 0.0f;
    return static_cast<T>(static_cast<int>(floored < high ? floored : high));
}

inline unsigned char saturatedByte(int value) {
    return static_cast<unsigned char>(value < 0 ? 0 : value > 255 ? 255 : value);
}

}  // namespace KZ
