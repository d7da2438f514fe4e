#include "ReshapeLayer.h"

#include <cstdint>

#include "KZ_Assert.h"
#include "KZ_Limits.h"

void ReshapeLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    const KZ::Blob& bottom = bottomBlob(0);
    KZ_ASSERT_GT(size_.area(), 0);
    KZ_ASSERT_GE(bottom.size(), 1);
    KZ_ASSERT_EQ(bottom.channels() * bottom.height() * bottom.width() % size_.area(), 0);
    top_.init(bottom.num(), bottom.volume() / size_.area(), size_.height, size_.width,
              bottom.getMemory());
}

void ReshapeLayer::serialize(KZ::ArchiveI& archive) {
    archive& size_;
    // A damaged file may carry anything.
    KZ_ASSERT_GE(size_.width, 0);
    KZ_ASSERT_GE(size_.height, 0);
    KZ_ASSERT_LT(static_cast<int64_t>(size_.width) * size_.height, KZ::maxValue<int>());
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
