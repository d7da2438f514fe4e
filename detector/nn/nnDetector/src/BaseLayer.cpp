#include "BaseLayer.h"

#include "KZ_Assert.h"

KZ::SharedPtr<BaseLayer> BaseLayer::clone() const {
    return getBaseLayer(type(), name_);
}

const KZ::SharedPtr<BaseLayer>& BaseLayer::getBottomLayer(int i) const {
    KZ_ASSERT_LT(i, (int)bottomLayers_.size());
    return bottomLayers_[static_cast<size_t>(i)];
}

std::vector<std::string> BaseLayer::getBottomLayersName() const {
    std::vector<std::string> names;
    // A file may name a bottom that stands later in it: that one stays empty.
    for (const auto& layer : bottomLayers_) names.push_back(layer ? layer->name() : std::string());
    return names;
}

void BaseLayer::saveBaseLayer(KZ::ArchiveO& archive) const {
    archive& type() & name_;
}

KZ::SharedPtr<BaseLayer> BaseLayer::loadBaseLayer(KZ::ArchiveI& archive) {
    std::string type, name;
    archive& type& name;
    return getBaseLayer(type, name);
}

void BaseLayer::baseSaveToCpp(std::ostream& stream, const std::string& functionName) const {
    stream << type() << "& " << functionName << "()\n{\n    static " << type() << " value(\""
           << name_ << "\");\n    return value;\n}\n\n";
}
