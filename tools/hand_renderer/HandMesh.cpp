#include "HandMesh.h"

#include <algorithm>
#include <limits>

namespace hand {

namespace {

constexpr int firstOfFinger[FINGER_COUNT] = {1, 5, 10, 15, 20};

// Weight of the thumb's joints.
float thumbWeight(const Influence& influence) {
    float sum = 0;
    for (int i = 0; i < 4; ++i) {
        const int joint = influence.joint[i];
        if (joint >= firstOfFinger[THUMB] && joint < firstOfFinger[INDEX]) {
            sum += influence.weight[i];
        }
    }
    return sum;
}

}  // namespace

int jointOf(Finger finger, int level) {
    // Fingers begin with the metacarpal bone inside the palm, which stays at rest.
    return firstOfFinger[finger] + level + (finger == THUMB ? 0 : 1);
}

int parentOf(int joint) {
    if (joint == WRIST) return -1;
    if (joint == FOREARM) return WRIST;
    const bool first = std::find(std::begin(firstOfFinger), std::end(firstOfFinger), joint) !=
                       std::end(firstOfFinger);
    return first ? WRIST : joint - 1;
}

// The breadth of the palm: the extent of the flesh, without the thumb, in a band along the line
// through the knuckles of the index and the pinky.
void measurePalm(HandMesh& mesh) {
    const Vector3 index = mesh.joints[jointOf(INDEX, 0)].origin;
    const Vector3 pinky = mesh.joints[jointOf(PINKY, 0)].origin;
    const Vector3 middle = (index + pinky) * .5f;
    const Vector3 across = normalized(index - pinky);
    const Vector3 along = normalized(cross({0, 0, 1}, across));
    constexpr float band = .006f;
    float low = std::numeric_limits<float>::max(), high = -low;
    for (int i = 0; i < mesh.handVertices; ++i) {
        const Vector3 p = mesh.positions[i] - middle;
        if (std::abs(dot(p, along)) > band || thumbWeight(mesh.influences[i]) > .3f) continue;
        low = std::min(low, dot(p, across));
        high = std::max(high, dot(p, across));
    }
    mesh.indexSide = middle + across * high;
    mesh.pinkySide = middle + across * low;
}

HandMesh loadHandMesh(const std::string& path) {
    HandMesh mesh = importHandMesh(path);
    mesh.coarseTriangles = mesh.triangles;
    subdivide(mesh);
    // A subdivided mesh keeps the vertices that it had: the coarse triangles still fit.
    subdivide(mesh);
    addForearm(mesh);
    measurePalm(mesh);
    return mesh;
}

}  // namespace hand
