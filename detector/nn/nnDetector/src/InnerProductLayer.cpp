#include "InnerProductLayer.h"

#include "KZ_Assert.h"
#include "KZ_DotProduct.h"
#include "ReluLayer.h"

InnerProductLayer::InnerProductLayer(const KZ::Blob& weights, const KZ::Blob& bias,
                                     const std::string& name)
    : BaseLayer(name), weights_(weights), bias_(bias) {
    KZ_ASSERT(weights_.height() == bias_.width(),
              "weights " << weights_.shape() << ", bias " << bias_.shape());
}

KZ::SharedPtr<BaseLayer> InnerProductLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    InnerProductLayer& layer = static_cast<InnerProductLayer&>(*copy);
    layer.weights_ = weights_;
    layer.bias_ = bias_;
    layer.doRelu_ = doRelu_;
    return copy;
}

bool InnerProductLayer::compare(const BaseLayer& other) const {
    const InnerProductLayer& layer = static_cast<const InnerProductLayer&>(other);
    return weights_ == layer.weights_ && bias_ == layer.bias_;
}

void InnerProductLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    const KZ::Blob& bottom = bottomBlob(0);
    KZ_ASSERT_GE(bottom.num(), 1);
    const int inputSize = bottom.volume();
    KZ_ASSERT_GT(inputSize, 0);
    KZ_ASSERT_EQ(weights_.size() % inputSize, 0);
    const int outputs = weights_.size() / inputSize;
    KZ_ASSERT_GE(bias_.size(), outputs);
    top_.init(bottom.num(), outputs, 1, 1);
    for (int n = 0; n < bottom.num(); ++n) {
        for (int o = 0; o < outputs; ++o) {
            *top_.data(n, o, 0, 0) = KZ::dotProduct(
                bottom.data(n, 0, 0, 0), weights_.data() + static_cast<size_t>(o) * inputSize,
                inputSize, bias_.data()[o]);
        }
    }
    if (doRelu_) ReluLayer::relu(top_);
}

void InnerProductLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    weights_.saveToCpp(stream, functionName + "_weights");
    bias_.saveToCpp(stream, functionName + "_bias");
    stream << "InnerProductLayer& " << functionName
           << "()\n{\n    static InnerProductLayer innerProductLayer(" << functionName
           << "_weights(), " << functionName << "_bias(), \"" << name()
           << "\");\n    return innerProductLayer;\n}\n\n";
}
