#include "RingFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "Failure.h"
#include "LibraryRing.h"

namespace training {

namespace {

std::array<int8_t, 256> votesOf(const signed char* data) {
    std::array<int8_t, 256> votes;
    std::copy(data, data + votes.size(), votes.begin());
    return votes;
}

StageContent stageOf(const StrongClassifier& stage) {
    StageContent content;
    content.threshold = stage.threshold;
    for (const WeakClassifierRmct& rmct : stage.rmctClassifiers()) {
        WeakClassifier weak;
        weak.feature.x = rmct.x;
        weak.feature.y = rmct.y;
        weak.votes = votesOf(rmct.getData());
        content.weak.push_back(weak);
    }
    for (const WeakClassifierHaar& haar : stage.haarClassifiers()) {
        WeakClassifier weak;
        weak.feature.kind = Feature::HAAR;
        weak.feature.outer = haar.allRect;
        weak.feature.inner = haar.posRect;
        weak.votes = votesOf(haar.getData());
        content.weak.push_back(weak);
    }
    for (const WeakClassifierHog& hog : stage.hogClassifiers()) {
        WeakClassifier weak;
        weak.feature.kind = Feature::HOG;
        weak.feature.outer = hog.block;
        weak.feature.inner = hog.cell;
        weak.feature.sector = hog.sector;
        weak.votes = votesOf(hog.getData());
        content.weak.push_back(weak);
    }
    return content;
}

/// Calls `write` with a path of the same name in a folder of its own, then renames.
template <typename Write>
void writeBeside(const std::filesystem::path& path, const Write& write) {
    const std::filesystem::path folder = path.string() + ".new";
    std::error_code error;
    std::filesystem::create_directory(folder, error);
    const std::filesystem::path beside = folder / path.filename();
    if (error || !std::ofstream(beside)) {
        throw Failure(path.string() +
                      ": cannot be written; check that the folder exists and is yours");
    }
    write(beside.string());
    std::filesystem::rename(beside, path, error);
    if (error) {
        throw Failure(path.string() + ": cannot be replaced; the new content is " +
                      beside.string());
    }
    std::filesystem::remove(folder, error);
}

}  // namespace

RingContent readRing(const std::string& path) {
    const bool isRing = std::filesystem::path(path).extension() == ".ring";
    if (!isRing) throw Failure(path + ": give a .ring file");
    if (!std::ifstream(path)) throw Failure(path + ": cannot be opened; give a .ring file");
    ClassifierRing ring(path);
    if (ring.getNumClassifiers() == 0) {
        throw Failure(path + ": holds no cascades; is it a .ring file of this program?");
    }
    RingContent content;
    content.name = ring.name;
    content.config = ring.config;
    content.log = ring.log;
    for (int i = 0; i < ring.getNumClassifiers(); ++i) {
        const CascadedClassifier& cascade = ring.baseClassifier(i);
        CascadeContent copy;
        copy.shape = {"r" + std::to_string(i), cascade.monoSize, cascade.angle};
        for (const StrongClassifier& stage : cascade.strongClassifiers) {
            copy.stages.push_back(stageOf(stage));
        }
        content.cascades.push_back(copy);
    }
    return content;
}

void writeRing(const RingContent& content, const std::string& path) {
    LibraryRing library(content);
    writeBeside(path, [&](const std::string& beside) { library.ring().save(beside); });
}

void writeSource(const std::string& ring, const std::string& path) {
    LibraryRing library(readRing(ring));
    writeBeside(path, [&](const std::string& beside) { library.ring().saveHeader(beside); });
}

}  // namespace training
