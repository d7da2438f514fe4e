#include "EltwiseLayer.h"

#include "KZ_Assert.h"
#include "KZ_Limits.h"

namespace {

const char* operationName(EltwiseLayer::Operation::Value operation) {
    switch (operation) {
        case EltwiseLayer::Operation::PRODUCT:
            return "PRODUCT";
        case EltwiseLayer::Operation::SUM:
            return "SUM";
        default:
            return "MAX";
    }
}

}  // namespace

void EltwiseLayer::forward() {
    KZ_ASSERT_GE(bottomLayers_.size(), 2);
    top_ = bottomBlob(0);
    for (size_t i = 1; i < bottomLayers_.size(); ++i) {
        requireBottom(i);
        KZ_ASSERT_EQ(top_.shape(), bottomLayers_[i]->getBlob().shape());
    }
    switch (operation_) {
        case Operation::SUM:
            return sum();
        case Operation::PRODUCT:
            return combine([](float a, float b) { return a * b; });
        case Operation::MAX:
            return combine([](float a, float b) { return a > b ? a : b; });
    }
}

void EltwiseLayer::sum() {
    if (coeffs_.empty()) coeffs_.assign(bottomLayers_.size(), 1);
    KZ_ASSERT_EQ(coeffs_.size(), bottomLayers_.size());
    const int size = top_.size();
    float* target = top_.data();
    if (!KZ::equal(coeffs_[0], 1)) {
        for (int i = 0; i < size; ++i) target[i] *= coeffs_[0];
    }
    for (size_t b = 1; b < bottomLayers_.size(); ++b) {
        const float* source = bottomBlob(b).data();
        if (KZ::equal(coeffs_[b], 1)) {
            for (int i = 0; i < size; ++i) target[i] += source[i];
        } else {
            for (int i = 0; i < size; ++i) target[i] += coeffs_[b] * source[i];
        }
    }
}

void EltwiseLayer::combine(float (*operation)(float, float)) {
    for (size_t b = 1; b < bottomLayers_.size(); ++b) {
        const float* source = bottomBlob(b).data();
        for (int i = 0; i < top_.size(); ++i) {
            top_.data()[i] = operation(top_.data()[i], source[i]);
        }
    }
}

void EltwiseLayer::serialize(KZ::ArchiveO& archive) const {
    archive& static_cast<int>(operation_) & static_cast<int>(coeffs_.size());
    archive.write(coeffs_.data(), static_cast<unsigned int>(coeffs_.size()));
}

void EltwiseLayer::serialize(KZ::ArchiveI& archive) {
    // Older files have no payload for this layer.
    if (!archive.getVersion().empty() && archive.getVersion() < "Version 6") return;
    int operation = 0;
    archive& operation;
    KZ_ASSERT(operation >= Operation::PRODUCT && operation <= Operation::MAX,
              "unknown operation " << operation);
    operation_ = static_cast<Operation::Value>(operation);
    archive.load(&coeffs_);
}

KZ::SharedPtr<BaseLayer> EltwiseLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    static_cast<EltwiseLayer&>(*copy).operation_ = operation_;
    static_cast<EltwiseLayer&>(*copy).coeffs_ = coeffs_;
    return copy;
}

bool EltwiseLayer::compare(const BaseLayer& other) const {
    const EltwiseLayer& layer = static_cast<const EltwiseLayer&>(other);
    return operation_ == layer.operation_ && coeffs_ == layer.coeffs_;
}

void EltwiseLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    stream << "EltwiseLayer& " << functionName << "()\n{\n    std::vector<float> coeffs;\n";
    for (float value : coeffs_) {
        stream << "    coeffs.push_back(" << KZ::floatText(value) << ");\n";
    }
    stream << "    static EltwiseLayer eltwiseLayer(\"" << name()
           << "\", EltwiseLayer::Operation::" << operationName(operation_)
           << ", coeffs);\n    return eltwiseLayer;\n}\n\n";
}
