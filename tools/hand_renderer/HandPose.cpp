#include "HandPose.h"

namespace hand {

namespace {

using Joints = std::array<Transform, JOINT_COUNT>;

// A joint's own motion, in its own axes: x runs across the finger, y out of the hand's back.
Transform motionOf(const HandPose& pose, int joint) {
    if (joint == FOREARM) return rotationX(pose.wristBend) * rotationY(-pose.wristTilt);
    for (int f = 0; f < FINGER_COUNT; ++f) {
        for (int level = 0; level < 3; ++level) {
            if (jointOf(Finger(f), level) != joint) continue;
            const FingerPose& finger = pose.fingers[f];
            const Transform bend = rotationX(-finger.bend[level]);
            return level == 0 ? rotationY(finger.spread) * bend : bend;
        }
    }
    return {};
}

Joints poseJoints(const HandMesh& mesh, const HandPose& pose) {
    Joints posed;
    posed[WRIST] = mesh.joints[WRIST];
    for (int joint = 1; joint < JOINT_COUNT; ++joint) {
        const int parent = parentOf(joint);
        const Transform fromParent = inverse(mesh.joints[parent]) * mesh.joints[joint];
        posed[joint] = posed[parent] * fromParent * motionOf(pose, joint);
    }
    return posed;
}

Transform placementOf(const HandPlacement& placement) {
    Transform transform =
        rotationZ(placement.roll) * rotationX(-placement.pitch) * rotationY(placement.yaw);
    transform.origin = placement.position;
    return transform;
}

// From the mesh's axes to the camera's.
class Placer {
public:
    Placer(const HandMesh& mesh, const HandPlacement& placement)
        : transform_(placementOf(placement)),
          middle_(mesh.joints[jointOf(MIDDLE, 3)].origin * .5f),
          scale_(placement.scale),
          mirror_(placement.left) {
        middle_.x = middle_.z = 0;
    }

    Vector3 direction(Vector3 v) const {
        if (mirror_) v.x = -v.x;
        return turn(transform_, v);
    }
    Vector3 point(const Vector3& p) const {
        return direction((p - middle_) * scale_) + transform_.origin;
    }

private:
    Transform transform_;
    Vector3 middle_;
    float scale_;
    bool mirror_;
};

Vector3 skin(const Vector3& p, const Influence& influence, const Joints& motion) {
    Vector3 sum;
    for (int i = 0; i < 4; ++i) {
        if (influence.weight[i] > 0) {
            sum += apply(motion[influence.joint[i]], p) * influence.weight[i];
        }
    }
    return sum;
}

FingerPose finger(float knuckle, float middle, float end, float spread) {
    return {{knuckle, middle, end}, spread};
}

}  // namespace

HandPose openPose() {
    HandPose pose;
    pose.fingers[THUMB] = finger(0, 0, 0, 0);
    pose.fingers[INDEX] = finger(-4, -3, -3, 3);
    pose.fingers[MIDDLE] = finger(-3, -3, -3, 0);
    pose.fingers[RING] = finger(-3, -3, -3, 0);
    pose.fingers[PINKY] = finger(-3, -3, -3, -4);
    return pose;
}

HandPose closedPose() {
    HandPose pose = openPose();
    pose.fingers[THUMB] = finger(6, 10, 5, 0);
    pose.fingers[INDEX].spread = -4;
    pose.fingers[RING].spread = 5;
    pose.fingers[PINKY].spread = 9;
    return pose;
}

HandPose fistPose() {
    HandPose pose;
    pose.fingers[THUMB] = finger(33, 52, 65, 41);
    pose.fingers[INDEX] = finger(72, 98, 60, -2);
    pose.fingers[MIDDLE] = finger(76, 98, 62, 0);
    pose.fingers[RING] = finger(78, 98, 62, 3);
    pose.fingers[PINKY] = finger(80, 96, 60, 6);
    return pose;
}

HandPose mix(const HandPose& a, const HandPose& b, float t) {
    HandPose result;
    const auto between = [t](float from, float to) { return from + (to - from) * t; };
    for (int f = 0; f < FINGER_COUNT; ++f) {
        const FingerPose &from = a.fingers[f], &to = b.fingers[f];
        for (int i = 0; i < 3; ++i) result.fingers[f].bend[i] = between(from.bend[i], to.bend[i]);
        result.fingers[f].spread = between(from.spread, to.spread);
    }
    result.wristBend = between(a.wristBend, b.wristBend);
    result.wristTilt = between(a.wristTilt, b.wristTilt);
    return result;
}

std::vector<Vector3> vertexNormals(const std::vector<Vector3>& positions,
                                   const std::vector<Triangle>& triangles) {
    std::vector<Vector3> normals(positions.size());
    for (const Triangle& t : triangles) {
        const Vector3 normal =
            cross(positions[t.b] - positions[t.a], positions[t.c] - positions[t.a]);
        normals[t.a] += normal;
        normals[t.b] += normal;
        normals[t.c] += normal;
    }
    for (Vector3& normal : normals) normal = normalized(normal);
    return normals;
}

PosedHand pose(const HandMesh& mesh, const HandPose& pose, const HandPlacement& placement) {
    const Joints joints = poseJoints(mesh, pose);
    Joints motion;
    for (int i = 0; i < JOINT_COUNT; ++i) motion[i] = joints[i] * inverse(mesh.joints[i]);

    PosedHand posed;
    posed.left = placement.left;
    posed.positions.resize(mesh.positions.size());
    for (size_t i = 0; i < mesh.positions.size(); ++i) {
        posed.positions[i] = skin(mesh.positions[i], mesh.influences[i], motion);
    }
    // Before the mirroring, which would turn the triangles inside out.
    posed.normals = vertexNormals(posed.positions, mesh.triangles);

    const Placer placer(mesh, placement);
    for (Vector3& p : posed.positions) p = placer.point(p);
    for (Vector3& normal : posed.normals) normal = placer.direction(normal);
    for (int i = 0; i < JOINT_COUNT; ++i) posed.joints[i] = placer.point(joints[i].origin);
    posed.indexSide = placer.point(mesh.indexSide);
    posed.pinkySide = placer.point(mesh.pinkySide);
    return posed;
}

}  // namespace hand
