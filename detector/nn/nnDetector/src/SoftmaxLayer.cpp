#include "SoftmaxLayer.h"

#include <cmath>

#include "KZ_Assert.h"
#include "KZ_Limits.h"

namespace {

const float SEARCH_START = -999999.0f;

}  // namespace

KZ::SharedPtr<BaseLayer> SoftmaxLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    static_cast<SoftmaxLayer&>(*copy).threshold_ = threshold_;
    return copy;
}

bool SoftmaxLayer::compare(const BaseLayer& other) const {
    return KZ::equal(threshold_, static_cast<const SoftmaxLayer&>(other).threshold_);
}

void SoftmaxLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    const KZ::Blob& bottom = bottomBlob(0);
    if (bottom.channels() == 1) {
        decide(bottom);
    } else {
        normalise(bottom);
    }
}

void SoftmaxLayer::decide(const KZ::Blob& bottom) {
    KZ_ASSERT_EQ(bottom.size(), 2);
    const float first = std::exp(bottom.data()[0]), second = std::exp(bottom.data()[1]);
    top_.init(1, 1, 1, 1);
    top_.data()[0] = second / (first + second) >= threshold_ ? 1.0f : 0.0f;
}

void SoftmaxLayer::normalise(const KZ::Blob& bottom) {
    top_ = bottom;
    logDenominator_.init(1, 1, bottom.height(), bottom.width());
    const int area = bottom.area(), channels = bottom.channels();
    for (int i = 0; i < area; ++i) {
        const float* column = top_.data() + i;
        float largest = SEARCH_START;
        for (int c = 0; c < channels; ++c) {
            if (column[c * area] > largest) largest = column[c * area];
        }
        float sum = 0;
        for (int c = 0; c < channels; ++c) sum += std::exp(column[c * area] - largest);
        logDenominator_.data()[i] = largest + std::log(sum);
    }
    for (int c = 0; c < channels; ++c) {
        float* plane = top_.data(0, c, 0, 0);
        for (int i = 0; i < area; ++i) plane[i] = std::exp(plane[i] - logDenominator_.data()[i]);
    }
}

void SoftmaxLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    stream << "SoftmaxLayer& " << functionName << "()\n{\n    static SoftmaxLayer softmaxLayer(\""
           << name() << "\", " << KZ::floatText(threshold_)
           << ");\n    return softmaxLayer;\n}\n\n";
}
