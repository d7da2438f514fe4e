#include "ReshapeLayer.h"

#include "KZ_Assert.h"

void ReshapeLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    const KZ::Blob& bottom = bottomBlob(0);
    // A layer from a file may carry anything.
    KZ_ASSERT_GT(size_.width, 0);
    KZ_ASSERT_GT(size_.height, 0);
    KZ_ASSERT_EQ(bottom.channels() * bottom.height() * bottom.width() % size_.area(), 0);
    top_.init(bottom.num(), bottom.volume() / size_.area(), size_.height, size_.width,
              bottom.getMemory());
}

KZ::SharedPtr<BaseLayer> ReshapeLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    static_cast<ReshapeLayer&>(*copy).size_ = size_;
    return copy;
}

void ReshapeLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    stream << "ReshapeLayer& " << functionName << "()\n{\n    static ReshapeLayer reshapeLayer(\""
           << name() << "\", KZ::" << size_ << ");\n    return reshapeLayer;\n}\n\n";
}
