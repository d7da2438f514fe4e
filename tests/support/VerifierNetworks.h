#pragma once

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "NnDetector.h"

// The two verifier networks as tables, with random weights: for tests and benchmarks that depend
// on the shapes alone.

namespace testing_support {

/// A convolution (3 by 3 but where told) and the shape of its output.
struct ConvolutionRow {
    const char* name;
    int out, in, filterHeight, filterWidth, stride, pad;
    int height, width;
};

struct VerifierTable {
    const char* name;
    KZ::Size size;
    std::vector<ConvolutionRow> rows;
    int numValues;  ///< weights, biases and slopes together
};

inline VerifierTable firstVerifier() {
    return {"first_verifier",
            KZ::Size(35, 33),
            {{"conv1", 10, 1, 3, 3, 2, 0, 16, 17},
             {"conv2", 10, 10, 3, 3, 1, 0, 14, 15},
             {"conv3", 10, 10, 3, 3, 1, 0, 12, 13},
             {"conv4", 10, 10, 3, 3, 1, 0, 10, 11},
             {"conv5", 10, 10, 3, 3, 1, 0, 8, 9},
             {"conv6", 10, 10, 3, 3, 1, 0, 6, 7},
             {"conv7", 10, 10, 3, 3, 1, 0, 4, 5},
             {"conv8", 10, 10, 3, 3, 1, 0, 2, 3},
             {"conv9", 30, 10, 2, 3, 1, 0, 1, 1},
             {"final", 2, 30, 1, 1, 1, 0, 1, 1}},
            8472};
}

inline VerifierTable secondVerifier() {
    return {"second_verifier",
            KZ::Size(50, 60),
            {{"conv1", 10, 1, 3, 3, 2, 0, 29, 24},
             {"conv2", 10, 10, 3, 3, 1, 0, 27, 22},
             {"conv3", 10, 10, 3, 3, 1, 0, 25, 20},
             {"conv4", 10, 10, 3, 3, 1, 0, 23, 18},
             {"conv5", 10, 10, 3, 3, 2, 0, 11, 8},
             {"conv6", 10, 10, 3, 3, 1, 0, 9, 6},
             {"conv7", 10, 10, 3, 3, 1, 0, 7, 4},
             {"conv8", 10, 10, 3, 3, 1, 0, 5, 2},
             {"conv81", 10, 10, 3, 3, 1, 1, 5, 2},
             {"conv82", 10, 10, 3, 3, 1, 1, 5, 2},
             {"conv83", 10, 10, 3, 3, 1, 1, 5, 2},
             {"conv84", 10, 10, 3, 3, 1, 1, 5, 2},
             {"conv9", 30, 10, 5, 2, 1, 0, 1, 1},
             {"final", 2, 30, 1, 1, 1, 0, 1, 1}},
            13352};
}

/// Values of a spread that keeps the outputs of a long chain in range.
inline KZ::Blob randomBlob(std::mt19937& random, int num, int channels, int height, int width) {
    KZ::Blob blob(num, channels, height, width);
    const float scale = 0.0017f / std::sqrt(static_cast<float>(channels * height * width));
    for (int i = 0; i < blob.size(); ++i) {
        // Not by a distribution of the library: those differ between implementations.
        const int step = static_cast<int>(random() % 2001) - 1000;
        blob.data()[i] = static_cast<float>(step) * scale;
    }
    return blob;
}

/// The tables of a verifier in layer order, each layer in the order filter, bias, slope.
struct VerifierBlobs {
    KZ::Blob filter, bias, slope;  ///< no slope behind the last convolution
};

inline std::vector<VerifierBlobs> randomBlobs(const VerifierTable& table, unsigned int seed) {
    std::mt19937 random(seed);
    std::vector<VerifierBlobs> blobs;
    for (const ConvolutionRow& row : table.rows) {
        VerifierBlobs layer;
        layer.filter = randomBlob(random, row.out, row.in, row.filterHeight, row.filterWidth);
        layer.bias = randomBlob(random, row.out, 1, 1, 1);
        if (&row != &table.rows.back()) layer.slope = randomBlob(random, row.out, 1, 1, 1);
        blobs.push_back(layer);
    }
    return blobs;
}

inline NnDetector verifierNetwork(const VerifierTable& table,
                                  const std::vector<VerifierBlobs>& blobs) {
    NnDetector network;
    network.setName(table.name);
    const auto add = [&](BaseLayer* layer) { network.addLayer(KZ::SharedPtr<BaseLayer>(layer)); };
    add(new DataLayer("data"));
    for (size_t i = 0; i < table.rows.size(); ++i) {
        const ConvolutionRow& row = table.rows[i];
        add(new ConvolutionLayer(blobs[i].filter, blobs[i].bias, row.name, row.stride, row.pad));
        if (i + 1 < table.rows.size())
            add(new PReluLayer("PReLU" + std::to_string(i + 1), blobs[i].slope));
    }
    network.joinLayers();
    network.setSize(table.size);
    return network;
}

}  // namespace testing_support
