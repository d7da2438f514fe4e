#pragma once

#include "BaseLayer.h"

/// The entry of a network: its top is the blob that the network is handed.
class DataLayer : public BaseLayer {
public:
    explicit DataLayer(const std::string& name) : BaseLayer(name) {}

    void forward() override;
    std::string type() const override { return "DataLayer"; }
    void serialize(KZ::ArchiveO&) const override {}
    void serialize(KZ::ArchiveI&) override {}
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override {
        baseSaveToCpp(stream, functionName);
    }
    bool compare(const BaseLayer&) const override { return true; }
};
