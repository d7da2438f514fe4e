#pragma once

#include <array>
#include <string>
#include <vector>

#include "Vector3.h"

namespace hand {

enum Finger { THUMB, INDEX, MIDDLE, RING, PINKY, FINGER_COUNT };

/// Joints: the wrist, then per finger its chain from the root to the tip, then the forearm.
/// A thumb has no intermediate phalanx: its chain is one joint shorter.
constexpr int WRIST = 0;
constexpr int FOREARM = 25;
constexpr int JOINT_COUNT = 26;
/// `level` 0 is the knuckle (of the thumb: the joint at the wrist), 1 and 2 the next joints, 3 the
/// tip.
int jointOf(Finger finger, int level);
/// The joint that `joint` hangs on; of the wrist -1.
int parentOf(int joint);

struct Triangle {
    int a, b, c;
};

/// Up to four joints that move a vertex; the weights sum to 1.
struct Influence {
    std::array<int, 4> joint{};
    std::array<float, 4> weight{};
};

/// A right hand in its bind pose, in metres: the wrist at the origin, the fingers along +y, the
/// palm towards +z, the thumb on +x: what a camera that looks along -z sees upright and unmirrored.
/// Vertices come in the order hand, bare forearm, sleeve.
struct HandMesh {
    std::vector<Vector3> positions;
    std::vector<Influence> influences;
    std::vector<Triangle> triangles;        ///< counter-clockwise seen from outside
    std::vector<Triangle> coarseTriangles;  ///< the same surface roughly, for shadows
    int handVertices = 0;                   ///< vertices of the hand proper come first
    int skinVertices = 0;                   ///< then those of the bare forearm; sleeve after
    /// Local axes of a joint: -z towards the next joint, +y out of the back of the hand.
    std::array<Transform, JOINT_COUNT> joints;
    /// Where the palm is broadest at the knuckles, on the side of the index and of the pinky.
    Vector3 indexSide, pinkySide;
};

/// Reads the skinned mesh of a right hand whose joints are named as WebXR names them, smooths it by
/// two rounds of subdivision and continues it by a forearm in a sleeve.
/// Throws std::runtime_error with the file's name when it cannot be read or is no such hand.
HandMesh loadHandMesh(const std::string& path);

/// Steps of loadHandMesh, in their order.
HandMesh importHandMesh(const std::string& path);
void subdivide(HandMesh& mesh);
void addForearm(HandMesh& mesh);
void measurePalm(HandMesh& mesh);

}  // namespace hand
