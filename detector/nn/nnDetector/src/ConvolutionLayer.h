#pragma once

#include "BaseLayer.h"
#include "KZ_BaseSize.h"

/// Cross-correlation of the bottom with a bank of filters, with stride and zero padding. A filter
/// that covers the whole padded input is a dot product per output channel, any other one slides. A
/// filter larger than the padded input is an assertion.
class ConvolutionLayer : public BaseLayer {
public:
    explicit ConvolutionLayer(const std::string& name) : BaseLayer(name) {}
    /// `filter`: (outChannels, inChannels, height, width); `bias`: one value per output channel.
    /// Both are shared, not copied. `stride` is at least 1.
    ConvolutionLayer(const KZ::Blob& filter, const KZ::Blob& bias, const std::string& name,
                     int stride, int pad);
    ConvolutionLayer& operator=(const ConvolutionLayer& other);
    ConvolutionLayer(const ConvolutionLayer&) = delete;

    /// Clamps the outputs at 0 from below.
    void setDoRelu(bool doRelu) { doRelu_ = doRelu; }
    /// Filters and strides; padding does not count.
    bool operator==(const ConvolutionLayer& other) const;

    void forward() override;
    /// From now on leaves out filter planes of all but zero. Serves a batch of one.
    void prune() override;
    std::string type() const override { return "ConvolutionLayer"; }
    void serialize(KZ::ArchiveO& archive) const override;
    void serialize(KZ::ArchiveI& archive) override;
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override;

    /// The two ways of `forward`, which shapes the top for them and chooses. `input` is the padded
    /// bottom.
    void calculateLayerAsScalarProduct(const KZ::Blob& input) const;
    void calculateLayerBySlidingWindow(const KZ::Blob& input, const KZ::Size& inputSize,
                                       const KZ::Size& filterSize, const KZ::Size& outputSize);

private:
    const KZ::Blob& padded(const KZ::Blob& inputBottom);

    KZ::Blob filter_;
    KZ::Blob bias_;
    KZ::Blob paddedInput_;
    std::vector<bool> prunedPairs_;
    int stride_ = 1;
    int pad_ = 0;
    int filterVolume_ = 0;
    bool doRelu_ = false;
    KZ::Blob channelSums_;  ///< one channel's part of an output plane
};
