#include "HandTruth.h"

#include <algorithm>

namespace hand {

HandTruth measure(const HandMesh& mesh, const PosedHand& posed, const Camera& camera) {
    const auto flat = [&](const Vector3& p) {
        const Vector3 q = project(camera, p);
        return Vector3{q.x, q.y, 0};
    };
    const Vector3 wrist = flat(posed.joints[WRIST]);
    const Vector3 along = normalized(flat(posed.joints[jointOf(MIDDLE, 0)]) - wrist);

    HandTruth truth;
    truth.inside = true;
    float extent = 0;
    for (int i = 0; i < mesh.handVertices; ++i) {
        const Vector3 p = flat(posed.positions[i]);
        const float distance = dot(p - wrist, along);
        if (distance < 0) continue;
        extent = std::max(extent, distance);
        truth.inside = truth.inside && p.x >= 0 && p.y >= 0 && p.x <= float(camera.width) &&
                       p.y <= float(camera.height);
    }
    const Vector3 middle = wrist + along * (extent * .5f);
    truth.cx = middle.x;
    truth.cy = middle.y;
    truth.palmWidth = length(flat(posed.indexSide) - flat(posed.pinkySide));
    // The picture's y points down: counter-clockwise from upright is towards -x.
    truth.angle = std::atan2(-along.x, -along.y) / degrees;
    return truth;
}

}  // namespace hand
