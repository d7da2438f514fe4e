#pragma once

#include <ostream>
#include <vector>

#include "KZ_BasePoint.h"
#include "KZ_BaseRect.h"
#include "KZ_BaseSize.h"
#include "KZ_Color.h"
#include "KZ_Image.h"
#include "KZ_Side.h"

namespace KZ {

/// An oriented object in a frame. The centre of a patch of size (W, H) is ((W - 1) / 2,
/// (H - 1) / 2) and maps to `center`; a positive `angle` (degrees) turns the patch
/// counter-clockwise on the screen; on `LEFT` the patch is mirrored before it is turned.
struct ObjectLocation {
    PointF center;
    SizeF size;  ///< before rotation, in frame pixels
    float angle = 0;
    Side::Value side = Side::RIGHT;

    ObjectLocation() = default;
    ObjectLocation(const PointF& middle, const SizeF& extent, float degrees, Side::Value hand)
        : center(middle), size(extent), angle(degrees), side(hand) {}
    explicit ObjectLocation(const RectF& rect);

    void reset() { *this = ObjectLocation(); }
    bool isSet() const;

    /// The rectangle of `size` around `center`, rotation ignored.
    RectF getRect() const;
    /// Left-top, left-bottom, right-bottom, right-top; at whole pixels unless `angle` is 0.
    std::vector<PointF> getCorners() const;
    /// Frame pixels per patch pixel, from the widths alone.
    float getZoom(const Size& patchSize) const;
    /// Patch point to frame point, and back.
    PointF getPoint(const Size& patchSize, const PointF& p) const;
    PointF getPointInverse(const Size& patchSize, const PointF& p) const;
    /// A location in the patch to one in the frame, and back. Angles are not negated on `LEFT`.
    ObjectLocation getLocationState(const Size& patchSize, const ObjectLocation& other) const;
    ObjectLocation getLocationStateInverse(const Size& patchSize,
                                           const ObjectLocation& other) const;
    /// A location given in units of this one's width. It turns by `+angle` and does not mirror.
    ObjectLocation getRelativeLocationState(const ObjectLocation& relative) const;
    /// Cuts the object out of `image`, upright and unmirrored, at `patchSize`.
    void getPatch(const Image& image, const Size& patchSize, Image& patch, bool extendBorder) const;
    /// Outlines the turned rectangle.
    void draw(Image& image, const Color& color, int thickness) const;
};

std::ostream& operator<<(std::ostream& stream, const ObjectLocation& location);

}  // namespace KZ
