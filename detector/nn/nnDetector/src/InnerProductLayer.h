#pragma once

#include "BaseLayer.h"

/// Dense layer: one dot product with the whole item per output.
class InnerProductLayer : public BaseLayer {
public:
    explicit InnerProductLayer(const std::string& name) : BaseLayer(name) {}
    /// `weights`: rows of one output each, (1, 1, outputs, inputs); `bias`: (1, 1, 1, outputs).
    InnerProductLayer(const KZ::Blob& weights, const KZ::Blob& bias, const std::string& name);

    void setDoRelu(bool doRelu) { doRelu_ = doRelu; }

    void forward() override;
    std::string type() const override { return "InnerProductLayer"; }
    void serialize(KZ::ArchiveO& archive) const override { archive& weights_& bias_; }
    void serialize(KZ::ArchiveI& archive) override { archive& weights_& bias_; }
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override;

private:
    KZ::Blob weights_;
    KZ::Blob bias_;
    bool doRelu_ = false;
};
