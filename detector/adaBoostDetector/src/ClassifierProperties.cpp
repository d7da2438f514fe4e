#include "ClassifierProperties.h"

#include "KZ_Assert.h"
#include "KZ_Truncate.h"
#include "PatchTransform.h"

namespace {

int scaled(int length, float zoom) {
    return KZ::truncatedToInt(static_cast<float>(length) * zoom);
}

}  // namespace

const int ClassifierProperties::SIDE_SCORE = 100;

void ClassifierProperties::setObjectCenter(const KZ::Point& center) {
    KZ_ASSERT(baseSize_.area(), "set baseSize firts");
    const int left = center.x - baseSize_.width / 2;
    const int top = center.y - baseSize_.height / 2;
    objectRect = KZ::Rect(left, top, left + baseSize_.width, top + baseSize_.height);
    objectCenter = center;
}

void ClassifierProperties::setMonoSize(const KZ::Size& size) {
    monoSize = size;
    if (objectRect.area() != 0) return;
    baseSize_ = size;
    setObjectCenter(KZ::Point(size.width / 2, size.height / 2));
}

void ClassifierProperties::flip() {
    if (side == KZ::Side::RIGHT) {
        side = KZ::Side::LEFT;
    } else if (side == KZ::Side::LEFT) {
        side = KZ::Side::RIGHT;
    }
    objectCenter = flipPointOnSize(objectCenter, monoSize);
    objectRect = flipRectOnSize(objectRect, monoSize);
    angle = -angle;
    KZ::normalizeAngle(angle);
}

void ClassifierProperties::rotate() {
    objectCenter = rotatePointOnSize(objectCenter, monoSize);
    objectRect = rotateRectOnSize(objectRect, monoSize);
    monoSize = KZ::Size(monoSize.height, monoSize.width);
    angle += 90;
    KZ::normalizeAngle(angle);
}

void ClassifierProperties::resize(float zoom) {
    monoSize = KZ::Size(scaled(monoSize.width, zoom), scaled(monoSize.height, zoom));
    if (objectRect.area() == 0) {
        baseSize_ = monoSize;
        setObjectCenter(KZ::Point(monoSize.width / 2, monoSize.height / 2));
    }
    objectRect = KZ::Rect(scaled(objectRect.left, zoom), scaled(objectRect.top, zoom),
                          scaled(objectRect.right, zoom), scaled(objectRect.bottom, zoom));
    objectCenter = KZ::Point(scaled(objectCenter.x, zoom), scaled(objectCenter.y, zoom));
}

ClassifierProperties::Transformation ClassifierProperties::transformCost(
    const ClassifierProperties& target) const {
    Transformation result;
    if (name != target.name) return result;

    int diff = target.angle + 360 - angle;
    const bool sameSide = (target.side & side) != 0;
    const bool turnsSuffice = sameSide && (side != KZ::Side::BOTH || diff % 90 == 0);
    if (!turnsSuffice) {
        result.possible = true;
        result.flip = true;
        int mirrored = -angle;
        KZ::normalizeAngle(mirrored);
        diff = target.angle + 360 - mirrored;
    }
    if (diff % 90 != 0) {
        result.possible = false;
        return result;
    }
    result.rotations = diff / 90 % 4;
    if (result.rotations != 0) result.possible = true;
    return result;
}

bool ClassifierProperties::in(const KZ::DetectRegion& region, float zoom) const {
    return static_cast<float>(baseSize_.width) * zoom < static_cast<float>(region.rect.width()) &&
           static_cast<float>(baseSize_.height) * zoom < static_cast<float>(region.rect.height()) &&
           region.zoomRange.min - 1e-5 < zoom && region.zoomRange.max > zoom &&
           inAngleSide(*this, region);
}

bool ClassifierProperties::operator==(const ClassifierProperties& other) const {
    return name == other.name && angle == other.angle && side == other.side &&
           monoSize == other.monoSize && objectRect == other.objectRect;
}
