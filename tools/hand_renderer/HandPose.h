#pragma once

#include <array>
#include <vector>

#include "HandMesh.h"

namespace hand {

/// Angles of one finger in degrees, added to the bind pose, in which the hand is open.
struct FingerPose {
    std::array<float, 3> bend{};  ///< at levels 0, 1, 2 of jointOf(), positive into the palm
    float spread = 0;             ///< at level 0, positive towards the thumb's side
};

struct HandPose {
    std::array<FingerPose, FINGER_COUNT> fingers;
    float wristBend = 0;  ///< degrees, the forearm towards the palm's side
    float wristTilt = 0;  ///< degrees, the forearm towards the thumb's side
};

HandPose openPose();    ///< fingers straight and a little apart
HandPose closedPose();  ///< fingers straight and together, the thumb beside them
HandPose fistPose();    ///< fingers curled, the thumb across them
/// Joint by joint; `t` 0 gives `a`, 1 gives `b`.
HandPose mix(const HandPose& a, const HandPose& b, float t);

/// Where the hand is. The camera sits at the origin and looks along -z, x right, y up, in metres.
struct HandPlacement {
    Vector3 position{0, 0, -.5f};  ///< of the middle of the hand, wrist to finger tips
    /// Degrees. With all three 0 the palm faces the camera and the fingers point up.
    float roll = 0;   ///< in the picture, positive counter-clockwise
    float yaw = 0;    ///< about the hand's own length; 180 shows the back
    float pitch = 0;  ///< positive tips the fingers away from the camera
    float scale = 1;  ///< 1: a hand of 19 cm
    bool left = false;
};

/// A hand in front of the camera. The indices are those of the mesh that it was made from.
struct PosedHand {
    std::vector<Vector3> positions;
    std::vector<Vector3> normals;  ///< unit, outwards
    std::array<Vector3, JOINT_COUNT> joints;
    Vector3 indexSide, pinkySide;
    bool left = false;
};

/// Skins the mesh linearly over its joints and puts it in its place.
PosedHand pose(const HandMesh& mesh, const HandPose& pose, const HandPlacement& placement);

/// Unit normals of a surface, each triangle counting by its area.
std::vector<Vector3> vertexNormals(const std::vector<Vector3>& positions,
                                   const std::vector<Triangle>& triangles);

}  // namespace hand
