#pragma once

#include "KZ_BaseRect.h"
#include "KZ_Limits.h"

namespace KZ {

/// `value` towards zero; beyond the range of int the nearest end, and 0 for a NaN. A plain cast
/// has no defined answer there, and processors differ.
inline int truncatedToInt(float value) {
    const float end = 2147483648.0f;
    if (value >= end) return maxValue<int>();
    if (value < -end) return minValue<int>();
    return value == value ? static_cast<int>(value) : 0;
}

/// Each side truncated.
inline Rect truncatedToInt(const RectF& rect) {
    return Rect(truncatedToInt(rect.left), truncatedToInt(rect.top), truncatedToInt(rect.right),
                truncatedToInt(rect.bottom));
}

}  // namespace KZ
