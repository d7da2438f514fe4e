#include "LinearTransformLayer.h"

#include "KZ_Assert.h"

namespace {

void writeVector(KZ::ArchiveO& archive, const std::vector<float>& values) {
    archive& static_cast<int>(values.size());
    archive.write(values.data(), static_cast<unsigned int>(values.size()));
}

}  // namespace

void LinearTransformLayer::setTransform(const std::vector<float>& a, const std::vector<float>& b) {
    a_ = a;
    b_ = b;
    KZ_ASSERT_EQ(a_.size(), b_.size());
}

void LinearTransformLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    top_ = bottomBlob(0);
    KZ_ASSERT_EQ(a_.size(), b_.size());
    int size = top_.size();
    if (static_cast<int>(a_.size()) == size) {
        for (int i = 0; i < size; ++i) {
            top_.data()[i] =
                top_.data()[i] * a_[static_cast<size_t>(i)] + b_[static_cast<size_t>(i)];
        }
        return;
    }
    size = top_.channels();
    KZ_ASSERT_EQ((int)a_.size(), size);
    for (int n = 0; n < top_.num(); ++n) {
        for (int c = 0; c < size; ++c) {
            const float a = a_[static_cast<size_t>(c)], b = b_[static_cast<size_t>(c)];
            float* plane = top_.data(n, c, 0, 0);
            for (int i = 0; i < top_.area(); ++i) plane[i] = plane[i] * a + b;
        }
    }
}

void LinearTransformLayer::serialize(KZ::ArchiveO& archive) const {
    writeVector(archive, a_);
    writeVector(archive, b_);
}

void LinearTransformLayer::serialize(KZ::ArchiveI& archive) {
    archive.load(&a_);
    archive.load(&b_);
}

KZ::SharedPtr<BaseLayer> LinearTransformLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    static_cast<LinearTransformLayer&>(*copy).a_ = a_;
    static_cast<LinearTransformLayer&>(*copy).b_ = b_;
    return copy;
}

bool LinearTransformLayer::compare(const BaseLayer& other) const {
    const LinearTransformLayer& layer = static_cast<const LinearTransformLayer&>(other);
    return a_ == layer.a_ && b_ == layer.b_;
}

void LinearTransformLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    stream << "LinearTransformLayer& " << functionName << "()\n{\n    std::vector<float> a, b;\n";
    for (float value : a_) stream << "    a.push_back(" << KZ::floatText(value) << ");\n";
    for (float value : b_) stream << "    b.push_back(" << KZ::floatText(value) << ");\n";
    stream << "    static LinearTransformLayer linearTransformLayer(\"" << name()
           << "\");\n    linearTransformLayer.setTransform(a, b);\n    return "
              "linearTransformLayer;\n}\n\n";
}
