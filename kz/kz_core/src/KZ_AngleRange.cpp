#include "KZ_AngleRange.h"

#include <cstdint>

namespace KZ {

void normalizeAngle(int& angle) {
    angle = static_cast<int>((static_cast<int64_t>(angle) + 540) % 360 - 180);
}

void AngleRange::setRange(int from, int to) {
    minAngle = from;
    maxAngle = to;
    normalizeAngle(minAngle);
    normalizeAngle(maxAngle);
}

void AngleRange::reset() {
    minAngle = -180;
    maxAngle = 179;
}

bool AngleRange::contains(int angle) const {
    if (minAngle <= maxAngle) return minAngle <= angle && maxAngle >= angle;
    return minAngle <= angle || maxAngle >= angle;
}

std::ostream& operator<<(std::ostream& stream, const AngleRange& range) {
    return stream << "AngleRange(" << range.minAngle << ", " << range.maxAngle << ")";
}

}  // namespace KZ
