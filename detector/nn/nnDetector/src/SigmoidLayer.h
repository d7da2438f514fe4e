#pragma once

#include "BaseLayer.h"

/// 1 / (1 + exp(-x)) per element, into a top of its own.
class SigmoidLayer : public BaseLayer {
public:
    explicit SigmoidLayer(const std::string& name) : BaseLayer(name) {}

    void forward() override;
    std::string type() const override { return "SigmoidLayer"; }
    void serialize(KZ::ArchiveO&) const override {}
    void serialize(KZ::ArchiveI&) override {}
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override {
        baseSaveToCpp(stream, functionName);
    }
    bool compare(const BaseLayer&) const override { return true; }
};
