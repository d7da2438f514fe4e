#pragma once

#include <cstring>
#include <random>
#include <vector>

#include "NnDetector.h"

namespace testing_support {

using Floats = std::vector<float>;

/// The largest request to operator new since the test set it to 0.
size_t& largestAllocation();

inline KZ::Blob blobOf(int num, int channels, int height, int width, const Floats& values) {
    KZ::Blob blob(num, channels, height, width);
    std::copy(values.begin(), values.end(), blob.data());
    return blob;
}

inline Floats valuesOf(const KZ::Blob& blob) {
    return blob;
}

inline unsigned int bits(float value) {
    unsigned int result;
    std::memcpy(&result, &value, sizeof(result));
    return result;
}

/// Fills anything with a begin and an end.
template <typename Cells>
void randomize(std::mt19937& random, Cells&& cells) {
    for (float& cell : cells)
        cell = static_cast<float>(static_cast<int>(random() % 20001) - 10000) * 1.9e-4f;
}

inline KZ::Image noise(const KZ::Size& size, KZ::ColorMode mode, unsigned int seed) {
    KZ::Image image(size, mode);
    std::mt19937 random(seed);
    for (int i = 0; i < size.area() * image.depth(); ++i)
        image.data()[i] = static_cast<unsigned char>(random() & 255);
    return image;
}

/// Adds the bottoms and runs the layer once.
inline const KZ::Blob& run(BaseLayer& layer, const std::vector<KZ::Blob>& bottoms) {
    for (const KZ::Blob& bottom : bottoms) {
        layer.addBottomLayer(KZ::SharedPtr<BaseLayer>(new DataLayer("source")));
        layer.bottomLayers().back()->setBlob(bottom);
    }
    layer.forward();
    return layer.getBlob();
}

/// The sum of products in the order that the contract of dotProduct tells, lane by lane.
inline float dotInOrder(const float* a, const float* b, int n, float init) {
    const int full = n / 8 * 8;
    const auto lane = [&](int k) {
        float sum = 0;
        for (int i = k; i < full; i += 8) sum += a[i] * b[i];
        return sum;
    };
    const auto pair = [&](int k) { return lane(k) + lane(k + 4); };
    float sum = init;
    if (full > 0) sum = ((pair(0) + pair(2)) + (pair(1) + pair(3))) + init;
    for (int i = full; i < n; ++i) sum += a[i] * b[i];
    return sum;
}

}  // namespace testing_support
