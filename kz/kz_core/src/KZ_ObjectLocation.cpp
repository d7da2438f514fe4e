#include "KZ_ObjectLocation.h"

#include <cmath>

#include "KZ_CopyImage.h"
#include "KZ_Draw.h"
#include "KZ_Geometry.h"
#include "KZ_RotateImage.h"
#include "KZ_Truncate.h"

namespace KZ {

namespace {

// The mid-point between the pixel indices of a patch.
PointF middleOf(const Size& patchSize) {
    return PointF(static_cast<float>(patchSize.width - 1) * 0.5f,
                  static_cast<float>(patchSize.height - 1) * 0.5f);
}

Side::Value composed(Side::Value outer, Side::Value inner) {
    if (outer != Side::LEFT) return inner;
    return inner == Side::RIGHT ? Side::LEFT : Side::RIGHT;
}

}  // namespace

ObjectLocation::ObjectLocation(const RectF& rect)
    : center((rect.left + rect.right) * 0.5f, (rect.top + rect.bottom) * 0.5f),
      size(rect.right - rect.left, rect.bottom - rect.top) {}

bool ObjectLocation::isSet() const {
    return size.width > 1e-6 && size.height > 1e-6;
}

RectF ObjectLocation::getRect() const {
    const float left = center.x - size.width * 0.5f;
    const float top = center.y - size.height * 0.5f;
    return RectF(left, top, left + size.width, top + size.height);
}

std::vector<PointF> ObjectLocation::getCorners() const {
    const RectF rect = getRect();
    std::vector<PointF> corners = {PointF(rect.left, rect.top), PointF(rect.left, rect.bottom),
                                   PointF(rect.right, rect.bottom), PointF(rect.right, rect.top)};
    if (angle == 0) return corners;
    const float radians = degreeToRadian(angle);
    const PointF middle(static_cast<float>(truncatedToInt(center.x)),
                        static_cast<float>(truncatedToInt(center.y)));
    for (PointF& corner : corners) {
        const PointF offset = corner - center;
        corner =
            PointF(rotate(Point(truncatedToInt(offset.x), truncatedToInt(offset.y)), radians)) +
            middle;
    }
    return corners;
}

float ObjectLocation::getZoom(const Size& patchSize) const {
    return size.width / static_cast<float>(patchSize.width);
}

PointF ObjectLocation::getPoint(const Size& patchSize, const PointF& p) const {
    const float radians = degreeToRadian(angle);
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    const PointF offset = p - middleOf(patchSize);
    const float dx = side == Side::LEFT ? -offset.x : offset.x;
    return center + PointF(c * dx + s * offset.y, -s * dx + c * offset.y) * getZoom(patchSize);
}

PointF ObjectLocation::getPointInverse(const Size& patchSize, const PointF& p) const {
    const float radians = degreeToRadian(angle);
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    const float zoom = getZoom(patchSize);
    const PointF e = p - center;
    const float u = (c * e.x - s * e.y) / zoom;
    const float v = (s * e.x + c * e.y) / zoom;
    return PointF(side != Side::LEFT ? u : -u, v) + middleOf(patchSize);
}

ObjectLocation ObjectLocation::getLocationState(const Size& patchSize,
                                                const ObjectLocation& other) const {
    const float zoom = getZoom(patchSize);
    return ObjectLocation(getPoint(patchSize, other.center),
                          SizeF(other.size.width * zoom, other.size.height * zoom),
                          angle + other.angle, composed(side, other.side));
}

ObjectLocation ObjectLocation::getLocationStateInverse(const Size& patchSize,
                                                       const ObjectLocation& other) const {
    const float zoom = getZoom(patchSize);
    return ObjectLocation(getPointInverse(patchSize, other.center),
                          SizeF(other.size.width / zoom, other.size.height / zoom),
                          other.angle - angle, composed(side, other.side));
}

ObjectLocation ObjectLocation::getRelativeLocationState(const ObjectLocation& relative) const {
    const PointF turned = rotate(relative.center, degreeToRadian(angle));
    SizeF newSize(size.width * relative.size.width, size.width * relative.size.height);
    if (relative.size.height == 0) newSize.height = newSize.width * size.height / size.width;
    return ObjectLocation(center + turned * size.width, newSize, angle + relative.angle,
                          composed(side, relative.side));
}

void ObjectLocation::getPatch(const Image& image, const Size& patchSize, Image& patch,
                              bool extendBorder) const {
    patch.create(patchSize, image.colorMode());
    const float zoom = getZoom(patchSize);
    rotateAndZoomImage(image, patch, -degreeToRadian(angle), zoom, zoom, center, extendBorder);
    if (side == Side::LEFT) flipLeftRight(patch);
}

void ObjectLocation::draw(Image& image, const Color& color, int thickness) const {
    drawRectangle(image, truncatedToInt(getRect()), color, thickness, degreeToRadian(angle));
}

std::ostream& operator<<(std::ostream& stream, const ObjectLocation& location) {
    return stream << "ObjectLocation(" << location.center << ", " << location.size << ", "
                  << location.angle << ", " << sideName(location.side) << ")";
}

}  // namespace KZ
