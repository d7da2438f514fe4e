#pragma once

#include "BaseLayer.h"

/// The transposed convolution: each input adds the filter, times its value, at its place.
class DeConvolutionLayer : public BaseLayer {
public:
    explicit DeConvolutionLayer(const std::string& name) : BaseLayer(name) {}
    /// `filter`: (outChannels, inChannels, height, width); `bias`: one value per output channel.
    DeConvolutionLayer(const KZ::Blob& filter, const KZ::Blob& bias, const std::string& name,
                       int stride);

    void forward() override;
    std::string type() const override { return "DeConvolutionLayer"; }
    void serialize(KZ::ArchiveO& archive) const override { archive& filter_& bias_& stride_; }
    void serialize(KZ::ArchiveI& archive) override;
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override;

private:
    void checkParameters() const;
    void addChannel(const KZ::Blob& bottom, int n, int o, int c);

    KZ::Blob filter_;
    KZ::Blob bias_;
    int stride_ = 1;
};
