#pragma once

#include "BaseLayer.h"

namespace KZ {

/// Maximum of each 2 by 2 block of a tight plane; odd last columns and rows are reduced over what
/// there is. The target is (width + 1) / 2 by (height + 1) / 2.
template <typename T>
void maxPool(const T* src, T* dst, int width, int height);

}  // namespace KZ

/// Maximum over square windows.
class PoolingLayer : public BaseLayer {
public:
    explicit PoolingLayer(const std::string& name) : BaseLayer(name) {}
    PoolingLayer(int kernel, int stride, const std::string& name)
        : BaseLayer(name), kernel_(kernel), stride_(stride) {}

    void forward() override;
    std::string type() const override { return "PoolingLayer"; }
    void serialize(KZ::ArchiveO& archive) const override { archive& kernel_& stride_; }
    void serialize(KZ::ArchiveI& archive) override { archive& kernel_& stride_; }
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override;

private:
    void poolingStrideEqualsKernel();
    void poolingDifferentStrideKernel();

    int kernel_ = 0;
    int stride_ = 0;
};
