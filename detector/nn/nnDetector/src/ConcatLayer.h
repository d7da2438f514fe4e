#pragma once

#include "BaseLayer.h"

/// Joins its bottoms along the channels (items of one), or along the items.
class ConcatLayer : public BaseLayer {
public:
    explicit ConcatLayer(std::string name) : ConcatLayer(std::move(name), true) {}
    ConcatLayer(std::string name, bool byChannels) : BaseLayer(name), byChannels_(byChannels) {}

    void forward() override;
    std::string type() const override { return "ConcatLayer"; }
    void serialize(KZ::ArchiveO& archive) const override { archive& byChannels_; }
    void serialize(KZ::ArchiveI& archive) override { archive& byChannels_; }
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override {
        return byChannels_ == static_cast<const ConcatLayer&>(other).byChannels_;
    }

private:
    void shapeByChannels();
    void shapeByItems();

    bool byChannels_;
};
