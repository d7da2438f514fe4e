#include "VerifierDesign.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numeric>

#include "Failure.h"

namespace training {

namespace {

VerifierDesign firstDesign() {
    return {"palm_verifier__iter_250000",
            KZ::Size(35, 33),
            {{"conv1", "PReLU1", 10, 1, 3, 3, 2, 0},
             {"conv2", "PReLU2", 10, 10, 3, 3, 1, 0},
             {"conv3", "PReLU3", 10, 10, 3, 3, 1, 0},
             {"conv4", "PReLU4", 10, 10, 3, 3, 1, 0},
             {"conv5", "PReLU5", 10, 10, 3, 3, 1, 0},
             {"conv6", "PReLU6", 10, 10, 3, 3, 1, 0},
             {"conv7", "PReLU7", 10, 10, 3, 3, 1, 0},
             {"conv8", "PReLU8", 10, 10, 3, 3, 1, 0},
             {"conv9", "PReLU9", 30, 10, 2, 3, 1, 0},
             {"final", nullptr, 2, 30, 1, 1, 1, 0}}};
}

VerifierDesign secondDesign() {
    return {"palm_verifier_2019_05_07__iter_105000",
            KZ::Size(50, 60),
            {{"conv1", "PReLU1", 10, 1, 3, 3, 2, 0},
             {"conv2", "PReLU2", 10, 10, 3, 3, 1, 0},
             {"conv3", "PReLU3", 10, 10, 3, 3, 1, 0},
             {"conv4", "PReLU4", 10, 10, 3, 3, 1, 0},
             {"conv5", "PReLU5", 10, 10, 3, 3, 2, 0},
             {"conv6", "PReLU6", 10, 10, 3, 3, 1, 0},
             {"conv7", "PReLU7", 10, 10, 3, 3, 1, 0},
             {"conv8", "PReLU8", 10, 10, 3, 3, 1, 0},
             {"conv81", "PReLU9", 10, 10, 3, 3, 1, 1},
             {"conv82", "PReLU10", 10, 10, 3, 3, 1, 1},
             {"conv83", "PReLU11", 10, 10, 3, 3, 1, 1},
             {"conv84", "PReLU12", 10, 10, 3, 3, 1, 1},
             {"conv9", "PReLU13", 30, 10, 5, 2, 1, 0},
             {"final", nullptr, 2, 30, 1, 1, 1, 0}}};
}

KZ::Blob blobOf(int num, int channels, int height, int width, const float*& next) {
    KZ::Blob blob(num, channels, height, width);
    std::copy(next, next + blob.size(), blob.data());
    next += blob.size();
    return blob;
}

template <typename Layer, typename... Arguments>
void addLayer(NnDetector& network, const Arguments&... arguments) {
    network.addLayer(KZ::SharedPtr<BaseLayer>(new Layer(arguments...)));
}

}  // namespace

int VerifierDesign::values() const {
    return std::accumulate(
        convolutions.begin(), convolutions.end(), 0,
        [](int sum, const ConvolutionShape& shape) { return sum + shape.values(); });
}

const VerifierDesign& verifierDesign(int number) {
    static const VerifierDesign DESIGNS[VERIFIERS] = {firstDesign(), secondDesign()};
    return DESIGNS[number];
}

NnDetector buildVerifier(const VerifierDesign& design, const std::vector<float>& values) {
    if (static_cast<int>(values.size()) != design.values()) {
        throw Failure(design.name + ": " + std::to_string(design.values()) + " values needed, " +
                      std::to_string(values.size()) + " given");
    }
    NnDetector network;
    network.setName(design.name);
    addLayer<DataLayer>(network, "data");
    const float* next = values.data();
    for (const ConvolutionShape& s : design.convolutions) {
        const KZ::Blob filter = blobOf(s.filters, s.channels, s.height, s.width, next);
        const KZ::Blob bias = blobOf(s.filters, 1, 1, 1, next);
        addLayer<ConvolutionLayer>(network, filter, bias, s.name, s.stride, s.pad);
        if (s.activation) {
            addLayer<PReluLayer>(network, s.activation, blobOf(s.filters, 1, 1, 1, next));
        }
    }
    network.joinLayers();
    network.setSize(design.input);
    return network;
}

void foldInputScale(const VerifierDesign& design, float scale, float centre,
                    std::vector<float>& values) {
    const ConvolutionShape& first = design.convolutions.front();
    const int perFilter = first.weights() / first.filters;
    for (int f = 0; f < first.filters; ++f) {
        float* weights = values.data() + f * perFilter;
        double sum = 0;
        for (int i = 0; i < perFilter; ++i) {
            weights[i] *= scale;
            sum += weights[i];
        }
        values[first.weights() + f] -= static_cast<float>(sum * centre);
    }
}

void shiftMargin(float margin, std::vector<float>& values) {
    values[values.size() - 2] -= margin / 2;
    values[values.size() - 1] += margin / 2;
}

float sixDigits(float value) {
    constexpr float SMALLEST = 1e-10f;
    if (std::fabs(value) < 2 * SMALLEST) return 0;
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", static_cast<double>(value));
    return std::strtof(text, nullptr);
}

}  // namespace training
