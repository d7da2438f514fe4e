#include "LocallyConnectedLayer.h"

#include "KZ_Assert.h"

LocallyConnectedLayer::LocallyConnectedLayer(const std::vector<KZ::Blob>& filter,
                                             const std::vector<KZ::Blob>& bias,
                                             const std::string& name, int stride)
    : BaseLayer(name), filter_(filter), bias_(bias), stride_(stride) {
    checkShapes();
}

void LocallyConnectedLayer::checkShapes() const {
    KZ_ASSERT(stride_ >= 1, "Stride is not correct, stride = " << stride_);
    KZ_ASSERT_EQ(filter_.size(), bias_.size());
    KZ_ASSERT_GT(filter_.size(), 0);
    KZ_ASSERT_EQ(filter_[0].num(), bias_[0].size());
    for (size_t i = 0; i + 1 < filter_.size(); ++i) {
        KZ_ASSERT_EQ(filter_[i].height(), filter_[i + 1].height());
        KZ_ASSERT_EQ(filter_[i].channels(), filter_[i + 1].channels());
        KZ_ASSERT_EQ(filter_[i].num(), filter_[i + 1].num());
        KZ_ASSERT_EQ(filter_[i].width(), filter_[i + 1].width());
        KZ_ASSERT_EQ(bias_[i].size(), bias_[i + 1].size());
    }
}

void LocallyConnectedLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    const KZ::Blob& bottom = bottomBlob(0);
    KZ_ASSERT_EQ(bottom.num(), 1);
    checkShapes();
    KZ_ASSERT_EQ(bottom.channels(), filter_[0].channels());
    KZ_ASSERT_GE(filter_[0].size(), 1);
    KZ_ASSERT_GE(bottom.width(), filter_[0].width());
    KZ_ASSERT_GE(bottom.height(), filter_[0].height());
    const int width = (bottom.width() - filter_[0].width()) / stride_ + 1;
    const int height = (bottom.height() - filter_[0].height()) / stride_ + 1;
    KZ_ASSERT_EQ((int)filter_.size(), width * height);
    top_.init(1, filter_[0].num(), height, width);
    for (int o = 0; o < top_.channels(); ++o) {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                *top_.data(0, o, y, x) = at(bottom, static_cast<size_t>(y * width + x), o, y, x);
            }
        }
    }
}

float LocallyConnectedLayer::at(const KZ::Blob& bottom, size_t position, int o, int y,
                                int x) const {
    const KZ::Blob& filter = filter_[position];
    float sum = bias_[position].data()[o];
    for (int c = 0; c < filter.channels(); ++c) {
        for (int fy = 0; fy < filter.height(); ++fy) {
            const float* weights = filter.data(o, c, fy, 0);
            const float* cells = bottom.data(0, c, y * stride_ + fy, x * stride_);
            for (int fx = 0; fx < filter.width(); ++fx) sum += weights[fx] * cells[fx];
        }
    }
    return sum;
}

void LocallyConnectedLayer::serialize(KZ::ArchiveO& archive) const {
    archive.save(filter_);
    archive.save(bias_);
    archive& stride_;
}

void LocallyConnectedLayer::serialize(KZ::ArchiveI& archive) {
    archive.load(&filter_);
    archive.load(&bias_);
    archive& stride_;
}

KZ::SharedPtr<BaseLayer> LocallyConnectedLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    LocallyConnectedLayer& layer = static_cast<LocallyConnectedLayer&>(*copy);
    layer.filter_ = filter_;
    layer.bias_ = bias_;
    layer.stride_ = stride_;
    return copy;
}

bool LocallyConnectedLayer::compare(const BaseLayer& other) const {
    const LocallyConnectedLayer& layer = static_cast<const LocallyConnectedLayer&>(other);
    return filter_ == layer.filter_ && bias_ == layer.bias_ && stride_ == layer.stride_;
}

void LocallyConnectedLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    KZ_ASSERT_EQ(filter_.size(), bias_.size());
    for (size_t i = 0; i < filter_.size(); ++i) {
        filter_[i].saveToCpp(stream, functionName + "_filter" + std::to_string(i));
        bias_[i].saveToCpp(stream, functionName + "_bias" + std::to_string(i));
    }
    stream << "LocallyConnectedLayer& " << functionName
           << "()\n{\n    std::vector<KZ::Blob> filter, bias;\n";
    for (size_t i = 0; i < filter_.size(); ++i) {
        stream << "    filter.push_back(" << functionName << "_filter" << i << "());\n";
        stream << "    bias.push_back(" << functionName << "_bias" << i << "());\n";
    }
    stream << "    static LocallyConnectedLayer locallyConnectedLayer(filter, bias, \"" << name()
           << "\", " << stride_ << ");\n    return locallyConnectedLayer;\n}\n\n";
}
