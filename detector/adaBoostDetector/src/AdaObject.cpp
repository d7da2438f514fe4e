#include "AdaObject.h"

#include "KZ_Truncate.h"

namespace {

int zoomed(float zoom, int length) {
    return KZ::truncatedToInt(zoom * static_cast<float>(length));
}

}  // namespace

KZ::Rect AdaObject::getBaseRect() const {
    const int width = zoomed(zoom, size.width);
    const int height = zoomed(zoom, size.height);
    const int left = center.x - width / 2;
    const int top = center.y - height / 2;
    return KZ::Rect(left, top, left + width, top + height);
}

LocationState AdaObject::toLocationState() const {
    LocationState location;
    location.center = KZ::PointF(center);
    location.size = KZ::SizeF(static_cast<float>(zoomed(zoom, size.width)),
                              static_cast<float>(zoomed(zoom, size.height)));
    location.angle = static_cast<float>(angle);
    location.side = side > 0 ? KZ::Side::RIGHT : KZ::Side::LEFT;
    return location;
}

bool adaObjectsAllCompare(const AdaObject& a, const AdaObject& b) {
    return a.center.y < b.center.y || a.center.x < b.center.x || a.score < b.score ||
           a.weight < b.weight || a.angle < b.angle || a.side < b.side || a.zoom < b.zoom;
}
