#include "SkinAppearance.h"

#include <cstdint>

#include "HandPose.h"

namespace hand {

namespace {

float latticeValue(int x, int y, int z) {
    uint32_t h = uint32_t(x) * 0x8da6b343u ^ uint32_t(y) * 0xd8163841u ^ uint32_t(z) * 0xcb1ab31fu;
    h ^= h >> 15;
    h *= 0x2c1b3c6du;
    h ^= h >> 12;
    h *= 0x297a2d39u;
    h ^= h >> 15;
    return float(h >> 8) / float(1 << 24) * 2 - 1;
}

// Smooth noise, -1 to 1, with one bump a unit.
float noise(const Vector3& p) {
    const float fx = std::floor(p.x), fy = std::floor(p.y), fz = std::floor(p.z);
    const int x = int(fx), y = int(fy), z = int(fz);
    const float u = smoothStep(0, 1, p.x - fx), v = smoothStep(0, 1, p.y - fy);
    const float w = smoothStep(0, 1, p.z - fz);
    const auto along = [&](int yy, int zz) {
        return latticeValue(x, yy, zz) * (1 - u) + latticeValue(x + 1, yy, zz) * u;
    };
    const float front = along(y, z) * (1 - v) + along(y + 1, z) * v;
    const float rear = along(y, z + 1) * (1 - v) + along(y + 1, z + 1) * v;
    return front * (1 - w) + rear * w;
}

float bell(float distance, float width) {
    const float t = distance / width;
    return std::exp(-t * t);
}

struct Point2 {
    float x, y;
};

float distanceToSegment(const Point2& p, const Point2& a, const Point2& b) {
    const float dx = b.x - a.x, dy = b.y - a.y;
    const float t = clamp01(((p.x - a.x) * dx + (p.y - a.y) * dy) / (dx * dx + dy * dy));
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

// The three great lines of a palm, in millimetres from the wrist, x towards the thumb.
constexpr Point2 palmLines[][5] = {
    {{-42, 55}, {-28, 61}, {-10, 68}, {2, 76}, {8, 88}},  // below the fingers
    {{33, 66}, {18, 62}, {2, 55}, {-14, 46}, {-30, 35}},  // across the middle
    {{33, 66}, {19, 57}, {9, 43}, {4, 26}, {6, 8}},       // around the ball of the thumb
};

float palmLineAt(const Vector3& p) {
    const Point2 here{p.x * 1000, p.y * 1000};
    float strength = 0;
    for (const auto& line : palmLines) {
        for (int i = 0; i < 4; ++i) {
            const float distance = distanceToSegment(here, line[i], line[i + 1]);
            strength = std::max(strength, bell(distance, .8f) + .35f * bell(distance, 2.6f));
        }
    }
    return strength;
}

class SkinPainter {
public:
    SkinPainter(const HandMesh& mesh, const SkinTone& tone) : mesh_(mesh), tone_(tone) {
        for (int i = 0; i < JOINT_COUNT; ++i) local_[i] = inverse(mesh.joints[i]);
    }

    void paint(const Vector3& p, const Vector3& normal, Vector3& albedo, float& gloss) const {
        const float palm = smoothStep(-.35f, .45f, normal.z + .12f * noise(p * 90));
        albedo = mix(tone_.back, tone_.palm, palm * smoothStep(-.07f, .03f, p.y));
        gloss = 1 - .25f * palm;
        // Blood under the skin: redder towards the finger tips and the edges of the palm.
        const float blood = .5f * noise(p * 55) + .35f * noise(p * 150) + .9f * tipAt(p) +
                            .4f * palm * smoothStep(.02f, .045f, std::abs(p.x)) -
                            .5f * palm * bell(std::hypot(p.x, p.y - .055f), .022f);
        albedo = albedo * Vector3{1 + .03f * blood, 1 - .09f * blood, 1 - .07f * blood};
        albedo = albedo * (1 + .05f * noise(p * 260) + .04f * noise(p * 620));
        const float crease = std::min(1.f, palm * (.75f * palmLineAt(p) + .8f * fingerLineAt(p)) +
                                               (1 - palm) * .55f * knuckleFoldAt(p));
        albedo = albedo * Vector3{1 - .30f * crease, 1 - .42f * crease, 1 - .44f * crease};
        const float nail = nailAt(p, normal);
        albedo = mix(albedo, tone_.palm * .92f + Vector3{.02f, .02f, .02f}, nail);
        gloss += 1.2f * nail;
    }

private:
    // Along the finger (positive to the tip), across it, and out of its back, in millimetres.
    Vector3 inJoint(int joint, const Vector3& p) const {
        const Vector3 q = apply(local_[joint], p) * 1000;
        return {-q.z, q.x, q.y};
    }

    template <typename Strength>
    float overFingers(Finger first, Strength&& strength) const {
        float sum = 0;
        for (int f = first; f < FINGER_COUNT; ++f) sum += strength(Finger(f));
        return sum;
    }

    float tipAt(const Vector3& p) const {
        return overFingers(THUMB, [&](Finger finger) {
            const Vector3 d = p - mesh_.joints[jointOf(finger, 3)].origin;
            return bell(length(d), .014f);
        });
    }

    static float within(const Vector3& q, float halfWidth) {
        return smoothStep(halfWidth + 2, halfWidth, std::abs(q.y));
    }

    float fingerLineAt(const Vector3& p) const {
        return overFingers(THUMB, [&](Finger finger) {
            float sum = 0;
            if (finger != THUMB) {
                // Where the finger leaves the palm: well beyond the knuckle.
                const Vector3 root = inJoint(jointOf(finger, 0), p);
                sum += bell(root.x - (finger == PINKY ? 15.f : 20.f), .9f) * within(root, 9);
            }
            for (int level = 1; level < 3; ++level) {
                const Vector3 q = inJoint(jointOf(finger, level), p);
                sum += bell(q.x + .5f, .8f) * within(q, 9) +
                       (level == 1 ? .7f * bell(q.x - 2.5f, .7f) * within(q, 9) : 0);
            }
            return sum;
        });
    }

    float knuckleFoldAt(const Vector3& p) const {
        return overFingers(INDEX, [&](Finger finger) {
            float sum = 0;
            for (int level = 1; level < 3; ++level) {
                const Vector3 q = inJoint(jointOf(finger, level), p);
                const float ripple = .5f + .5f * std::cos(q.x * (level == 1 ? 2.2f : 3.f));
                sum += ripple * bell(q.x, level == 1 ? 4.f : 2.5f) * within(q, 8);
            }
            return sum;
        });
    }

    float nailAt(const Vector3& p, const Vector3& normal) const {
        return overFingers(THUMB, [&](Finger finger) {
            const int joint = jointOf(finger, 2);
            const Vector3 q = inJoint(joint, p);
            const float size = finger == THUMB ? 1.3f : finger == PINKY ? .8f : 1.f;
            const float length_ =
                length(mesh_.joints[joint + 1].origin - mesh_.joints[joint].origin) * 1000;
            const float middle = length_ - 1.5f * size;
            const float oval = std::hypot((q.x - middle) / (5.8f * size), q.y / (4.4f * size));
            const float up = dot(turn(local_[joint], normal), {0, 1, 0});
            return smoothStep(1.05f, .9f, oval) * smoothStep(.2f, .45f, up);
        });
    }

    const HandMesh& mesh_;
    SkinTone tone_;
    std::array<Transform, JOINT_COUNT> local_;
};

Vector3 knit(const Vector3& p, const SleeveColours& colours) {
    const float angle = std::atan2(p.z, p.x);
    const float rib = .5f + .5f * std::sin(angle * 40);
    const float row = .5f + .5f * std::sin(p.y * 1800 + 2 * std::sin(angle * 40));
    const float band = smoothStep(.2f, .4f, std::sin(p.y * 120 + .6f));
    const Vector3 base = mix(colours.yarn, colours.stripe, band);
    return base * (.62f + .3f * rib + .14f * row + .1f * noise(p * 200));
}

}  // namespace

SkinTone skinTone(float darkness) {
    const Vector3 lightBack{.62f, .38f, .27f}, darkBack{.085f, .042f, .026f};
    const Vector3 lightPalm{.74f, .47f, .36f}, darkPalm{.40f, .235f, .165f};
    const float t = clamp01(darkness);
    // Absorption adds up, so tones mix in the logarithm.
    const auto between = [t](float a, float b) { return a * std::pow(b / a, t); };
    const auto tone = [&](const Vector3& a, const Vector3& b) {
        return Vector3{between(a.x, b.x), between(a.y, b.y), between(a.z, b.z)};
    };
    return {tone(lightBack, darkBack), tone(lightPalm, darkPalm)};
}

Surface paintHand(const HandMesh& mesh, const SkinTone& tone, const SleeveColours& sleeve) {
    const size_t count = mesh.positions.size();
    Surface surface{std::vector<Vector3>(count), std::vector<float>(count),
                    std::vector<float>(count)};
    const std::vector<Vector3> normals = vertexNormals(mesh.positions, mesh.triangles);
    const SkinPainter skin(mesh, tone);
    for (int i = 0; i < int(count); ++i) {
        if (i < mesh.skinVertices) {
            skin.paint(mesh.positions[i], normals[i], surface.albedo[i], surface.gloss[i]);
            surface.depth[i] = 1;
        } else {
            surface.albedo[i] = knit(mesh.positions[i], sleeve);
        }
    }
    return surface;
}

}  // namespace hand
