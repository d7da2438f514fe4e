#pragma once

#include <ostream>

#include "KZ_ObjectLocation.h"

namespace KZ {

/// Where a second location lies relative to a first, in units of the first's width. The default is
/// the identity.
struct RelativeLocation {
    float zoom = 1;          ///< second width over first width
    PointF shift;            ///< offset of the second centre along the unrotated axes
    float angle = 0;         ///< degrees, second minus first
    float targetAspect = 0;  ///< height over width of the second; at most 1e-5: height scales along
    float sourceAspect = 0;  ///< the same of the first

    RelativeLocation() = default;
    RelativeLocation(float zoom, const PointF& shift, float angle, float targetAspect,
                     float sourceAspect);
    RelativeLocation(const ObjectLocation& first, const ObjectLocation& second);

    /// Exchanges the roles of the two locations; the aspects stay as they are.
    void reverse();
    /// From a first location to its second, and back.
    ObjectLocation getLocationState(const ObjectLocation& location) const;
    ObjectLocation getInverseLocationState(const ObjectLocation& location) const;
    /// A point of a patch of the second location in units of the first's width.
    PointF getPointInverse(const Size& patchSize, const PointF& p) const;
};

std::ostream& operator<<(std::ostream& stream, const RelativeLocation& location);

}  // namespace KZ
