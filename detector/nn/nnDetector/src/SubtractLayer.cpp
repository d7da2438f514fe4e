#include "SubtractLayer.h"

#include "KZ_Assert.h"

void SubtractLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    const KZ::Blob& bottom = bottomBlob(0);
    top_.init(bottom.num(), bottom.channels(), bottom.height(), bottom.width());
    KZ_ASSERT_EQ(bottom.num(), 1);
    KZ_ASSERT_EQ(bottom.channels(), subtrahend_.channels());
    KZ_ASSERT_EQ(bottom.height(), subtrahend_.height());
    KZ_ASSERT_EQ(bottom.width(), subtrahend_.width());
    KZ_ASSERT_GE(subtrahend_.num(), 1);
    for (int i = 0; i < bottom.size(); ++i) {
        top_.data()[i] = bottom.data()[i] - subtrahend_.data()[i];
    }
}

KZ::SharedPtr<BaseLayer> SubtractLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    static_cast<SubtractLayer&>(*copy).otherName_ = otherName_;
    static_cast<SubtractLayer&>(*copy).subtrahend_ = subtrahend_;
    return copy;
}

bool SubtractLayer::compare(const BaseLayer& other) const {
    const SubtractLayer& layer = static_cast<const SubtractLayer&>(other);
    return otherName_ == layer.otherName_ && subtrahend_ == layer.subtrahend_;
}

void SubtractLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    subtrahend_.saveToCpp(stream, functionName + "_subtrahend");
    stream << "SubtractLayer& " << functionName
           << "()\n{\n    static SubtractLayer subtractLayer(\"" << name() << "\", " << functionName
           << "_subtrahend());\n    return subtractLayer;\n}\n\n";
}
