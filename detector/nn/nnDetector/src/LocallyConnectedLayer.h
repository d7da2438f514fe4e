#pragma once

#include "BaseLayer.h"

/// Like a convolution, but each output position has its own filters and biases: entry
/// y * outWidth + x of the two lists.
class LocallyConnectedLayer : public BaseLayer {
public:
    explicit LocallyConnectedLayer(const std::string& name) : BaseLayer(name) {}
    /// Filters of one shape (outChannels, inChannels, height, width), a bias blob of outChannels
    /// values beside each.
    LocallyConnectedLayer(const std::vector<KZ::Blob>& filter, const std::vector<KZ::Blob>& bias,
                          const std::string& name, int stride = 1);

    void forward() override;
    std::string type() const override { return "LocallyConnectedLayer"; }
    void serialize(KZ::ArchiveO& archive) const override;
    void serialize(KZ::ArchiveI& archive) override;
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override;

private:
    void checkShapes() const;
    float at(const KZ::Blob& bottom, size_t position, int o, int y, int x) const;

    std::vector<KZ::Blob> filter_;
    std::vector<KZ::Blob> bias_;
    int stride_ = 1;
};
