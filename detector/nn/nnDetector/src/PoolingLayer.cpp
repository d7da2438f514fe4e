#include "PoolingLayer.h"

#include <algorithm>

#include "KZ_Assert.h"
#include "KZ_Limits.h"

namespace {

const int LARGEST_WINDOW = 1 << 15;

// The quotient rounded up. Of sizes beyond 2^24 a quotient of floats could come out too small.
int dividedUp(int size, int stride) {
    return size > 0 ? (size - 1) / stride + 1 : size / stride;
}

}  // namespace

namespace KZ {

template <>
void maxPool<float>(const float* src, float* dst, int width, int height) {
    const int outWidth = (width + 1) / 2;
    for (int y = 0; y < height; y += 2) {
        const float* upper = src + y * width;
        const float* lower = y + 1 < height ? upper + width : upper;
        for (int x = 0; x < outWidth; ++x) {
            const int left = 2 * x, right = std::min(2 * x + 1, width - 1);
            dst[x] =
                std::max(std::max(upper[left], upper[right]), std::max(lower[left], lower[right]));
        }
        dst += outWidth;
    }
}

}  // namespace KZ

KZ::SharedPtr<BaseLayer> PoolingLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    static_cast<PoolingLayer&>(*copy).kernel_ = kernel_;
    static_cast<PoolingLayer&>(*copy).stride_ = stride_;
    return copy;
}

bool PoolingLayer::compare(const BaseLayer& other) const {
    const PoolingLayer& layer = static_cast<const PoolingLayer&>(other);
    return kernel_ == layer.kernel_ && stride_ == layer.stride_;
}

void PoolingLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    // A layer from a file may carry anything.
    KZ_ASSERT_GT(kernel_, 0);
    KZ_ASSERT_GT(stride_, 0);
    KZ_ASSERT_LT(kernel_, LARGEST_WINDOW);
    KZ_ASSERT_LT(stride_, LARGEST_WINDOW);
    if (stride_ == kernel_) {
        poolingStrideEqualsKernel();
    } else {
        poolingDifferentStrideKernel();
    }
}

void PoolingLayer::poolingStrideEqualsKernel() {
    const KZ::Blob& bottom = bottomBlob(0);
    KZ_ASSERT_GE(bottom.num(), 1);
    top_.init(bottom.num(), bottom.channels(), dividedUp(bottom.height(), stride_),
              dividedUp(bottom.width(), stride_));
    if (stride_ != 2) top_.setValue(KZ::minValue<float>());
    for (int n = 0; n < bottom.num(); ++n) {
        for (int c = 0; c < bottom.channels(); ++c) {
            if (stride_ == 2) {
                KZ::maxPool<float>(bottom.data(n, c, 0, 0), top_.data(n, c, 0, 0), bottom.width(),
                                   bottom.height());
                continue;
            }
            for (int y = 0; y < bottom.height(); ++y) {
                const float* row = bottom.data(n, c, y, 0);
                float* target = top_.data(n, c, y / stride_, 0);
                for (int x = 0; x < bottom.width(); ++x) {
                    target[x / stride_] = std::max(target[x / stride_], row[x]);
                }
            }
        }
    }
}

void PoolingLayer::poolingDifferentStrideKernel() {
    const KZ::Blob& bottom = bottomBlob(0);
    KZ_ASSERT_EQ(bottom.num(), 1);
    top_.init(1, bottom.channels(), dividedUp(bottom.height() - kernel_, stride_) + 1,
              dividedUp(bottom.width() - kernel_, stride_) + 1);
    KZ_ASSERT_GE(top_.height(), 1);
    KZ_ASSERT_GE(top_.width(), 1);
    top_.setValue(KZ::minValue<float>());
    for (int c = 0; c < top_.channels(); ++c) {
        for (int oy = 0; oy < top_.height(); ++oy) {
            const int top = std::max(oy * stride_, 0);
            const int bottomEnd = std::min(top + kernel_, bottom.height());
            for (int ox = 0; ox < top_.width(); ++ox) {
                const int left = std::max(ox * stride_, 0);
                const int right = std::min(left + kernel_, bottom.width());
                float* target = top_.data(0, c, oy, ox);
                for (int y = top; y < bottomEnd; ++y) {
                    const float* row = bottom.data(0, c, y, 0);
                    for (int x = left; x < right; ++x) *target = std::max(*target, row[x]);
                }
            }
        }
    }
}

void PoolingLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    stream << "PoolingLayer& " << functionName << "()\n{\n    static  PoolingLayer  poolingLayer("
           << kernel_ << "," << stride_ << ", \"" << name()
           << "\");\n    return poolingLayer;\n}\n\n";
}
