#include "NnDetector.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "KZ_Assert.h"
#include "KZ_Check.h"
#include "KZ_Stream.h"
#include "KZ_Types.h"

void NnDetector::addLayer(const KZ::SharedPtr<BaseLayer>& layer) {
    KZ_ASSERT(size_ == KZ::Size(), "size must be inicialized after");
    network_.push_back(layer);
    outputLayers_.push_back(true);
}

void NnDetector::setSize(const KZ::Size& patternSize) {
    KZ_ASSERT(patternSize.area(), "pattern can't be empty");
    size_ = patternSize;
    updateOutputLayers();
}

NnDetector& NnDetector::operator=(const NnDetector& other) {
    if (this == &other) return *this;
    inputColorMode_ = other.inputColorMode_;
    inputBlob_ = other.inputBlob_;
    name_ = other.name_;
    trainLog_ = other.trainLog_;
    size_ = other.size_;
    multiplier_ = other.multiplier_;
    transpose_ = other.transpose_;
    meanValues_ = other.meanValues_;
    samplewiseMean_ = other.samplewiseMean_;
    releaseLayers();
    network_ = other.network_;
    outputLayers_ = other.outputLayers_;
    automaticOutputs_ = other.automaticOutputs_;
    singleOutput_ = other.singleOutput_;
    return *this;
}

void NnDetector::reset() {
    size_ = KZ::Size();
    releaseLayers();
    outputLayers_.clear();
}

// From the last one on: each holds those below it, and a long chain that hung on its last layer
// would take a call a layer to fall.
void NnDetector::releaseLayers() {
    while (!network_.empty()) network_.pop_back();
}

void NnDetector::setInputColorMode(const KZ::ColorMode& mode) {
    inputColorMode_ = mode;
    meanValues_.resize(KZ::depth(mode), 0);
}

void NnDetector::setMeanValues(const std::vector<float>& meanValues) {
    meanValues_ = meanValues;
    KZ_ASSERT_EQ((KZ::uint)KZ::depth(inputColorMode_), meanValues_.size());
}

void NnDetector::joinLayers() {
    for (size_t i = 1; i < network_.size(); ++i) network_[i]->addBottomLayer(network_[i - 1]);
}

void NnDetector::setOutputLayers(const std::vector<std::string>& names) {
    automaticOutputs_ = false;
    outputLayers_.assign(network_.size(), false);
    int count = 0;
    for (size_t i = 0; i < network_.size(); ++i) {
        if (std::find(names.begin(), names.end(), network_[i]->name()) == names.end()) continue;
        outputLayers_[i] = true;
        ++count;
    }
    singleOutput_ = count == 1;
}

void NnDetector::updateOutputLayers() {
    if (!automaticOutputs_) return;
    std::set<std::string> feeding;
    for (const auto& layer : network_) {
        for (const std::string& bottom : layer->getBottomLayersName()) feeding.insert(bottom);
    }
    const size_t count = std::min(network_.size(), outputLayers_.size());
    for (size_t i = 0; i < count; ++i) {
        if (!outputLayers_[i]) continue;
        // Activations work in place: the layer below holds the same memory already.
        const std::string type = network_[i]->type();
        const bool activation = type == "ReluLayer" || type == "PReluLayer";
        if (activation || feeding.count(network_[i]->name()) != 0) outputLayers_[i] = false;
    }
}

const KZ::Blob& NnDetector::detect(const KZ::Image& image) const {
    KZ_ASSERT_GT(network_.size(), 0);
    KZ::checkColorMode(image, inputColorMode_);
    convert(image, inputBlob_, 0, 1);
    return detect(inputBlob_);
}

const KZ::Blob& NnDetector::detect(const std::vector<KZ::Image>& images) const {
    KZ_ASSERT_GT(network_.size(), 0);
    const int count = static_cast<int>(images.size());
    for (int i = 0; i < count; ++i) convert(images[static_cast<size_t>(i)], inputBlob_, i, count);
    return detect(inputBlob_);
}

const KZ::Blob& NnDetector::detect(KZ::Blob& blob) const {
    KZ_ASSERT_GT(network_.size(), 0);
    network_[0]->setBlob(blob);
    for (size_t i = 0; i < network_.size(); ++i) {
        network_[i]->forward();
        if (singleOutput_ && i < outputLayers_.size() && outputLayers_[i])
            return network_[i]->getBlob();
    }
    return network_.back()->getBlob();
}

