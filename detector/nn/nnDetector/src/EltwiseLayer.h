#pragma once

#include "BaseLayer.h"

/// Product, weighted sum or maximum of its bottoms, in place on bottom 0.
class EltwiseLayer : public BaseLayer {
public:
    struct Operation {
        enum Value { PRODUCT = 0, SUM = 1, MAX = 2 };
    };

    /// `coeffs`: one factor per bottom for `SUM`; empty means 1 each.
    EltwiseLayer(const std::string& name, Operation::Value operation, std::vector<float> coeffs)
        : BaseLayer(name), operation_(operation), coeffs_(std::move(coeffs)) {}

    void forward() override;
    std::string type() const override { return "EltwiseLayer"; }
    void serialize(KZ::ArchiveO& archive) const override;
    void serialize(KZ::ArchiveI& archive) override;
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override;

private:
    void sum();
    void combine(float (*operation)(float, float));

    Operation::Value operation_;
    std::vector<float> coeffs_;
};
