#include <algorithm>
#include <map>
#include <stdexcept>

#include "HandMesh.h"

namespace hand {

namespace {

// The mesh ends in a cap behind the wrist, which comes off here.
constexpr float cut = .002f;
constexpr float cuff = -.075f;  // where the sleeve begins
constexpr float elbow = -.42f;  // far enough down to leave every picture
constexpr float ringStep = .004f;

// Half axes of the forearm's oval, broad like the palm, at the distance y (negative) of the wrist.
Vector3 halfAxes(float y) {
    const float t = smoothStep(0, -.22f, y);
    return {.0285f + .0135f * t, 0, .0215f + .0175f * t};
}

bool keeps(const HandMesh& mesh, const Triangle& t) {
    return std::min({mesh.positions[t.a].y, mesh.positions[t.b].y, mesh.positions[t.c].y}) >= cut;
}

void removeCap(HandMesh& mesh, std::vector<Triangle>& triangles) {
    triangles.erase(std::remove_if(triangles.begin(), triangles.end(),
                                   [&](const Triangle& t) { return !keeps(mesh, t); }),
                    triangles.end());
}

// The open rim in order. On it every vertex is left by one edge that has no triangle on its other
// side.
std::vector<int> rimOf(const std::vector<Triangle>& triangles) {
    std::map<std::pair<int, int>, bool> directed;
    for (const Triangle& t : triangles) {
        directed[{t.a, t.b}] = directed[{t.b, t.c}] = directed[{t.c, t.a}] = true;
    }
    std::map<int, int> next;
    for (const auto& edge : directed) {
        if (!directed.count({edge.first.second, edge.first.first})) {
            next[edge.first.first] = edge.first.second;
        }
    }
    std::vector<int> rim;
    if (next.empty()) throw std::runtime_error("no wrist found to continue");
    int vertex = next.begin()->first;
    do {
        rim.push_back(vertex);
        const auto edge = next.find(vertex);
        if (edge == next.end() || rim.size() > next.size()) {
            throw std::runtime_error("the wrist's rim is not a single loop");
        }
        vertex = edge->second;
    } while (vertex != rim.front());
    return rim;
}

Influence forearmShare(float share) {
    Influence influence;
    influence.joint = {WRIST, FOREARM, WRIST, WRIST};
    influence.weight = {1 - share, share, 0, 0};
    return influence;
}

float forearmShareAt(float y) {
    return smoothStep(.012f, -.03f, y);
}

// The skin behind the wrist bends with the forearm.
void releaseWrist(HandMesh& mesh) {
    for (int i = 0; i < mesh.handVertices; ++i) {
        Influence& influence = mesh.influences[i];
        const float share = forearmShareAt(mesh.positions[i].y);
        if (share <= 0) continue;
        // Whatever moved it before, that near to the forearm it belongs to the wrist.
        influence = forearmShare(share);
    }
}

class Tube {
public:
    Tube(HandMesh& mesh) : mesh_(mesh) {}

    int addVertex(const Vector3& p) {
        mesh_.positions.push_back(p);
        mesh_.influences.push_back(forearmShare(forearmShareAt(p.y)));
        return int(mesh_.positions.size()) - 1;
    }

    // `upper` and `lower` go round in the same sense: that of the rim, seen from the forearm
    // counter-clockwise.
    void connect(const std::vector<int>& upper, const std::vector<int>& lower,
                 std::vector<Triangle>& triangles) const {
        for (size_t i = 0; i < upper.size(); ++i) {
            const size_t j = (i + 1) % upper.size();
            triangles.push_back({upper[j], upper[i], lower[i]});
            triangles.push_back({upper[j], lower[i], lower[j]});
        }
    }

private:
    HandMesh& mesh_;
};

// From the rim's own shape to the oval within two centimetres.
void addBareForearm(HandMesh& mesh, const std::vector<int>& rim) {
    Tube tube(mesh);
    Vector3 middle;
    for (int vertex : rim) middle += mesh.positions[vertex] * (1.f / float(rim.size()));
    std::vector<int> upper = rim;
    for (float y = cut - ringStep; y > cuff - .02f; y -= ringStep) {
        const Vector3 half = halfAxes(y);
        const float t = smoothStep(cut, cut - .03f, y);
        std::vector<int> lower;
        for (int vertex : rim) {
            const Vector3 p = mesh.positions[vertex];
            const float angle = std::atan2((p.z - middle.z) / half.z, (p.x - middle.x) / half.x);
            const Vector3 oval{middle.x + half.x * std::cos(angle), y,
                               middle.z + half.z * std::sin(angle)};
            lower.push_back(tube.addVertex(mix({p.x, y, p.z}, oval, t)));
        }
        tube.connect(upper, lower, mesh.triangles);
        tube.connect(upper, lower, mesh.coarseTriangles);
        upper = lower;
    }
    mesh.skinVertices = int(mesh.positions.size());
}

// A knitted sleeve: loose, thick at the cuff, with the folds of a pushed-up arm.
void addSleeve(HandMesh& mesh) {
    Tube tube(mesh);
    constexpr int sides = 72;
    std::vector<int> upper;
    for (float y = cuff - .003f; y > elbow; y -= ringStep) {
        const float depth = cuff - y;
        const float hem = smoothStep(0, .006f, depth);
        const float cuffEnd = smoothStep(.045f, .06f, depth);
        const Vector3 half = halfAxes(y);
        std::vector<int> lower;
        for (int i = 0; i < sides; ++i) {
            // Against the sense of the angle, as the rim goes round.
            const float angle = -2 * 3.14159265f * float(i) / sides;
            const float fold = std::sin(y * 150 + 2 * std::sin(angle + 1)) *
                               (.5f + .5f * std::sin(2 * angle + y * 40));
            const float slack = .002f + .0035f * hem + cuffEnd * (.0045f + .0028f * fold);
            lower.push_back(tube.addVertex({(half.x + slack) * std::cos(angle), y,
                                            (half.z + slack) * std::sin(angle) - .002f}));
        }
        if (!upper.empty()) {
            tube.connect(upper, lower, mesh.triangles);
            tube.connect(upper, lower, mesh.coarseTriangles);
        }
        upper = lower;
    }
}

}  // namespace

void addForearm(HandMesh& mesh) {
    removeCap(mesh, mesh.triangles);
    removeCap(mesh, mesh.coarseTriangles);
    const std::vector<int> rim = rimOf(mesh.triangles);
    releaseWrist(mesh);
    addBareForearm(mesh, rim);
    addSleeve(mesh);
}

}  // namespace hand