void NnDetector::convert(const KZ::Image& image, KZ::Blob& blob, int num, int maxNum) const {
    if (samplewiseMean_) addMeans(image);
    const int width = image.width(), height = image.height(), depth = image.depth();
    KZ_ASSERT_GE(meanValues_.size(), (size_t)depth);
    if (transpose_) {
        blob.init(maxNum, depth, width, height);
    } else {
        blob.init(maxNum, depth, height, width);
    }
    for (int c = 0; c < depth; ++c) {
        const float mean = meanValues_[static_cast<size_t>(c)];
        float* plane = blob.data(num, transpose_ ? depth - 1 - c : c, 0, 0);
        const int stepX = transpose_ ? height : 1, stepY = transpose_ ? 1 : width;
        for (int y = 0; y < height; ++y) {
            const unsigned char* row = image.data(0, y) + c;
            float* target = plane + y * stepY;
            for (int x = 0; x < width; ++x) {
                target[x * stepX] = (row[x * depth] - mean) * multiplier_;
            }
        }
    }
}

void NnDetector::addMeans(const KZ::Image& image) const {
    const int depth = image.depth();
    meanValues_.resize(static_cast<size_t>(depth), 0);
    for (int y = 0; y < image.height(); ++y) {
        const unsigned char* row = image.data(0, y);
        for (int i = 0; i < image.width() * depth; ++i) {
            meanValues_[static_cast<size_t>(i % depth)] += row[i];
        }
    }
    const float area = static_cast<float>(image.width() * image.height());
    for (float& mean : meanValues_) mean /= area;
}

void NnDetector::prepareOutputs() {
    if (!outputLayers_.empty()) return;
    outputLayers_.assign(network_.size(), true);
    updateOutputLayers();
}

std::vector<KZ::Blob> NnDetector::getOutputBlobs() {
    prepareOutputs();
    std::vector<KZ::Blob> blobs;
    for (size_t i = 0; i < network_.size(); ++i) {
        if (i < outputLayers_.size() && outputLayers_[i]) blobs.push_back(network_[i]->getBlob());
    }
    return blobs;
}

std::vector<std::string> NnDetector::getOutputNames() {
    prepareOutputs();
    std::vector<std::string> names;
    for (size_t i = 0; i < network_.size(); ++i) {
        if (i < outputLayers_.size() && outputLayers_[i]) names.push_back(network_[i]->name());
    }
    return names;
}

float NnDetector::getAccuracy(const std::vector<float>& results, unsigned int classNumber) {
    KZ_ASSERT(classNumber < results.size(), "incorrect class number " << classNumber);
    float sum = 0;
    for (const float result : results) sum += std::exp(result);
    return std::exp(results[classNumber]) / sum;
}

void NnDetector::prune() {
    for (const auto& layer : network_) layer->prune();
}

NnDetector NnDetector::clone() const {
    NnDetector copy(*this);
    copy.inputBlob_ = KZ::Blob();
    // Not by name: layers of a file may share one.
    std::map<const BaseLayer*, KZ::SharedPtr<BaseLayer>> clones;
    for (auto& layer : copy.network_) {
        const KZ::SharedPtr<BaseLayer> original = layer;
        layer = original->clone();
        clones[original.get()] = layer;
    }
    for (size_t i = 0; i < network_.size(); ++i) {
        const KZ::SharedPtr<BaseLayer>& pLayer = copy.network_[i];
        for (const auto& bottom : network_[i]->bottomLayers()) {
            pLayer->addBottomLayer(clones[bottom.get()]);
        }
        KZ_ASSERT((pLayer->getBottomLayersName()) == (network_[i]->getBottomLayersName()),
                  "layer " << pLayer->name());
    }
    return copy;
}

bool NnDetector::operator==(const NnDetector& other) const {
    const bool sameFrame = inputColorMode_ == other.inputColorMode_ && name_ == other.name_ &&
                           size_ == other.size_ && network_.size() == other.network_.size();
    if (!sameFrame) return false;
    for (size_t i = 0; i < network_.size(); ++i) {
        if (network_[i]->type() != other.network_[i]->type()) return false;
        if (*network_[i] != *other.network_[i]) return false;
    }
    return true;
}
