#include <cstdint>
#include <map>

#include "KZ_Assert.h"
#include "NnDetector.h"

const char* const NN_CLASSIFIER_VERSION = "Version 8";

namespace {

const char* const SEPARATOR = "\n";
const int64_t LARGEST_AREA = int64_t{1} << 30;
const size_t SMALLEST_LAYER = 7;  // two empty strings, the count of bottoms, the separator

}  // namespace

bool NnDetector::load(const std::string& path) {
    KZ::ArchiveI::load(path, *this);
    return isLoaded();
}

KZ::ArchiveO& operator&(KZ::ArchiveO& archive, const NnDetector& network) {
    archive.setVersion(NN_CLASSIFIER_VERSION);
    archive& std::string(NN_CLASSIFIER_VERSION) & SEPARATOR;
    archive& network.name_& SEPARATOR;
    archive& network.size_& SEPARATOR;
    archive& static_cast<int>(network.inputColorMode_) & SEPARATOR;
    archive& static_cast<int>(network.network_.size()) & SEPARATOR;
    for (const auto& layer : network.network_) {
        layer->saveBaseLayer(archive);
        layer->serialize(archive);
        archive & layer->getNumBottomLayers();
        for (const std::string& name : layer->getBottomLayersName()) archive& name;
        archive& SEPARATOR;
    }
    return archive;
}

namespace {

using LayersByName = std::map<std::string, KZ::SharedPtr<BaseLayer>>;

KZ::SharedPtr<BaseLayer> readLayer(KZ::ArchiveI& archive, LayersByName& byName) {
    KZ::SharedPtr<BaseLayer> layer = BaseLayer::loadBaseLayer(archive);
    layer->serialize(archive);
    int numBottoms = 0;
    archive& numBottoms;
    KZ_ASSERT_GE(numBottoms, 0);
    KZ::requireBytes(archive, static_cast<uint64_t>(numBottoms), 1);
    for (int i = 0; i < numBottoms; ++i) {
        std::string name;
        archive& name;
        const auto found = byName.find(name);
        layer->addBottomLayer(found == byName.end() ? KZ::SharedPtr<BaseLayer>() : found->second);
    }
    // Only now: a layer that held itself would never be freed.
    byName[layer->name()] = layer;
    archive& SEPARATOR;
    return layer;
}

}  // namespace

KZ::ArchiveI& operator&(KZ::ArchiveI& archive, NnDetector& network) {
    std::string version;
    archive& version& SEPARATOR;
    archive.setVersion(version);
    KZ_ASSERT(version <= NN_CLASSIFIER_VERSION, "Wrong version number " << version);
    NnDetector read;
    archive& read.name_& SEPARATOR;
    KZ::Size size;
    archive& size& SEPARATOR;
    KZ_ASSERT_GE(size.width, 0);
    KZ_ASSERT_GE(size.height, 0);
    KZ_ASSERT_LT(static_cast<int64_t>(size.width) * size.height, LARGEST_AREA);
    int mode = KZ::COLOR_MODE_MONO;
    if (!(version < "Version 8")) archive& mode& SEPARATOR;
    KZ_ASSERT(mode >= KZ::COLOR_MODE_UNDEFINED && mode < KZ::COLOR_MODE_END,
              "unknown color mode " << mode);
    int numLayers = 0;
    archive& numLayers& SEPARATOR;
    KZ_ASSERT_GE(numLayers, 0);
    KZ::requireBytes(archive, static_cast<uint64_t>(numLayers), SMALLEST_LAYER);
    LayersByName byName;
    for (int i = 0; i < numLayers; ++i) read.network_.push_back(readLayer(archive, byName));

    // Everything is read: only now does the object change. What files do not store goes back to its
    // default; the outputs stay.
    network.name_ = read.name_;
    network.size_ = size;
    network.releaseLayers();
    network.network_ = read.network_;
    network.inputColorMode_ = static_cast<KZ::ColorMode>(mode);
    network.meanValues_.assign(KZ::depth(network.inputColorMode_), 0);
    network.multiplier_ = read.multiplier_;
    network.samplewiseMean_ = read.samplewiseMean_;
    network.transpose_ = read.transpose_;
    network.trainLog_ = read.trainLog_;
    return archive;
}
