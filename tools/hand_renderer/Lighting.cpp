#include "Lighting.h"

#include <limits>

#include "Rasterizer.h"

namespace hand {

namespace {

constexpr int mapSize = 144;
constexpr int ambientDirections = 40;
constexpr int keyDirections = 14;
constexpr float golden = 2.39996323f;  // the golden angle: spreads points evenly

struct Sphere {
    Vector3 centre;
    float radius;
};

// Around the hand proper. The forearm further down neither needs nor casts fine shadows.
Sphere boundOf(const HandMesh& mesh, const PosedHand& posed) {
    Vector3 low = posed.positions[0], high = low;
    for (int i = 1; i < mesh.handVertices; ++i) {
        const Vector3& p = posed.positions[i];
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    return {(low + high) * .5f, length(high - low) * .55f};
}

Vector3 anyNormalOf(const Vector3& direction) {
    const Vector3 helper = std::abs(direction.y) < .9f ? Vector3{0, 1, 0} : Vector3{1, 0, 0};
    return normalized(cross(helper, direction));
}

// The nearest surface seen from far away in one direction.
class DepthMap {
public:
    DepthMap(const Sphere& bound, const Vector3& direction)
        : bound_(bound),
          z_(direction),
          x_(anyNormalOf(direction)),
          y_(cross(z_, x_)),
          depth_(mapSize * mapSize, -std::numeric_limits<float>::max()) {}

    Vector3 project(const Vector3& p) const {
        const Vector3 d = p - bound_.centre;
        const float scale = mapSize / (2 * bound_.radius);
        return {mapSize * .5f + dot(d, x_) * scale, mapSize * .5f + dot(d, y_) * scale, dot(d, z_)};
    }

    void draw(const Vector3& a, const Vector3& b, const Vector3& c) {
        forEachCell(a, b, c, mapSize, mapSize, [&](int x, int y, float wa, float wb, float wc) {
            float& depth = depth_[y * mapSize + x];
            depth = std::max(depth, wa * a.z + wb * b.z + wc * c.z);
        });
    }

    // A point outside the map has nothing before it.
    bool sees(const Vector3& projected) const {
        const int x = int(std::floor(projected.x)), y = int(std::floor(projected.y));
        if (x < 0 || y < 0 || x >= mapSize || y >= mapSize) return true;
        // Less than the curvature of the coarse surface would shadow the surface itself.
        constexpr float slack = .0025f;
        return projected.z + slack * bound_.radius / .1f >= depth_[y * mapSize + x];
    }

private:
    Sphere bound_;
    Vector3 z_, x_, y_;
    std::vector<float> depth_;
};

class Visibility {
public:
    Visibility(const HandMesh& mesh, const PosedHand& posed)
        : mesh_(mesh), posed_(posed), bound_(boundOf(mesh, posed)) {}

    // Calls `visit(i, cosine)` for each vertex that faces `direction` with nothing in between.
    template <typename Visit>
    void forEachSeen(const Vector3& direction, Visit&& visit) {
        DepthMap map(bound_, direction);
        projected_.clear();
        for (const Vector3& p : posed_.positions) projected_.push_back(map.project(p));
        for (const Triangle& t : mesh_.coarseTriangles) {
            map.draw(projected_[t.a], projected_[t.b], projected_[t.c]);
        }
        for (size_t i = 0; i < projected_.size(); ++i) {
            const float cosine = dot(posed_.normals[i], direction);
            if (cosine > -.2f && map.sees(projected_[i])) visit(i, cosine);
        }
    }

private:
    const HandMesh& mesh_;
    const PosedHand& posed_;
    Sphere bound_;
    std::vector<Vector3> projected_;
};

Vector3 ambientFrom(const Light& light, const Vector3& direction) {
    const float up = direction.y;
    return up > 0 ? mix(light.aside, light.above, up) : mix(light.aside, light.below, -up);
}

}  // namespace

Illumination illuminate(const HandMesh& mesh, const PosedHand& posed, const Light& light) {
    Illumination result;
    result.ambient.resize(posed.positions.size());
    result.key.resize(posed.positions.size());
    Visibility visibility(mesh, posed);

    for (int i = 0; i < ambientDirections; ++i) {
        const float y = 1 - (2 * float(i) + 1) / ambientDirections;
        const float radius = std::sqrt(1 - y * y);
        const Vector3 direction{radius * std::cos(golden * float(i)), y,
                                radius * std::sin(golden * float(i))};
        // Over the whole sphere the mean of the cosines above 0 is a quarter.
        const Vector3 radiance = ambientFrom(light, direction) * (4.f / ambientDirections);
        visibility.forEachSeen(direction, [&](size_t vertex, float cosine) {
            if (cosine > 0) result.ambient[vertex] += radiance * cosine;
        });
    }

    const Vector3 toKey = normalized(light.toKey);
    const Vector3 across = anyNormalOf(toKey), along = cross(toKey, across);
    for (int i = 0; i < keyDirections; ++i) {
        const float radius =
            std::tan(light.keySpread * degrees) * std::sqrt((float(i) + .5f) / keyDirections);
        const Vector3 direction =
            normalized(toKey + across * (radius * std::cos(golden * float(i))) +
                       along * (radius * std::sin(golden * float(i))));
        visibility.forEachSeen(
            direction, [&](size_t vertex, float) { result.key[vertex] += 1.f / keyDirections; });
    }
    return result;
}

}  // namespace hand
