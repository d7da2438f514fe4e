#pragma once

#include "BaseLayer.h"

/// Planes of another size on the bottom's memory; the channels take what is left.
class ReshapeLayer : public BaseLayer {
public:
    explicit ReshapeLayer(const std::string& name) : BaseLayer(name) {}
    ReshapeLayer(const std::string& name, const KZ::Size& size) : BaseLayer(name), size_(size) {}

    void forward() override;
    std::string type() const override { return "ReshapeLayer"; }
    void serialize(KZ::ArchiveO& archive) const override { archive& size_; }
    void serialize(KZ::ArchiveI& archive) override;
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override {
        return size_ == static_cast<const ReshapeLayer&>(other).size_;
    }

private:
    KZ::Size size_;
};
