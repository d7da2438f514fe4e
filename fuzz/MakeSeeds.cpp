#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <list>
#include <string>
#include <vector>

#include "CallCodes.h"
#include "ClassifierRing.h"
#include "NnDetector.h"

// Writes the inputs from which a fuzzer starts where they are not text: FOLDER/<target>/<name>.

namespace {

std::string root;

std::string seedPath(const std::string& target, const std::string& name) {
    const std::filesystem::path folder = std::filesystem::path(root) / target;
    std::filesystem::create_directories(folder);
    return (folder / name).string();
}

// ---- Networks. Between them they have every layer.

using LayerPtr = KZ::SharedPtr<BaseLayer>;

KZ::Blob blob(int num, int channels, int height, int width) {
    KZ::Blob result;
    result.init(num, channels, height, width);
    for (int i = 0; i < result.size(); ++i)
        result.data()[i] = 0.25f * static_cast<float>(i % 7 - 3);
    return result;
}

/// Appends layers; each sees the one before it unless told otherwise.
class Builder {
public:
    Builder& then(BaseLayer* layer) {
        if (layers_.empty()) return add(layer, {});
        return add(layer, {layers_.size() - 1});
    }
    Builder& add(BaseLayer* layer, std::initializer_list<size_t> bottoms) {
        const LayerPtr holder(layer);
        for (const size_t i : bottoms) layer->addBottomLayer(layers_[i]);
        layers_.push_back(holder);
        network_.addLayer(holder);
        return *this;
    }
    void write(const std::string& name, const KZ::Size& size, KZ::ColorMode mode) {
        network_.setName(name);
        network_.setInputColorMode(mode);
        network_.setSize(size);
        KZ::Image blank(size, mode);
        zero(blank);
        network_.detect(blank);  // a seed that refuses to run would lead nowhere
        std::ofstream file(seedPath("network_file", name), std::ios::binary);
        KZ::ArchiveO archive(file);
        archive& network_;
    }

private:
    NnDetector network_;
    std::vector<LayerPtr> layers_;
};

void writeNetworks() {
    const KZ::Size SMALL(6, 5);
    Builder()
        .then(new DataLayer("data"))
        .then(new ConvolutionLayer(blob(2, 1, 3, 3), blob(1, 2, 1, 1), "conv", 2, 1))
        .then(new PReluLayer("prelu", blob(2, 1, 1, 1)))
        .then(new PoolingLayer(2, 1, "pool"))
        .then(new InnerProductLayer(blob(1, 1, 2, 8), blob(1, 1, 1, 2), "inner"))
        .then(new SoftmaxLayer("softmax", 0.5f))
        .write("classifier", SMALL, KZ::COLOR_MODE_MONO);
    Builder()
        .then(new DataLayer("data"))
        .add(new SliceLayer("first", 0, 3, 1), {0})
        .add(new SliceLayer("second", 1, 3, 1), {0})
        .add(new SubtractLayer("minus", blob(1, 1, 5, 6)), {1})
        .add(new EltwiseLayer("sum", EltwiseLayer::Operation::SUM, {1, -0.5f}), {2, 3})
        .then(new ReluLayer("relu"))
        .add(new ConcatLayer("concat"), {3, 5})
        .then(new SigmoidLayer("sigmoid"))
        .then(new TangensLayer("tangens"))
        .then(new FlattenLayer("flatten"))
        .write("branches", SMALL, KZ::COLOR_MODE_BGR);
    LinearTransformLayer* linear = new LinearTransformLayer("linear");
    linear->setTransform({2}, {0.5f});
    Builder()
        .then(new DataLayer("data"))
        .then(new DeConvolutionLayer(blob(1, 1, 2, 2), blob(1, 1, 1, 1), "deconv", 2))
        .then(new LocallyConnectedLayer(std::vector<KZ::Blob>(9, blob(1, 1, 2, 2)),
                                        std::vector<KZ::Blob>(9, blob(1, 1, 1, 1)), "local", 1))
        .then(new ReshapeLayer("reshape", KZ::Size(3, 3)))
        .then(linear)
        .add(new ContrastiveLayer("contrast"), {0, 0})
        .write("shapes", KZ::Size(2, 2), KZ::COLOR_MODE_MONO);
    HeatMapPosition* positions = new HeatMapPosition("positions", 1, 1);
    positions->setPatchSize(SMALL);
    positions->addHeatmap(SMALL, KZ::Rect(0, 0, 6, 5));
    Builder()
        .then(new DataLayer("data"))
        .then(positions)
        .write("heat_map", SMALL, KZ::COLOR_MODE_MONO);
    Builder()
        .then(new DataLayer("data"))
        .then(new ConvolutionLayer(blob(6, 1, 1, 1), blob(1, 6, 1, 1), "conv", 1, 0))
        .add(new SliceLayer("scores", 0, 3, 1), {1})
        .add(new PredictBoxLayer("boxes", 12, 2, -1, false), {2, 1})
        .write("boxes", SMALL, KZ::COLOR_MODE_MONO);
}

// ---- Rings

const signed char* votes(signed char value) {
    static std::list<std::vector<signed char>> tables;
    tables.emplace_back(256, value);
    return tables.back().data();
}

WeakClassifierHaar haar() {
    WeakClassifierHaar weak;
    weak.set(KZ::Rect(0, 0, 8, 8), KZ::Rect(2, 2, 6, 6), 0);
    weak.setData(votes(1));
    return weak;
}

WeakClassifierRmct rmct(signed char x, signed char y) {
    WeakClassifierRmct weak;
    weak.set(x, y);
    weak.setData(votes(1));
    return weak;
}

WeakClassifierHog hog() {
    WeakClassifierHog weak;
    weak.setBlock(KZ::Rect(1, 1, 9, 8));
    weak.setCell(KZ::Rect(2, 2, 6, 6));
    weak.setSector(4);
    weak.setData(votes(2));
    return weak;
}

void writeRing(const std::string& name, CascadedClassifier& cascade) {
    cascade.setMonoSize(KZ::Size(12, 10));
    std::vector<CascadedClassifier*> cascades(1, &cascade);
    ClassifierRing ring(cascades);
    ring.setName("palm");
    ring.setConfig({{"ringName", "palm"}, {"useHog", "1"}});
    ring.log = "log\ntrained in no time\n";
    ring.save(seedPath("ring_file", name + ".ring"));
}

void writeRings() {
    StrongClassifier rmctStage, mixedStage, haarStage;
    rmctStage.addRmctClassifier(rmct(3, 4));
    rmctStage.addRmctClassifier(rmct(11, 9));
    rmctStage.setThreshold(1);
    mixedStage.addRmctClassifier(rmct(0, 0));
    mixedStage.addHaarClassifier(haar());
    mixedStage.addHogClassifier(hog());
    mixedStage.setThreshold(2);
    haarStage.addHaarClassifier(haar());
    haarStage.setThreshold(1);

    CascadedClassifier stages, contrast;
    stages.addStrongClassifier(rmctStage);
    stages.addStrongClassifier(mixedStage);
    stages.setAngle(30);
    writeRing("stages", stages);
    contrast.addStrongClassifier(haarStage);
    contrast.setSymmetry(true);
    writeRing("contrast", contrast);
}

// ---- Calls

void writeCalls(const std::string& name, const std::vector<uint8_t>& bytes) {
    std::ofstream file(seedPath("call_sequence", name), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

void writeCallSequences() {
    using namespace fuzz;
    writeCalls("frames_of_64_by_48",
               {VI_SET_SIZE, 0,        9,         VI_INIT,          VI_SET_FITTING_FRAME,
                0,           9,        2,         VI_PROCESS_FRAME, VI_SET_FITTING_FRAME,
                0,           9,        4,         VI_SET_ROI,       1,
                1,           5,        5,         VI_PROCESS_FRAME, VI_GET_ALL,
                0,           VI_RESET, VI_RELEASE});
    writeCalls("odd_frame_of_format_35",
               {VI_SET_SIZE, 8, 9, VI_PROPERTY, 0, 6, VI_INIT, VI_SET_FRAME, 10, 11, 0, 2,
                VI_PROCESS_FRAME, VI_GET_ALL, 1});
    writeCalls("whole_frame_of_format_41",
               {VI_SET_SIZE, 0, 0, VI_PROPERTY, 0, 7, VI_PROPERTY, 1, 3, VI_INIT, VI_SET_FRAME, 0,
                0, 0, 2, VI_PROCESS_FRAME, VI_PROPERTY, 2, 4});
    writeCalls("grey_frames_with_a_region", {GRE_INIT,
                                             14,
                                             13,
                                             GRE_SET_PARAMETERS,
                                             4,
                                             8,
                                             GRE_SET_PARAMETERS,
                                             3,
                                             4,
                                             GRE_PROCESS_FRAME,
                                             2,
                                             GRE_SET_ROI,
                                             1,
                                             1,
                                             12,
                                             12,
                                             GRE_SET_CAMERA_ANGLE,
                                             10,
                                             GRE_PROCESS_FRAME,
                                             6,
                                             GRE_GET_ALL,
                                             0,
                                             GRE_RESET,
                                             GRE_RELEASE});
    writeCalls("moving_camera",
               {USE_SMOOTHING, 1, GRE_INIT, 11, 11, GRE_SET_CAMERA_ACCELERATION, 1, 2, 3,
                GRE_PROCESS_FRAME, 3, GRE_GET_ALL, 0, GRE_SET_CAMERA_FLIP, 1});
    writeCalls("palm_in_every_frame", {GRE_INIT,
                                       0,
                                       9,
                                       PALM_AT,
                                       8,
                                       9,
                                       7,
                                       7,
                                       3,
                                       USE_SMOOTHING,
                                       1,
                                       GRE_PROCESS_FRAME,
                                       1,
                                       GRE_PROCESS_FRAME,
                                       1,
                                       GRE_GET_ALL,
                                       0,
                                       PALM_AT,
                                       6,
                                       9,
                                       7,
                                       8,
                                       2,
                                       GRE_SET_ROI,
                                       1,
                                       1,
                                       8,
                                       7,
                                       GRE_PROCESS_FRAME,
                                       3,
                                       GRE_PROCESS_FRAME,
                                       3,
                                       GRE_PROCESS_FRAME,
                                       3,
                                       GRE_PROCESS_FRAME,
                                       3,
                                       GRE_PROCESS_FRAME,
                                       3,
                                       GRE_PROCESS_FRAME,
                                       3,
                                       GRE_PROCESS_FRAME,
                                       3,
                                       GRE_GET_ALL,
                                       0});
    writeCalls("stereo_with_texts", {VI_SET_SIZE,
                                     13,
                                     9,
                                     VI_SET_PARAMETER,
                                     2,
                                     1,
                                     VI_SET_TEXT,
                                     3,
                                     'l',
                                     'o',
                                     'g',
                                     1,
                                     'x',
                                     VI_INIT,
                                     VI_SET_FRAME_PARAMETER,
                                     7,
                                     21,
                                     VI_SET_FITTING_FRAME,
                                     13,
                                     9,
                                     8,
                                     VI_PROCESS_FRAME});
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    root = argv[1];
    writeNetworks();
    writeRings();
    writeCallSequences();
    return 0;
}
