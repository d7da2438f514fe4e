#include "KZ_RelativeLocation.h"

#include "KZ_Geometry.h"

namespace KZ {

namespace {

const float SMALLEST_ASPECT = 1e-5f;

// The shift along the axes of a location of the given side and angle.
PointF turnedShift(const PointF& shift, Side::Value side, float degrees) {
    const PointF mirrored(side == Side::LEFT ? -shift.x : shift.x, shift.y);
    return rotate(mirrored, -degreeToRadian(degrees));
}

}  // namespace

RelativeLocation::RelativeLocation(float scale, const PointF& offset, float degrees,
                                   float aspectOfTarget, float aspectOfSource)
    : zoom(scale),
      shift(offset),
      angle(degrees),
      targetAspect(aspectOfTarget),
      sourceAspect(aspectOfSource) {}

RelativeLocation::RelativeLocation(const ObjectLocation& first, const ObjectLocation& second)
    : zoom(second.size.width / first.size.width),
      shift((second.center.x - first.center.x) / first.size.width,
            (second.center.y - first.center.y) / first.size.width),
      angle(second.angle - first.angle),
      targetAspect(second.size.height / second.size.width),
      sourceAspect(first.size.height / first.size.width) {}

void RelativeLocation::reverse() {
    shift = PointF(-shift.x / zoom, -shift.y / zoom);
    zoom = 1 / zoom;
    angle = -angle;
}

ObjectLocation RelativeLocation::getLocationState(const ObjectLocation& location) const {
    ObjectLocation result = location;
    const PointF turned = turnedShift(shift, location.side, location.angle);
    result.center = location.center + turned * location.size.width;
    result.size = SizeF(zoom * location.size.width, zoom * location.size.height);
    result.angle = location.angle + angle;
    if (targetAspect > SMALLEST_ASPECT) result.size.height = result.size.width * targetAspect;
    return result;
}

ObjectLocation RelativeLocation::getInverseLocationState(const ObjectLocation& location) const {
    ObjectLocation result = location;
    result.size = SizeF(location.size.width / zoom, location.size.height / zoom);
    result.angle = location.angle - angle;
    const PointF turned = turnedShift(shift, location.side, result.angle);
    result.center = location.center - turned * result.size.width;
    if (sourceAspect > SMALLEST_ASPECT) result.size.height = result.size.width * sourceAspect;
    return result;
}

PointF RelativeLocation::getPointInverse(const Size& patchSize, const PointF& p) const {
    const PointF offset(p.x - static_cast<float>(patchSize.width - 1) * 0.5f,
                        p.y - static_cast<float>(patchSize.height - 1) * 0.5f);
    const PointF turned = rotate(offset, degreeToRadian(angle));
    const float width = static_cast<float>(patchSize.width);
    return PointF(shift.x + zoom * (turned.x / width), shift.y + zoom * (turned.y / width));
}

std::ostream& operator<<(std::ostream& stream, const RelativeLocation& location) {
    return stream << "RelativeLocation(" << location.zoom << ", " << location.shift << ", "
                  << location.angle << ", " << location.targetAspect << ", "
                  << location.sourceAspect << ")";
}

}  // namespace KZ
