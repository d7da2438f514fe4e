#pragma once

#include <cmath>
#include <cstdlib>

#include "KZ_BasePoint.h"
#include "KZ_BaseRect.h"
#include "KZ_BaseSize.h"
#include "LocationState.h"

/// A window that passed a cascade, or the mean of a cluster of them. A raw hit has its centre in
/// pixels of its layer and zoom 1; later the centre is in frame pixels and `zoom` is the layer's.
struct AdaObject {
    KZ::Size size;  ///< in layer pixels
    KZ::Point center;
    float zoom = 0;
    const char* name = "";        ///< of the pattern; belongs to the cascade
    int side = 0;                 ///< positive: `RIGHT`, else `LEFT`
    int angle = 0;                ///< degrees
    int weight = 0;               ///< number of raw windows behind this object
    int score = -2147483647 - 1;  ///< sum of the last stage's votes

    AdaObject() = default;
    AdaObject(const char* pattern, const KZ::Size& extent, const KZ::Point& middle, int sideScore,
              float layerZoom, int degrees, int support, int votes)
        : size(extent),
          center(middle),
          zoom(layerZoom),
          name(pattern),
          side(sideScore),
          angle(degrees),
          weight(support),
          score(votes) {}

    void reset() { *this = AdaObject(); }
    bool isSet() const { return name && *name; }
    /// In frame pixels, rotation ignored.
    KZ::Rect getBaseRect() const;
    LocationState toLocationState() const;
};

inline bool adaObjectsWeightCompare(const AdaObject& a, const AdaObject& b) {
    return a.weight > b.weight;
}
inline bool adaObjectsScoresCompare(const AdaObject& a, const AdaObject& b) {
    return a.score > b.score;
}
/// True when any of seven fields is less. No ordering: it tells sets of results apart.
bool adaObjectsAllCompare(const AdaObject& a, const AdaObject& b);

/// True when `b` is near `a` in place, scale and angle. `eps` is a part of the width and of the
/// zoom, `angleTolerance` in degrees. The width is `a`'s alone, so that the order matters.
inline bool Similar(const AdaObject& a, const AdaObject& b, float eps, int angleTolerance) {
    const float zooms = a.zoom + b.zoom;
    const int distance = std::abs(a.center.y - b.center.y) + std::abs(a.center.x - b.center.x);
    return eps * static_cast<float>(a.size.width) * zooms > static_cast<float>(distance) &&
           std::fabs(a.zoom - b.zoom) < zooms * eps &&
           std::abs(a.angle - b.angle) <= angleTolerance;
}
