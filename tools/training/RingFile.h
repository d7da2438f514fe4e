#pragma once

#include <map>
#include <string>
#include <vector>

#include "Boosting.h"
#include "Window.h"

namespace training {

/// One stage: its weak classifiers in the order RMCT, Haar, HOG.
struct StageContent {
    std::vector<WeakClassifier> weak;
    int threshold = 0;
};

struct CascadeContent {
    WindowShape shape;
    std::vector<StageContent> stages;
};

/// What a `.ring` file holds.
struct RingContent {
    std::string name;
    std::vector<CascadeContent> cascades;
    std::map<std::string, std::string> config;
    std::string log;  ///< without the line "log" at its head
};

/// Throws Failure when the file cannot be opened or is no ring.
RingContent readRing(const std::string& path);
/// Writes beside `path` and renames, so that the file is never half written. Throws Failure.
void writeRing(const RingContent& ring, const std::string& path);
/// Writes the source that builds the ring of the file `ring` inside the library, likewise.
void writeSource(const std::string& ring, const std::string& path);

}  // namespace training
