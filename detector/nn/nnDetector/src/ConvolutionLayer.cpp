#include "ConvolutionLayer.h"

#include <algorithm>
#include <cmath>

#include "KZ_ApplyFilter.h"
#include "KZ_Assert.h"
#include "KZ_DotProduct.h"
#include "ReluLayer.h"

namespace {

const double SMALLEST_PLANE = 1e-7;
const int LARGEST_PAD = 1 << 15;

}  // namespace

ConvolutionLayer::ConvolutionLayer(const KZ::Blob& filter, const KZ::Blob& bias,
                                   const std::string& name, int stride, int pad)
    : BaseLayer(name),
      filter_(filter),
      bias_(bias),
      stride_(stride),
      pad_(pad),
      filterVolume_(filter.volume()) {
    KZ_ASSERT_EQ(filter_.num(), bias_.size());
    KZ_ASSERT(stride_ >= 1, "Stride is not correct, stride = " << stride_);
}

ConvolutionLayer& ConvolutionLayer::operator=(const ConvolutionLayer& other) {
    if (this == &other) return *this;
    filter_ = other.filter_;
    bias_ = other.bias_;
    prunedPairs_ = other.prunedPairs_;
    stride_ = other.stride_;
    pad_ = other.pad_;
    filterVolume_ = other.filterVolume_;
    doRelu_ = other.doRelu_;
    return *this;
}

bool ConvolutionLayer::operator==(const ConvolutionLayer& other) const {
    return filter_ == other.filter_ && bias_ == other.bias_ && stride_ == other.stride_ &&
           filterVolume_ == other.filterVolume_;
}

bool ConvolutionLayer::compare(const BaseLayer& other) const {
    return *this == static_cast<const ConvolutionLayer&>(other);
}

KZ::SharedPtr<BaseLayer> ConvolutionLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    static_cast<ConvolutionLayer&>(*copy) = *this;
    return copy;
}

void ConvolutionLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    const KZ::Blob& inputBottom = bottomBlob(0);
    KZ_ASSERT_GE(inputBottom.num(), 1);
    KZ_ASSERT_EQ(inputBottom.channels(), filter_.channels());
    const KZ::Blob& input = padded(inputBottom);
    const KZ::Size inputSize(input.width(), input.height());
    const KZ::Size filterSize(filter_.width(), filter_.height());
    KZ_ASSERT_GE(filter_.size(), 1);
    KZ_ASSERT_GE(inputSize.width, filterSize.width);
    KZ_ASSERT_GE(inputSize.height, filterSize.height);
    const KZ::Size outputSize((inputSize.width - filterSize.width) / stride_ + 1,
                              (inputSize.height - filterSize.height) / stride_ + 1);
    top_.init(input.num(), filter_.num(), outputSize.height, outputSize.width);
    if (inputSize == filterSize) {
        calculateLayerAsScalarProduct(input);
    } else {
        calculateLayerBySlidingWindow(input, inputSize, filterSize, outputSize);
    }
}

const KZ::Blob& ConvolutionLayer::padded(const KZ::Blob& inputBottom) {
    if (pad_ == 0) return inputBottom;
    paddedInput_.init(inputBottom.num(), inputBottom.channels(), inputBottom.height() + 2 * pad_,
                      inputBottom.width() + 2 * pad_);
    paddedInput_.setValue(0);
    for (int n = 0; n < inputBottom.num(); ++n) {
        for (int c = 0; c < inputBottom.channels(); ++c) {
            for (int y = 0; y < inputBottom.height(); ++y) {
                const float* row = inputBottom.data(n, c, y, 0);
                std::copy(row, row + inputBottom.width(), paddedInput_.data(n, c, y + pad_, pad_));
            }
        }
    }
    return paddedInput_;
}

void ConvolutionLayer::calculateLayerAsScalarProduct(const KZ::Blob& input) const {
    KZ::Blob output = top_;
    for (int n = 0; n < input.num(); ++n) {
        for (int o = 0; o < filter_.num(); ++o) {
            *output.data(n, o, 0, 0) = KZ::dotProduct(
                filter_.data(o, 0, 0, 0), input.data(n, 0, 0, 0), filterVolume_, bias_.data()[o]);
        }
    }
    if (doRelu_) ReluLayer::relu(output);
}

void ConvolutionLayer::calculateLayerBySlidingWindow(const KZ::Blob& input,
                                                     const KZ::Size& inputSize,
                                                     const KZ::Size& filterSize,
                                                     const KZ::Size& outputSize) {
    channelSums_.init(1, 1, inputSize.height, inputSize.width);
    const bool pruned = !prunedPairs_.empty();
    size_t pair = 0;
    for (int n = 0; n < input.num(); ++n) {
        for (int o = 0; o < filter_.num(); ++o) {
            float* output = top_.data(n, o, 0, 0);
            if (pruned) {
                std::fill(output, output + outputSize.area(), bias_.data()[o]);
            } else {
                KZ::applyFilter<float>(input.data(n, 0, 0, 0), output, inputSize.width,
                                       inputSize.height, filter_.data(o, 0, 0, 0), filterSize.width,
                                       filterSize.height, bias_.data()[o], stride_);
            }
            for (int c = pruned ? 0 : 1; c < input.channels(); ++c) {
                // The flags run on over the items of a batch, so they serve a batch of one.
                if (pruned && pair < prunedPairs_.size() && prunedPairs_[pair++]) continue;
                KZ::applyFilterAdd(input.data(n, c, 0, 0), output, inputSize.width,
                                   inputSize.height, filter_.data(o, c, 0, 0), filterSize.width,
                                   filterSize.height, channelSums_.data(), 0, stride_);
            }
        }
    }
    if (doRelu_) ReluLayer::relu(top_);
}

void ConvolutionLayer::prune() {
    prunedPairs_.clear();
    for (int o = 0; o < filter_.num(); ++o) {
        for (int c = 0; c < filter_.channels(); ++c) {
            float sum = 0;
            const float* plane = filter_.data(o, c, 0, 0);
            for (int i = 0; i < filter_.area(); ++i) sum += std::fabs(plane[i]);
            prunedPairs_.push_back(sum < SMALLEST_PLANE);
        }
    }
}

void ConvolutionLayer::serialize(KZ::ArchiveO& archive) const {
    archive& filter_& bias_& filterVolume_;
    archive.archiveFromVersion("Version 2", stride_);
    archive.archiveFromVersion("Version 7", pad_);
}

void ConvolutionLayer::serialize(KZ::ArchiveI& archive) {
    archive& filter_& bias_& filterVolume_;
    archive.archiveFromVersion("Version 2", stride_);
    archive.archiveFromVersion("Version 7", pad_);
    // A damaged file may carry anything.
    KZ_ASSERT_EQ(filter_.num(), bias_.size());
    KZ_ASSERT_EQ(filterVolume_, filter_.volume());
    KZ_ASSERT(stride_ >= 1, "Stride is not correct, stride = " << stride_);
    KZ_ASSERT_GE(pad_, 0);
    KZ_ASSERT_LT(pad_, LARGEST_PAD);
}

void ConvolutionLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    filter_.saveToCpp(stream, functionName + "_filter");
    bias_.saveToCpp(stream, functionName + "_bias");
    stream << "ConvolutionLayer& " << functionName
           << "()\n{\n    static ConvolutionLayer convolutionLayer(" << functionName
           << "_filter(), " << functionName << "_bias(), \"" << name() << "\", " << stride_ << ", "
           << pad_ << ");\n    return convolutionLayer;\n}\n\n";
}
