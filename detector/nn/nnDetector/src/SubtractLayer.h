#pragma once

#include "BaseLayer.h"

/// Takes a constant away from its bottom, element by element.
class SubtractLayer : public BaseLayer {
public:
    /// `subtrahend`: the shape of one item of the bottom; shared.
    SubtractLayer(const std::string& name, const KZ::Blob& subtrahend)
        : BaseLayer(name), subtrahend_(subtrahend) {}

    void forward() override;
    std::string type() const override { return "SubtractLayer"; }
    void serialize(KZ::ArchiveO& archive) const override { archive& otherName_& subtrahend_; }
    void serialize(KZ::ArchiveI& archive) override { archive& otherName_& subtrahend_; }
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override;

private:
    std::string otherName_;  ///< travels in files; no run reads it
    KZ::Blob subtrahend_;
};
