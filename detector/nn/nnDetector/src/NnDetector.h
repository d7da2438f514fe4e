#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "BaseLayer.h"
#include "ConcatLayer.h"
#include "ContrastiveLayer.h"
#include "ConvolutionLayer.h"
#include "DataLayer.h"
#include "DeConvolutionLayer.h"
#include "EltwiseLayer.h"
#include "FlattenLayer.h"
#include "HeatMapPosition.h"
#include "InnerProductLayer.h"
#include "KZ_Archive.h"
#include "KZ_Blob.h"
#include "KZ_Image.h"
#include "KZ_SharedPtr.h"
#include "LinearTransformLayer.h"
#include "LocallyConnectedLayer.h"
#include "PReluLayer.h"
#include "PoolingLayer.h"
#include "PredictBoxLayer.h"
#include "ReluLayer.h"
#include "ReshapeLayer.h"
#include "SigmoidLayer.h"
#include "SliceLayer.h"
#include "SoftmaxLayer.h"
#include "SubtractLayer.h"
#include "TangensLayer.h"

/// The newest format of network files, and the one that is written.
extern const char* const NN_CLASSIFIER_VERSION;

/// Turns a layer name into an identifier: every '-' and '>' becomes '_'.
std::string fixName(const std::string& name);

/// A whole network: layers in order of execution, and how an image becomes its input. A network is
/// a run context: `detect` writes the layers' blobs, so one thread runs it at a time (see `clone`).
/// After the first run of a size, a run does not allocate.
class NnDetector {
public:
    // Building. The size comes last and marks the network as complete.
    void addLayer(const KZ::SharedPtr<BaseLayer>& layer);
    void setSize(const KZ::Size& patternSize);
    const KZ::Size& getSize() const { return size_; }
    bool isLoaded() const { return size_.area() != 0; }
    /// Drops size, layers and outputs; the other settings stay.
    void reset();
    void setName(const std::string& name) { name_ = name; }
    const std::string& getName() const { return name_; }
    /// Free text of the training; no run reads it.
    void setTrainLog(const std::string& log) { trainLog_ = log; }
    const std::string& getTrainLog() const { return trainLog_; }
    /// Mode of the input images; the mean values follow its depth.
    void setInputColorMode(const KZ::ColorMode& mode);
    KZ::ColorMode getInputColorMode() const { return inputColorMode_; }
    /// Factor of each sample after the mean is taken away; 1/256 by default.
    void setMultiplier(float multiplier) { multiplier_ = multiplier; }
    float getMultiplier() const { return multiplier_; }
    /// Adds each image's own means to the mean values before its conversion. They are never
    /// cleared.
    void setSamplewiseMeanImageSubtraction(bool on) { samplewiseMean_ = on; }
    bool getSamplewiseMeanImageSubtraction() const { return samplewiseMean_; }
    /// Exchanges rows and columns on input and reverses the channels.
    void setTranspose(bool on) { transpose_ = on; }
    bool getTranspose() const { return transpose_; }
    /// One value per channel of the input mode, else an assertion.
    void setMeanValues(const std::vector<float>& meanValues);
    const std::vector<float>& getMeanValues() const { return meanValues_; }
    /// Gives each layer the one before it as a bottom.
    void joinLayers();
    /// Makes the layers of these names the outputs; a run ends at a single one.
    void setOutputLayers(const std::vector<std::string>& names);
    /// Clears the output flag of layers that feed others, and of activations.
    void updateOutputLayers();

    // Running. The result is the top of the last layer that ran, valid until the next run.
    const KZ::Blob& detect(const KZ::Image& image) const;
    const KZ::Blob& detect(const std::vector<KZ::Image>& images) const;
    const KZ::Blob& detect(KZ::Blob& blob) const;
    /// Writes an image of 8-bit channels as item `num` of a blob of `maxNum` items.
    void convert(const KZ::Image& image, KZ::Blob& blob, int num, int maxNum) const;
    /// The output layers' tops (shared memory) and names, in network order.
    std::vector<KZ::Blob> getOutputBlobs();
    std::vector<std::string> getOutputNames();
    /// Softmax share of one class.
    static float getAccuracy(const std::vector<float>& results, unsigned int classNumber);
    const std::vector<KZ::SharedPtr<BaseLayer>>& getNetwork() const { return network_; }
    void prune();

    NnDetector() = default;
    ~NnDetector() { releaseLayers(); }
    // A copy shares the layers, so the two are one run context.
    NnDetector(const NnDetector& other) = default;
    NnDetector& operator=(const NnDetector& other);
    /// Shares no memory that a run writes: the copy may run on another thread.
    NnDetector clone() const;
    /// Mode, name, size and layers.
    bool operator==(const NnDetector& other) const;
    bool operator!=(const NnDetector& other) const { return !(*this == other); }

    /// Reads a network file; returns `isLoaded()`. A damaged file is an assertion, and the network
    /// must then be discarded.
    bool load(const std::string& path);
    /// Writes generated source that builds this network from constant tables.
    void saveToCpp(const std::string& fileName) const;
    void saveToCpp(std::ostream& stream, const std::string& functionName) const;

private:
    friend KZ::ArchiveO& operator&(KZ::ArchiveO& archive, const NnDetector& network);
    friend KZ::ArchiveI& operator&(KZ::ArchiveI& archive, NnDetector& network);

    void addMeans(const KZ::Image& image) const;
    void prepareOutputs();
    void releaseLayers();

    KZ::ColorMode inputColorMode_ = KZ::COLOR_MODE_MONO;
    mutable KZ::Blob inputBlob_;
    std::string name_;
    std::string trainLog_;
    KZ::Size size_;
    float multiplier_ = 0.00390625f;
    bool transpose_ = false;
    mutable std::vector<float> meanValues_ = {0};
    bool samplewiseMean_ = false;
    std::vector<KZ::SharedPtr<BaseLayer>> network_;
    std::vector<bool> outputLayers_;
    bool automaticOutputs_ = true;
    bool singleOutput_ = false;
};

/// The file form.
KZ::ArchiveO& operator&(KZ::ArchiveO& archive, const NnDetector& network);
KZ::ArchiveI& operator&(KZ::ArchiveI& archive, NnDetector& network);
