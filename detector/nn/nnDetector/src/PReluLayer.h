#pragma once

#include "BaseLayer.h"

namespace KZ {

/// x[i] = x[i] > 0 ? x[i] : x[i] * slope, in place; 0 and NaN take the slope.
void PReluLrForwardFoOneCh(float* x, int n, float slope);

}  // namespace KZ

/// One slope per channel for what is not above 0, in place: the bottom's blob changes too. Takes a
/// batch of one.
class PReluLayer : public BaseLayer {
public:
    explicit PReluLayer(const std::string& name) : BaseLayer(name) {}
    /// `slope`: (channels, 1, 1, 1), shared.
    PReluLayer(const std::string& name, const KZ::Blob& slope) : BaseLayer(name), slope_(slope) {}

    void forward() override;
    std::string type() const override { return "PReluLayer"; }
    void serialize(KZ::ArchiveO& archive) const override { archive& slope_; }
    void serialize(KZ::ArchiveI& archive) override { archive& slope_; }
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override {
        return slope_ == static_cast<const PReluLayer&>(other).slope_;
    }

private:
    KZ::Blob slope_;
};
