#pragma once

#include "BaseLayer.h"

/// x * a + b in place, with one pair per element or per channel.
class LinearTransformLayer : public BaseLayer {
public:
    explicit LinearTransformLayer(const std::string& name) : BaseLayer(name) {}

    /// Equal lengths, else an assertion.
    void setTransform(const std::vector<float>& a, const std::vector<float>& b);

    void forward() override;
    std::string type() const override { return "LinearTransformLayer"; }
    void serialize(KZ::ArchiveO& archive) const override;
    void serialize(KZ::ArchiveI& archive) override;
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override;

private:
    std::vector<float> a_;
    std::vector<float> b_;
};
