#pragma once

#include "BaseLayer.h"

/// A rational approximation of the hyperbolic tangent, in place: the bottom's blob changes too.
class TangensLayer : public BaseLayer {
public:
    explicit TangensLayer(const std::string& name) : BaseLayer(name) {}

    /// Odd, 0 at 0, about 0.774 at 1, tends to 1.
    float approxTanh(float x) const;

    void forward() override;
    std::string type() const override { return "TangensLayer"; }
    void serialize(KZ::ArchiveO&) const override {}
    void serialize(KZ::ArchiveI&) override {}
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override {
        baseSaveToCpp(stream, functionName);
    }
    bool compare(const BaseLayer&) const override { return true; }
};
