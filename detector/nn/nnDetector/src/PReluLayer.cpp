#include "PReluLayer.h"

#include "KZ_Assert.h"

namespace KZ {

void PReluLrForwardFoOneCh(float* x, int n, float slope) {
    for (int i = 0; i < n; ++i) {
        const float sloped = x[i] * slope;
        x[i] = x[i] > 0 ? x[i] : sloped;
    }
}

}  // namespace KZ

void PReluLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    top_ = bottomBlob(0);
    KZ_ASSERT_EQ(top_.num(), 1);
    KZ_ASSERT_EQ(top_.channels(), slope_.num());
    KZ_ASSERT_GE(slope_.size(), slope_.num());
    for (int c = 0; c < top_.channels(); ++c) {
        KZ::PReluLrForwardFoOneCh(top_.data(0, c, 0, 0), top_.area(), slope_.data()[c]);
    }
}

KZ::SharedPtr<BaseLayer> PReluLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    static_cast<PReluLayer&>(*copy).slope_ = slope_;
    return copy;
}

void PReluLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    slope_.saveToCpp(stream, functionName + "_slope");
    stream << "PReluLayer& " << functionName << "()\n{\n    static PReluLayer pReluLayer(\""
           << name() << "\", " << functionName << "_slope());\n    return pReluLayer;\n}\n\n";
}
