#include "HandRenderer.h"

#include "Rasterizer.h"

namespace hand {

namespace {

// What a sample of the picture shows: a triangle and the place in it.
struct Sample {
    int triangle = -1;
    float nearness = 0;
    float wa = 0, wb = 0, wc = 0;
};

// The part of the sample grid that the hand can touch.
struct Window {
    int left, top, width, height;
};

Window windowOf(const std::vector<Vector3>& projected, int width, int height) {
    float left = float(width), top = float(height), right = 0, bottom = 0;
    for (const Vector3& p : projected) {
        left = std::min(left, p.x);
        top = std::min(top, p.y);
        right = std::max(right, p.x);
        bottom = std::max(bottom, p.y);
    }
    const int x0 = int(std::max(0.f, left)), y0 = int(std::max(0.f, top));
    const int x1 = int(std::min(float(width), right + 1));
    const int y1 = int(std::min(float(height), bottom + 1));
    return {x0, y0, std::max(0, x1 - x0), std::max(0, y1 - y0)};
}

float clampedCosine(const Vector3& a, const Vector3& b) {
    return std::max(0.f, dot(a, b));
}

// Light that enters skin beside the lit part comes out again redder: the shadow's edge is soft and
// warm. Each channel wraps around by its own amount.
Vector3 wrappedDiffuse(float cosine, float depth) {
    const auto wrap = [cosine, depth](float amount) {
        const float a = amount * depth;
        const float t = std::max(0.f, (cosine + a) / (1 + a));
        return t * (depth > .5f ? .5f + .5f * t : 1.f) * (depth > .5f ? 1.15f : 1.f);
    };
    return {wrap(.38f), wrap(.2f), wrap(.15f)};
}

class Shader {
public:
    Shader(const HandMesh& mesh, const Surface& surface, const PosedHand& posed,
           const Illumination& illumination, const Light& light)
        : mesh_(mesh),
          surface_(surface),
          posed_(posed),
          illumination_(illumination),
          light_(light),
          toKey_(normalized(light.toKey)) {}

    Vector3 colourAt(const Sample& sample) const {
        const Triangle& t = mesh_.triangles[sample.triangle];
        const auto blend = [&](const auto& values) {
            return values[t.a] * sample.wa + values[t.b] * sample.wb + values[t.c] * sample.wc;
        };
        const Vector3 normal = normalized(blend(posed_.normals));
        const Vector3 toCamera = normalized(-blend(posed_.positions));
        const Vector3 albedo = blend(surface_.albedo);
        const float depth = blend(surface_.depth);
        const float seen = blend(illumination_.key);
        // The same spreading at the edge of cast shadows.
        const Vector3 keySeen{std::pow(seen, 1 - .35f * depth), seen, seen};
        const Vector3 diffuse = light_.key * wrappedDiffuse(dot(normal, toKey_), depth) * keySeen +
                                blend(illumination_.ambient);
        return albedo * diffuse + highlight(normal, toCamera, blend(surface_.gloss)) * seen +
               sheen(normal, toCamera, blend(illumination_.ambient), depth);
    }

private:
    // Two lobes: the oily film over the broad shine of the skin's relief.
    Vector3 highlight(const Vector3& normal, const Vector3& toCamera, float gloss) const {
        const Vector3 half = normalized(toKey_ + toCamera);
        const float cosine = clampedCosine(normal, half);
        const float fresnel = .028f + .97f * std::pow(1 - clampedCosine(half, toCamera), 5.f);
        const float lobes =
            .45f * std::pow(cosine, 40.f) * 5 + .55f * std::pow(cosine, 10.f) * 1.6f;
        return light_.key * (gloss * fresnel * lobes * clampedCosine(normal, toKey_));
    }

    Vector3 sheen(const Vector3& normal, const Vector3& toCamera, const Vector3& ambient,
                  float depth) const {
        const float grazing = std::pow(1 - clampedCosine(normal, toCamera), 4.f);
        return ambient * (.16f * grazing * depth);
    }

    const HandMesh& mesh_;
    const Surface& surface_;
    const PosedHand& posed_;
    const Illumination& illumination_;
    const Light& light_;
    Vector3 toKey_;
};

class SampleGrid {
public:
    SampleGrid(const Window& window) : window_(window) {
        samples_.resize(size_t(window.width) * window.height);
    }

    void draw(int index, const Triangle& t, const std::vector<Vector3>& projected) {
        const Vector3 shift{float(window_.left), float(window_.top), 0};
        const Vector3 a = projected[t.a] - shift, b = projected[t.b] - shift;
        const Vector3 c = projected[t.c] - shift;
        // The inverse distance is linear in the picture. A corner behind the camera has none.
        if (a.z <= 0 || b.z <= 0 || c.z <= 0) return;
        forEachCell(a, b, c, window_.width, window_.height,
                    [&](int x, int y, float wa, float wb, float wc) {
                        Sample& sample = samples_[size_t(y) * window_.width + x];
                        const float nearness = wa * a.z + wb * b.z + wc * c.z;
                        if (nearness > sample.nearness) sample = {index, nearness, wa, wb, wc};
                    });
    }

    void resolve(const Shader& shader, int perSide, HandLayer& layer) const {
        const float share = 1.f / float(perSide * perSide);
        for (int y = 0; y < window_.height; ++y) {
            for (int x = 0; x < window_.width; ++x) {
                const Sample& sample = samples_[size_t(y) * window_.width + x];
                if (sample.triangle < 0) continue;
                const size_t pixel = size_t((window_.top + y) / perSide) * layer.width +
                                     (window_.left + x) / perSide;
                layer.colour[pixel] += shader.colourAt(sample) * share;
                layer.coverage[pixel] += share;
            }
        }
    }

private:
    Window window_;
    std::vector<Sample> samples_;
};

}  // namespace

Vector3 project(const Camera& camera, const Vector3& p) {
    const float nearness = -1 / p.z;
    return {camera.width * .5f + camera.focal * p.x * nearness,
            camera.height * .5f - camera.focal * p.y * nearness, nearness};
}

HandLayer::HandLayer(int w, int h)
    : width(w), height(h), colour(size_t(w) * h), coverage(size_t(w) * h) {}

void HandLayer::add(const HandLayer& layer, float share) {
    for (size_t i = 0; i < colour.size(); ++i) {
        colour[i] += layer.colour[i] * share;
        coverage[i] += layer.coverage[i] * share;
    }
}

HandLayer render(const HandMesh& mesh, const Surface& surface, const PosedHand& posed,
                 const Illumination& illumination, const Light& light, const Camera& camera,
                 Parts parts, int samples, float shiftX, float shiftY) {
    std::vector<Vector3> projected;
    for (const Vector3& p : posed.positions) {
        const Vector3 q = project(camera, p);
        projected.push_back(
            {(q.x + shiftX) * float(samples), (q.y + shiftY) * float(samples), q.z});
    }
    SampleGrid grid(windowOf(projected, camera.width * samples, camera.height * samples));
    const int limit = parts == Parts::HAND ? mesh.handVertices : int(mesh.positions.size());
    for (size_t i = 0; i < mesh.triangles.size(); ++i) {
        const Triangle& t = mesh.triangles[i];
        if (std::max({t.a, t.b, t.c}) < limit) grid.draw(int(i), t, projected);
    }
    HandLayer layer(camera.width, camera.height);
    grid.resolve(Shader(mesh, surface, posed, illumination, light), samples, layer);
    return layer;
}

}  // namespace hand
