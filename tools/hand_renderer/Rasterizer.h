#pragma once

#include <algorithm>
#include <cmath>

#include "Vector3.h"

namespace hand {

/// Calls `visit(x, y, wa, wb, wc)` for every cell of a `width` by `height` grid whose centre
/// (x + .5, y + .5) lies in the triangle, with the weights of its three corners there (they sum to
/// 1). Corners are in cells; their z is not looked at. Both orientations count.
template <typename Visit>
void forEachCell(const Vector3& a, const Vector3& b, const Vector3& c, int width, int height,
                 Visit&& visit) {
    const float area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    if (area == 0) return;
    const float left = std::max(0.f, std::ceil(std::min({a.x, b.x, c.x}) - .5f));
    const float top = std::max(0.f, std::ceil(std::min({a.y, b.y, c.y}) - .5f));
    const float right = std::min(float(width - 1), std::floor(std::max({a.x, b.x, c.x}) - .5f));
    const float bottom = std::min(float(height - 1), std::floor(std::max({a.y, b.y, c.y}) - .5f));
    for (float y = top; y <= bottom; ++y) {
        for (float x = left; x <= right; ++x) {
            const float px = x + .5f, py = y + .5f;
            const float wb = ((px - a.x) * (c.y - a.y) - (py - a.y) * (c.x - a.x)) / area;
            const float wc = ((b.x - a.x) * (py - a.y) - (b.y - a.y) * (px - a.x)) / area;
            const float wa = 1 - wb - wc;
            if (wa < 0 || wb < 0 || wc < 0) continue;
            visit(int(x), int(y), wa, wb, wc);
        }
    }
}

}  // namespace hand
