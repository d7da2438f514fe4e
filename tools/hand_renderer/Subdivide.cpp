#include <algorithm>
#include <map>
#include <stdexcept>
#include <utility>

#include "HandMesh.h"

namespace hand {

namespace {

// A weighted sum of vertices, positions and joint weights alike.
class Blend {
public:
    Blend(const HandMesh& mesh) : mesh_(mesh) {}

    void add(int vertex, float share) {
        position_ += mesh_.positions[vertex] * share;
        const Influence& influence = mesh_.influences[vertex];
        for (int i = 0; i < 4; ++i) weights_[influence.joint[i]] += influence.weight[i] * share;
    }

    const Vector3& position() const { return position_; }

    // The four strongest joints, their weights summing to 1 again.
    Influence influence() const {
        std::array<int, JOINT_COUNT> order;
        for (int i = 0; i < JOINT_COUNT; ++i) order[i] = i;
        std::stable_sort(order.begin(), order.end(),
                         [&](int a, int b) { return weights_[a] > weights_[b]; });
        Influence result;
        float sum = 0;
        for (int i = 0; i < 4; ++i) sum += weights_[order[i]];
        for (int i = 0; i < 4; ++i) {
            result.joint[i] = order[i];
            result.weight[i] = weights_[order[i]] / sum;
        }
        return result;
    }

private:
    const HandMesh& mesh_;
    Vector3 position_;
    std::array<float, JOINT_COUNT> weights_{};
};

using Edge = std::pair<int, int>;

Edge edgeOf(int a, int b) {
    return {std::min(a, b), std::max(a, b)};
}

struct EdgeSides {
    int opposite[2];
    int count = 0;
    int middle = -1;
};

std::map<Edge, EdgeSides> collectEdges(const std::vector<Triangle>& triangles) {
    std::map<Edge, EdgeSides> edges;
    const auto note = [&](int a, int b, int opposite) {
        EdgeSides& sides = edges[edgeOf(a, b)];
        if (sides.count < 2) sides.opposite[sides.count++] = opposite;
    };
    for (const Triangle& t : triangles) {
        note(t.a, t.b, t.c);
        note(t.b, t.c, t.a);
        note(t.c, t.a, t.b);
    }
    return edges;
}

Blend middleOf(const HandMesh& mesh, const Edge& edge, const EdgeSides& sides) {
    if (sides.count != 2) throw std::runtime_error("the surface of the hand is not closed");
    Blend blend(mesh);
    blend.add(edge.first, .375f);
    blend.add(edge.second, .375f);
    for (int opposite : sides.opposite) blend.add(opposite, .125f);
    return blend;
}

Blend movedVertex(const HandMesh& mesh, int vertex, const std::vector<int>& neighbours) {
    const float n = float(neighbours.size());
    const float share = neighbours.size() == 3 ? 3.f / 16 : 3 / (8 * n);
    Blend blend(mesh);
    blend.add(vertex, 1 - n * share);
    for (int neighbour : neighbours) blend.add(neighbour, share);
    return blend;
}

}  // namespace

// One round of Loop's scheme on a closed surface.
void subdivide(HandMesh& mesh) {
    std::map<Edge, EdgeSides> edges = collectEdges(mesh.triangles);
    std::vector<std::vector<int>> neighbours(mesh.positions.size());
    std::vector<Blend> blends;
    for (const auto& entry : edges) {
        neighbours[entry.first.first].push_back(entry.first.second);
        neighbours[entry.first.second].push_back(entry.first.first);
    }
    for (int i = 0; i < int(mesh.positions.size()); ++i) {
        blends.push_back(movedVertex(mesh, i, neighbours[i]));
    }
    for (auto& entry : edges) {
        entry.second.middle = int(blends.size());
        blends.push_back(middleOf(mesh, entry.first, entry.second));
    }

    std::vector<Vector3> positions;
    std::vector<Influence> influences;
    for (const Blend& blend : blends) {
        positions.push_back(blend.position());
        influences.push_back(blend.influence());
    }
    std::vector<Triangle> triangles;
    for (const Triangle& t : mesh.triangles) {
        const int ab = edges[edgeOf(t.a, t.b)].middle;
        const int bc = edges[edgeOf(t.b, t.c)].middle;
        const int ca = edges[edgeOf(t.c, t.a)].middle;
        triangles.insert(triangles.end(),
                         {{t.a, ab, ca}, {ab, t.b, bc}, {ca, bc, t.c}, {ab, bc, ca}});
    }
    mesh.positions = std::move(positions);
    mesh.influences = std::move(influences);
    mesh.triangles = std::move(triangles);
    mesh.handVertices = mesh.skinVertices = int(mesh.positions.size());
}

}  // namespace hand
