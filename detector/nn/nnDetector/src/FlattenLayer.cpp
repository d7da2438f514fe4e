#include "FlattenLayer.h"

#include "KZ_Assert.h"

void FlattenLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    const KZ::Blob& bottom = bottomBlob(0);
    if (interleaved_) {
        interleave(bottom);
    } else {
        top_.init(bottom.num(), bottom.volume(), 1, 1, bottom.getMemory());
    }
}

void FlattenLayer::interleave(const KZ::Blob& bottom) {
    top_.init(bottom.num(), bottom.volume(), 1, 1);
    const int area = bottom.area(), channels = bottom.channels();
    for (int n = 0; n < bottom.num(); ++n) {
        const float* source = bottom.data(n, 0, 0, 0);
        float* target = top_.data(n, 0, 0, 0);
        for (int i = 0; i < area; ++i) {
            for (int c = 0; c < channels; ++c) *target++ = source[c * area + i];
        }
    }
}

KZ::SharedPtr<BaseLayer> FlattenLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    static_cast<FlattenLayer&>(*copy).interleaved_ = interleaved_;
    return copy;
}
