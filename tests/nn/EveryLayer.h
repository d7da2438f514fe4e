#pragma once

#include "VerifierNetworks.h"

namespace testing_support {

inline const KZ::Size& everyLayerSize() {
    static const KZ::Size size(12, 10);
    return size;
}

/// A small network with each of the 21 layer types in it, not yet run. Its outputs are
/// "slice_point", "boxes" and "contrast".
inline NnDetector everyLayerNetwork() {
    std::mt19937 random(20260102);
    const auto blob = [&](int n, int c, int h, int w) { return randomBlob(random, n, c, h, w); };
    NnDetector network;
    network.setName("every_layer");
    std::map<std::string, KZ::SharedPtr<BaseLayer>> layers;
    const auto add = [&](BaseLayer* layer, const std::vector<std::string>& bottoms) {
        const KZ::SharedPtr<BaseLayer> shared(layer);
        for (const std::string& bottom : bottoms) layer->addBottomLayer(layers.at(bottom));
        layers[layer->name()] = shared;
        network.addLayer(shared);
    };

    add(new DataLayer("data"), {});
    add(new ConvolutionLayer(blob(4, 1, 3, 3), blob(4, 1, 1, 1), "conv-1>a", 1, 1), {"data"});
    add(new PReluLayer("prelu", blob(4, 1, 1, 1)), {"conv-1>a"});
    add(new PoolingLayer(3, 2, "pool"), {"prelu"});
    add(new ReluLayer("relu"), {"pool"});
    LinearTransformLayer* linear = new LinearTransformLayer("linear");
    linear->setTransform({1.5f, -0.123456789f, 2, 1e-7f}, {0, 0.25f, -1, 3e-4f});
    add(linear, {"relu"});
    add(new SliceLayer("slice", 1, 2, 1), {"linear"});
    SliceLayer* sliced = new SliceLayer("slice_point", 2);
    sliced->addSlicePoint(0, -4);
    add(sliced, {"slice"});
    add(new SigmoidLayer("sigmoid"), {"slice"});
    add(new EltwiseLayer("eltwise", EltwiseLayer::Operation::SUM, {2, 1e-9f}),
        {"sigmoid", "slice"});
    add(new SubtractLayer("subtract", blob(1, 2, 5, 6)), {"eltwise"});
    add(new TangensLayer("tangens"), {"subtract"});
    add(new ConcatLayer("concat", true), {"tangens", "relu"});
    std::vector<KZ::Blob> filters, biases;
    for (int i = 0; i < 4; ++i) {
        filters.push_back(blob(2, 6, 5, 3));
        biases.push_back(blob(2, 1, 1, 1));
    }
    add(new LocallyConnectedLayer(filters, biases, "local", 1), {"concat"});
    add(new ReshapeLayer("reshape", KZ::Size(2, 2)), {"local"});
    add(new DeConvolutionLayer(blob(2, 2, 2, 2), blob(2, 1, 1, 1), "deconv", 2), {"reshape"});
    add(new SoftmaxLayer("softmax", 0.3f), {"deconv"});
    add(new PredictBoxLayer("boxes", 12, 2, 0.1f, true), {"softmax"});
    HeatMapPosition* heat = new HeatMapPosition("heat");
    heat->setPatchSize(everyLayerSize());
    heat->addHeatmap(KZ::Size(4, 4), KZ::Rect(0, 0, 8, 8));
    heat->addHeatmap(KZ::Size(8, 2),
                     KZ::RelativeLocation(0.7f, KZ::PointF(0.1f, -0.2f), 30, 0.5f, 1.1f));
    add(heat, {"softmax"});
    add(new FlattenLayer("flatten"), {"heat"});
    add(new InnerProductLayer(blob(1, 1, 3, 6), blob(1, 1, 1, 3), "dense"), {"flatten"});
    add(new ContrastiveLayer("contrast"), {"dense", "flatten"});
    network.setSize(everyLayerSize());
    return network;
}

}  // namespace testing_support
