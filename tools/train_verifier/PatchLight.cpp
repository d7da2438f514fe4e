#include "PatchLight.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "FrameExposure.h"

namespace training {

namespace {

float inputOf(float pixel) {
    return INPUT_SCALE * (pixel / 256 - INPUT_CENTRE);
}

/// A random curve from pixel to pixel: gamma, then contrast about `mean`, then brightness.
std::vector<float> drawCurve(double mean, Random& random) {
    const double gamma = std::exp(random.uniform(-0.35, 0.35));
    // A hand before a wall of its own brightness, too.
    const double contrast =
        random.chance(0.25) ? random.uniform(0.4, 0.7) : random.uniform(0.7, 1.3);
    const double brightness = random.uniform(-25, 25);
    std::vector<float> curve(256);
    for (int p = 0; p < 256; ++p) {
        const double bent = 255 * std::pow(p / 255.0, gamma);
        curve[p] = static_cast<float>(mean + (bent - mean) * contrast + brightness);
    }
    return curve;
}

/// Weighted mean of each pixel and its neighbours along one axis, in place.
void blurLine(float* first, int count, int step, float side) {
    float before = first[0];
    for (int i = 0; i < count; ++i) {
        float& here = first[i * step];
        const float after = first[std::min(i + 1, count - 1) * step], old = here;
        here = (1 - 2 * side) * old + side * (before + after);
        before = old;
    }
}

void blur(const KZ::Size& size, float side, float* pixels) {
    for (int y = 0; y < size.height; ++y) blurLine(pixels + y * size.width, size.width, 1, side);
    for (int x = 0; x < size.width; ++x) blurLine(pixels + x, size.height, size.width, side);
}

/// An even patch over up to a third of each side.
void cover(const KZ::Size& size, Random& random, float* pixels) {
    const int width = 1 + random.below(size.width / 3), height = 1 + random.below(size.height / 3);
    const int left = random.below(size.width - width + 1);
    const int top = random.below(size.height - height + 1);
    const float grey = static_cast<float>(random.uniform(0, 255));
    for (int y = top; y < top + height; ++y) {
        std::fill_n(pixels + y * size.width + left, width, grey);
    }
}

void shade(const KZ::Size& size, const SideLight& light, float* pixels) {
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            pixels[y * size.width + x] *= static_cast<float>(
                light.at((x + 0.5) / size.width - 0.5, (y + 0.5) / size.height - 0.5));
        }
    }
}

/// Sum of four bytes of one draw: near enough to a bell, of standard deviation 1.
float bell(Random& random) {
    const uint64_t bits = random.next();
    const int sum = static_cast<int>((bits & 255) + (bits >> 8 & 255) + (bits >> 16 & 255) +
                                     (bits >> 24 & 255));
    return static_cast<float>(sum - 510) / 147.8f;
}

}  // namespace

void varyPatch(const uint8_t* patch, const KZ::Size& size, Random& random, float* input) {
    const int count = size.area();
    double mean = 0;
    for (int i = 0; i < count; ++i) mean += patch[i];
    const std::vector<float> curve = drawCurve(mean / count, random);
    for (int i = 0; i < count; ++i) input[i] = curve[patch[i]];
    if (random.chance(0.2)) shade(size, SideLight::draw(random), input);
    if (random.chance(0.1)) cover(size, random, input);
    if (random.chance(0.3)) blur(size, static_cast<float>(random.uniform(0.02, 0.25)), input);
    const float noise = random.chance(0.6) ? static_cast<float>(random.uniform(0, 4)) : 0;
    for (int i = 0; i < count; ++i) {
        const float pixel = noise > 0 ? input[i] + noise * bell(random) : input[i];
        input[i] = inputOf(std::clamp(pixel, 0.0f, 255.0f));
    }
}

void plainPatch(const uint8_t* patch, const KZ::Size& size, float* input) {
    for (int i = 0; i < size.area(); ++i) input[i] = inputOf(patch[i]);
}

}  // namespace training
