#pragma once

#include <string>

#include "KZ_BasePoint.h"
#include "KZ_BaseRect.h"
#include "KZ_BaseSize.h"
#include "KZ_DetectRegion.h"
#include "KZ_Side.h"

/// Which pose of an object a cascade sees, and where in its window.
class ClassifierProperties {
public:
    /// How one pose is made from another: mirrored first, then turned by quarters.
    struct Transformation {
        bool possible = false;
        bool flip = false;
        int rotations = 0;

        /// Number of steps; 0x7fffffff when it is not possible.
        int cost() const { return possible ? rotations + (flip ? 1 : 0) : 0x7fffffff; }
    };

    /// What `AdaObject::side` holds for a `RIGHT` hit; its negative for `LEFT`.
    static const int SIDE_SCORE;

    KZ::Size monoSize;       ///< of the window, in layer pixels
    KZ::Rect objectRect;     ///< the object inside the window
    KZ::Size baseSize_;      ///< of the object at zoom 1
    KZ::Point objectCenter;  ///< inside the window
    std::string name;
    int angle = 0;                           ///< degrees
    KZ::Side::Value side = KZ::Side::RIGHT;  ///< `BOTH`: the pattern is symmetric

    /// The first size that is set also places the object: it fills the window.
    void setMonoSize(const KZ::Size& size);
    void setBaseSize(const KZ::Size& size) { baseSize_ = size; }
    /// Places an object of the base size, which must have an area.
    void setObjectCenter(const KZ::Point& center);
    void setAngle(int degrees) { angle = degrees; }
    void setName(const std::string& text) { name = text; }
    void setSymmetry(bool symmetric) { side = symmetric ? KZ::Side::BOTH : KZ::Side::RIGHT; }

    /// The mirrored pose.
    void flip();
    /// The pose turned by a quarter. The base size stays as it is.
    void rotate();
    /// All lengths times `zoom`, truncated.
    void resize(float zoom);

    /// How to make `target` from this pose. Not possible for the pose itself.
    Transformation transformCost(const ClassifierProperties& target) const;
    /// True when an object of this pose, seen at `zoom`, is one that `region` asks for.
    bool in(const KZ::DetectRegion& region, float zoom) const;

    /// Equal name, angle, side, window and place of the object.
    bool operator==(const ClassifierProperties& other) const;
};

/// True when `region` asks for the angle and the side of `p`.
inline bool inAngleSide(const ClassifierProperties& p, const KZ::DetectRegion& r) {
    return r.angleRange.contains(p.angle) && (r.side & p.side) != 0;
}
