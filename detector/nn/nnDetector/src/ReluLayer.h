#pragma once

#include "BaseLayer.h"

namespace KZ {

/// x[i] = max(x[i], limit) in place. A NaN becomes the default NaN.
template <typename T>
void maxVector(T* x, int n, T limit);

}  // namespace KZ

/// Clamps at 0 from below, in place: the bottom's blob changes too.
class ReluLayer : public BaseLayer {
public:
    explicit ReluLayer(const std::string& name) : BaseLayer(name) {}

    /// Clamps all elements in place.
    static void relu(KZ::Blob& blob);

    void forward() override;
    std::string type() const override { return "ReluLayer"; }
    void serialize(KZ::ArchiveO&) const override {}
    void serialize(KZ::ArchiveI&) override {}
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override {
        baseSaveToCpp(stream, functionName);
    }
    bool compare(const BaseLayer&) const override { return true; }
};
