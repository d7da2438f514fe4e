#pragma once

#include "KZ_BasePoint.h"
#include "KZ_BaseRect.h"
#include "KZ_BaseSize.h"

// A quarter turn and the left-right mirror image of a patch of `size`, on its coordinates. Four
// turns, or two flips, lead back.

/// A turned patch has the size (size.height, size.width).
inline KZ::Point rotatePointOnSize(const KZ::Point& p, const KZ::Size& size) {
    return KZ::Point(p.y, size.width - 1 - p.x);
}

inline KZ::Rect rotateRectOnSize(const KZ::Rect& r, const KZ::Size& size) {
    const int top = size.width - r.right;
    return KZ::Rect(r.top, top, r.bottom, top + r.right - r.left);
}

inline KZ::Point flipPointOnSize(const KZ::Point& p, const KZ::Size& size) {
    return KZ::Point(size.width - 1 - p.x, p.y);
}

inline KZ::Rect flipRectOnSize(const KZ::Rect& r, const KZ::Size& size) {
    return KZ::Rect(size.width - r.right, r.top, size.width - r.left, r.bottom);
}
