#include "ConcatLayer.h"

#include <algorithm>

#include "KZ_Assert.h"
#include "KZ_Limits.h"

namespace {

// One bottom may be named so often that the sum of its sides is no int any more.
int sum(int a, int b) {
    KZ_ASSERT_GE(KZ::maxValue<int>() - a, b);
    return a + b;
}

}  // namespace

void ConcatLayer::forward() {
    KZ_ASSERT_GT(bottomLayers_.size(), 1);
    if (byChannels_) {
        shapeByChannels();
    } else {
        shapeByItems();
    }
    // The joined axis is outermost in both cases, so whole bottoms follow one another.
    float* target = top_.data();
    for (size_t i = 0; i < bottomLayers_.size(); ++i) {
        const KZ::Blob& bottom = bottomBlob(i);
        target = std::copy(bottom.data(), bottom.data() + bottom.size(), target);
    }
}

void ConcatLayer::shapeByChannels() {
    const KZ::Blob& bottom0 = bottomBlob(0);
    int channels = bottom0.channels();
    for (size_t i = 1; i < bottomLayers_.size(); ++i) {
        requireBottom(i);
        KZ_ASSERT_EQ(bottom0.width(), bottomLayers_[i]->getBlob().width());
        KZ_ASSERT_EQ(bottom0.height(), bottomLayers_[i]->getBlob().height());
        KZ_ASSERT_EQ(bottom0.num(), bottomLayers_[i]->getBlob().num());
        channels = sum(channels, bottomBlob(i).channels());
    }
    KZ_ASSERT_EQ(bottom0.num(), 1);
    top_.init(1, channels, bottom0.height(), bottom0.width());
}

void ConcatLayer::shapeByItems() {
    const KZ::Blob& bottom0 = bottomBlob(0);
    int num = bottom0.num();
    for (size_t i = 1; i < bottomLayers_.size(); ++i) {
        requireBottom(i);
        KZ_ASSERT_EQ(bottom0.width(), bottomLayers_[i]->getBlob().width());
        KZ_ASSERT_EQ(bottom0.height(), bottomLayers_[i]->getBlob().height());
        KZ_ASSERT_EQ(bottom0.channels(), bottomLayers_[i]->getBlob().channels());
        num = sum(num, bottomBlob(i).num());
    }
    top_.init(num, bottom0.channels(), bottom0.height(), bottom0.width());
}

KZ::SharedPtr<BaseLayer> ConcatLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    static_cast<ConcatLayer&>(*copy).byChannels_ = byChannels_;
    return copy;
}

void ConcatLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    stream << "ConcatLayer& " << functionName << "()\n{\n    static ConcatLayer concatLayer(\""
           << name() << "\", " << (byChannels_ ? "true" : "false")
           << ");\n    return concatLayer;\n}\n\n";
}
