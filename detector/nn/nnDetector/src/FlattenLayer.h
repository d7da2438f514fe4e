#pragma once

#include "BaseLayer.h"

/// Each item as one column of channels: on the bottom's memory, or, interleaved, copied with the
/// channels fastest.
class FlattenLayer : public BaseLayer {
public:
    explicit FlattenLayer(const std::string& name, bool interleaved = false)
        : BaseLayer(name), interleaved_(interleaved) {}

    void forward() override;
    std::string type() const override { return "FlattenLayer"; }
    void serialize(KZ::ArchiveO&) const override {}
    void serialize(KZ::ArchiveI&) override {}
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override {
        baseSaveToCpp(stream, functionName);
    }
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer&) const override { return true; }

private:
    void interleave(const KZ::Blob& bottom);

    bool interleaved_;
};
