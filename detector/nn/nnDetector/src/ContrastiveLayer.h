#pragma once

#include "BaseLayer.h"

/// Euclidean distance of its two bottoms over their first `num` elements.
class ContrastiveLayer : public BaseLayer {
public:
    explicit ContrastiveLayer(const std::string& name) : BaseLayer(name) {}

    void forward() override;
    std::string type() const override { return "ContrastiveLayer"; }
    void serialize(KZ::ArchiveO&) const override {}
    void serialize(KZ::ArchiveI&) override {}
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    bool compare(const BaseLayer&) const override { return true; }
};
