#include "PredictBoxLayer.h"

#include <cmath>

#include "KZ_Assert.h"

namespace {

const float SMALLEST_SCALE = 0.001f;
const int VALUES = 5;

void checkMap(const KZ::Blob& map, const KZ::Blob& scores, int channels) {
    KZ_ASSERT_GE(map.channels(), channels);
    KZ_ASSERT_EQ(map.num(), scores.num());
    KZ_ASSERT_EQ(map.height(), scores.height());
    KZ_ASSERT_EQ(map.width(), scores.width());
}

}  // namespace

void PredictBoxLayer::forward() {
    KZ_ASSERT_GE(bottomLayers_.size(), 1);
    requireBottom(0);
    KZ_ASSERT_EQ(bottomLayers_[0]->getBlob().channels(), 2);
    KZ_ASSERT_NE(cellSize_, 0);
    const KZ::Blob& scores = bottomBlob(0);
    if (bottomLayers_.size() > 1) checkMap(bottomBlob(1), scores, 4);
    if (bottomLayers_.size() > 2) checkMap(bottomBlob(2), scores, 1);
    boxes_.init(scores.num(), VALUES, scores.height(), scores.width());
    boxes_.setValue(0);
    passed_.clear();
    for (int n = 0; n < scores.num(); ++n) {
        for (int y = 0; y < scores.height(); ++y) {
            for (int x = 0; x < scores.width(); ++x) {
                if (predict(n, y, x)) passed_.push_back(y * scores.width() + x);
            }
        }
    }
    if (scores.num() == 1 && !passed_.empty()) compact();
}

bool PredictBoxLayer::predict(int n, int y, int x) {
    const float score = *bottomBlob(0).data(n, 1, y, x);
    if (!(score > threshold_)) return false;
    const float scale = bottomLayers_.size() > 2 ? *bottomBlob(2).data(n, 0, y, x) : 1.0f;
    if (std::fabs(scale) < SMALLEST_SCALE) return false;
    const float stride = static_cast<float>(stride_), cellSize = static_cast<float>(cellSize_);
    *boxes_.data(n, 0, y, x) = scale * (stride * static_cast<float>(x) / cellSize);
    *boxes_.data(n, 1, y, x) = scale * (stride * static_cast<float>(y) / cellSize);
    *boxes_.data(n, 2, y, x) = scale;
    *boxes_.data(n, 3, y, x) = scale;
    *boxes_.data(n, 4, y, x) = score;
    if (bottomLayers_.size() > 1) correct(bottomBlob(1), n, y, x, scale);
    return true;
}

void PredictBoxLayer::correct(const KZ::Blob& regression, int n, int y, int x, float scale) {
    const auto d = [&](int channel) { return *regression.data(n, channel, y, x); };
    float* box[VALUES];
    for (int i = 0; i < VALUES; ++i) box[i] = boxes_.data(n, i, y, x);
    *box[0] += scale * d(variant_ ? 1 : 0);
    *box[1] += scale * d(variant_ ? 0 : 1);
    if (variant_) {
        *box[2] *= std::exp(d(3));
        *box[3] *= std::exp(d(2));
    } else {
        *box[2] += scale * (d(3) - d(1));
        *box[3] += scale * (d(2) - d(0));
    }
}

void PredictBoxLayer::compact() {
    top_.init(1, static_cast<int>(passed_.size()), VALUES, 1);
    float* target = top_.data();
    for (const int cell : passed_) {
        for (int i = 0; i < VALUES; ++i) *target++ = boxes_.data(0, i, 0, 0)[cell];
    }
}

void PredictBoxLayer::serialize(KZ::ArchiveO& archive) const {
    archive& cellSize_& stride_& threshold_& variant_;
}

void PredictBoxLayer::serialize(KZ::ArchiveI& archive) {
    archive& cellSize_& stride_& threshold_& variant_;
}

KZ::SharedPtr<BaseLayer> PredictBoxLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    PredictBoxLayer& layer = static_cast<PredictBoxLayer&>(*copy);
    layer.cellSize_ = cellSize_;
    layer.stride_ = stride_;
    layer.threshold_ = threshold_;
    layer.variant_ = variant_;
    return copy;
}

bool PredictBoxLayer::compare(const BaseLayer& other) const {
    const PredictBoxLayer& layer = static_cast<const PredictBoxLayer&>(other);
    return cellSize_ == layer.cellSize_ && stride_ == layer.stride_ &&
           threshold_ == layer.threshold_ && variant_ == layer.variant_;
}

void PredictBoxLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    stream << "PredictBoxLayer& " << functionName
           << "()\n{\n    static PredictBoxLayer predictBoxLayer(\"" << name() << "\", "
           << cellSize_ << ", " << stride_ << ", " << KZ::floatLiteral(threshold_) << ", "
           << (variant_ ? "true" : "false") << ");\n    return predictBoxLayer;\n}\n\n";
}
