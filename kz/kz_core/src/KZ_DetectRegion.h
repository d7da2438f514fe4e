#pragma once

#include "KZ_AngleRange.h"
#include "KZ_BaseRange.h"
#include "KZ_BaseRect.h"
#include "KZ_Side.h"

namespace KZ {

/// What a detector is asked to search.
struct DetectRegion {
    Rect rect;              ///< where, in pixels of the detector's image
    RangeF widthRange;      ///< object widths in those pixels
    AngleRange angleRange;  ///< degrees
    RangeF zoomRange;       ///< scales; the lower end counts, the upper does not
    Side::Value side = Side::BOTH;

    DetectRegion() = default;
    DetectRegion(const Rect& area, const RangeF& widths, const AngleRange& angles,
                 Side::Value sides)
        : rect(area), widthRange(widths), angleRange(angles), side(sides) {}

    void reset() { *this = DetectRegion(); }
};

}  // namespace KZ
