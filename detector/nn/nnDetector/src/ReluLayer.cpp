#include "ReluLayer.h"

#include <limits>

#include "KZ_Assert.h"

namespace KZ {

template <>
void maxVector<float>(float* x, int n, float limit) {
    for (int i = 0; i < n; ++i) {
        const float larger = x[i] > limit ? x[i] : limit;
        x[i] = x[i] != x[i] ? std::numeric_limits<float>::quiet_NaN() : larger;
    }
}

}  // namespace KZ

void ReluLayer::relu(KZ::Blob& blob) {
    KZ::maxVector<float>(blob.data(), blob.size(), 0.0f);
}

void ReluLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    top_ = bottomBlob(0);
    relu(top_);
}
