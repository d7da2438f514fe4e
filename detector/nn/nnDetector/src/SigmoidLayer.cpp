#include "SigmoidLayer.h"

#include <cmath>

#include "KZ_Assert.h"

void SigmoidLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    const KZ::Blob& bottom = bottomBlob(0);
    top_.init(bottom.num(), bottom.channels(), bottom.height(), bottom.width());
    for (int i = 0; i < top_.size(); ++i) top_.data()[i] = 1 / (1 + std::exp(-bottom.data()[i]));
}
