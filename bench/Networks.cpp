// One run of each verifier network, weights and picture random, beside the same network in
// OpenCV's dnn module. OpenCV chooses its vector instructions at run time; ours is the baseline of
// the build.

#include <benchmark/benchmark.h>

#include <cmath>
#include <opencv2/dnn.hpp>

#include "Frames.h"
#include "VerifierNetworks.h"

namespace {

using benchmark::State;
using testing_support::ConvolutionRow;
using testing_support::VerifierBlobs;
using testing_support::VerifierTable;

cv::Mat matrixOf(const KZ::Blob& blob, const std::vector<int>& shape) {
    return cv::Mat(shape, CV_32F, const_cast<float*>(blob.data())).clone();
}

cv::dnn::Net peerNetwork(const VerifierTable& table, const std::vector<VerifierBlobs>& blobs) {
    cv::dnn::Net net;
    for (size_t i = 0; i < table.rows.size(); ++i) {
        const ConvolutionRow& row = table.rows[i];
        cv::dnn::LayerParams convolution;
        convolution.set("kernel_h", row.filterHeight);
        convolution.set("kernel_w", row.filterWidth);
        convolution.set("stride_h", row.stride);
        convolution.set("stride_w", row.stride);
        convolution.set("pad_h", row.pad);
        convolution.set("pad_w", row.pad);
        convolution.set("num_output", row.out);
        convolution.set("bias_term", true);
        convolution.blobs.push_back(
            matrixOf(blobs[i].filter, {row.out, row.in, row.filterHeight, row.filterWidth}));
        convolution.blobs.push_back(matrixOf(blobs[i].bias, {1, row.out}));
        net.addLayerToPrev(row.name, "Convolution", convolution);
        if (i + 1 == table.rows.size()) break;
        cv::dnn::LayerParams activation;
        activation.blobs.push_back(matrixOf(blobs[i].slope, {1, row.out}));
        net.addLayerToPrev("PReLU" + std::to_string(i + 1), "PReLU", activation);
    }
    return net;
}

struct Pair {
    explicit Pair(const VerifierTable& table)
        : image(bench::noise(table.size.width, table.size.height, KZ::COLOR_MODE_MONO)) {
        const std::vector<VerifierBlobs> blobs = testing_support::randomBlobs(table, 20260101);
        ours = testing_support::verifierNetwork(table, blobs);
        peer = peerNetwork(table, blobs);
    }

    const KZ::Blob& runOurs() { return ours.detect(image); }
    cv::Mat runPeer() {
        peer.setInput(cv::dnn::blobFromImage(bench::view(image), 1.0 / 256));
        return peer.forward();
    }
    bool agree() {
        const KZ::Blob& result = runOurs();
        const cv::Mat expected = runPeer();
        if (static_cast<int>(expected.total()) != result.size()) return false;
        for (int i = 0; i < result.size(); ++i) {
            const float other = expected.ptr<float>()[i];
            if (!(std::fabs(result.data()[i] - other) <= 1e-4f * (std::fabs(other) + 1e-3f)))
                return false;
        }
        return true;
    }

    KZ::Image image;
    NnDetector ours;
    cv::dnn::Net peer;
};

void runOurs(State& state, const VerifierTable& table) {
    Pair pair(table);
    if (!pair.agree()) return state.SkipWithError("the two answers differ");
    for (auto _ : state) benchmark::DoNotOptimize(pair.runOurs().data());
}

void runPeer(State& state, const VerifierTable& table) {
    Pair pair(table);
    if (!pair.agree()) return state.SkipWithError("the two answers differ");
    for (auto _ : state) benchmark::DoNotOptimize(pair.runPeer().data);
}

#define NETWORK_ROWS(table)                                                              \
    BENCHMARK_CAPTURE(runOurs, table, testing_support::table())                          \
        ->Name(std::string("network/") + testing_support::table().name + "/ours")        \
        ->Unit(benchmark::kMicrosecond);                                                 \
    BENCHMARK_CAPTURE(runPeer, table, testing_support::table())                          \
        ->Name(std::string("network/") + testing_support::table().name + "/peer:opencv") \
        ->Unit(benchmark::kMicrosecond)

NETWORK_ROWS(firstVerifier);
NETWORK_ROWS(secondVerifier);

}  // namespace
