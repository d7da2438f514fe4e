#pragma once

#include "BaseLayer.h"

/// With one channel a decision between two classes: 1 when the share of the second reaches the
/// threshold, else 0. With more, the softmax over the channels at each position of item 0, in
/// place.
class SoftmaxLayer : public BaseLayer {
public:
    SoftmaxLayer(const std::string& name, float threshold)
        : BaseLayer(name), threshold_(threshold) {}

    void forward() override;
    std::string type() const override { return "SoftmaxLayer"; }
    void serialize(KZ::ArchiveO& archive) const override { archive& threshold_; }
    void serialize(KZ::ArchiveI& archive) override { archive& threshold_; }
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    /// Thresholds within a relative 1e-6.
    bool compare(const BaseLayer& other) const override;

private:
    void decide(const KZ::Blob& bottom);
    void normalise(const KZ::Blob& bottom);

    float threshold_;
    KZ::Blob logDenominator_;
};
