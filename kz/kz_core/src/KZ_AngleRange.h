#pragma once

#include <ostream>

namespace KZ {

/// Brings whole degrees of at least -540 into -180 to 179.
void normalizeAngle(int& angle);

/// Whole degrees from `minAngle` upward to `maxAngle`, with wrap-around; both ends normalised and
/// included. By default the full circle.
class AngleRange {
public:
    int minAngle;
    int maxAngle;

    AngleRange() { reset(); }
    explicit AngleRange(int angle) { setRange(angle, angle); }
    AngleRange(int from, int to) { setRange(from, to); }

    void setRange(int from, int to);
    void reset();
    /// The tested angle is taken as it stands: it is not normalised.
    bool contains(int angle) const;

    bool operator==(const AngleRange& other) const {
        return minAngle == other.minAngle && maxAngle == other.maxAngle;
    }
};

std::ostream& operator<<(std::ostream& stream, const AngleRange& range);

}  // namespace KZ
