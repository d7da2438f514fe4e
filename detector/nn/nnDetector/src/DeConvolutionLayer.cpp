#include "DeConvolutionLayer.h"

#include <algorithm>
#include <cstdint>

#include "KZ_Assert.h"
#include "KZ_Limits.h"

DeConvolutionLayer::DeConvolutionLayer(const KZ::Blob& filter, const KZ::Blob& bias,
                                       const std::string& name, int stride)
    : BaseLayer(name), filter_(filter), bias_(bias), stride_(stride) {
    checkParameters();
}

void DeConvolutionLayer::checkParameters() const {
    KZ_ASSERT_EQ(filter_.num(), bias_.size());
    KZ_ASSERT(stride_ >= 1, "Stride is not correct, stride = " << stride_);
}

void DeConvolutionLayer::serialize(KZ::ArchiveI& archive) {
    archive& filter_& bias_& stride_;
    checkParameters();
}

namespace {

int spread(int filterSide, int stride, int side) {
    const int64_t result = filterSide + static_cast<int64_t>(stride) * (side - 1);
    KZ_ASSERT_LT(result, KZ::maxValue<int>());
    return static_cast<int>(result);
}

}  // namespace

void DeConvolutionLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    const KZ::Blob& bottom = bottomBlob(0);
    KZ_ASSERT_GE(bottom.num(), 1);
    KZ_ASSERT_EQ(bottom.channels(), filter_.channels());
    KZ_ASSERT_GE(filter_.size(), 1);
    KZ_ASSERT_GE(bottom.size(), 1);
    top_.init(bottom.num(), filter_.num(), spread(filter_.height(), stride_, bottom.height()),
              spread(filter_.width(), stride_, bottom.width()));
    for (int n = 0; n < bottom.num(); ++n) {
        for (int o = 0; o < filter_.num(); ++o) {
            float* plane = top_.data(n, o, 0, 0);
            std::fill(plane, plane + top_.area(), bias_.data()[o]);
            for (int c = 0; c < bottom.channels(); ++c) addChannel(bottom, n, o, c);
        }
    }
}

void DeConvolutionLayer::addChannel(const KZ::Blob& bottom, int n, int o, int c) {
    for (int y = 0; y < bottom.height(); ++y) {
        for (int x = 0; x < bottom.width(); ++x) {
            const float value = *bottom.data(n, c, y, x);
            for (int fy = 0; fy < filter_.height(); ++fy) {
                const float* weights = filter_.data(o, c, fy, 0);
                float* target = top_.data(n, o, y * stride_ + fy, x * stride_);
                for (int fx = 0; fx < filter_.width(); ++fx) target[fx] += value * weights[fx];
            }
        }
    }
}

KZ::SharedPtr<BaseLayer> DeConvolutionLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    DeConvolutionLayer& layer = static_cast<DeConvolutionLayer&>(*copy);
    layer.filter_ = filter_;
    layer.bias_ = bias_;
    layer.stride_ = stride_;
    return copy;
}

bool DeConvolutionLayer::compare(const BaseLayer& other) const {
    const DeConvolutionLayer& layer = static_cast<const DeConvolutionLayer&>(other);
    return filter_ == layer.filter_ && bias_ == layer.bias_ && stride_ == layer.stride_;
}

void DeConvolutionLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    filter_.saveToCpp(stream, functionName + "_filter");
    bias_.saveToCpp(stream, functionName + "_bias");
    stream << "DeConvolutionLayer& " << functionName
           << "()\n{\n    static DeConvolutionLayer deConvolutionLayer(" << functionName
           << "_filter(), " << functionName << "_bias(), \"" << name() << "\", " << stride_
           << ");\n    return deConvolutionLayer;\n}\n\n";
}
