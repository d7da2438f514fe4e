#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "PalmFrame.h"
#include "PhotoStore.h"

namespace evaluate {

/// The name of a kind in manifests and reports, and back. `kindOf` throws Failure.
const char* nameOf(training::Kind kind);
training::Kind kindOf(const std::string& name);

/// What identifies an exhibit in the reports of two runs: kind, picture and row.
std::string keyOf(training::Kind kind, const std::string& image, int number);

/// A labelled thing that is shown to the engine.
struct Exhibit {
    training::Kind kind = training::Kind::SCENE;
    int photo = 0;
    int number = 0;             ///< of the row among those of its picture
    training::ManifestRow row;  ///< with a pose, but for scenes
    uint64_t seed = 0;          ///< by what it is, whatever else is shown

    std::string key() const { return keyOf(kind, row.image, number); }
};

/// What is shown of one split: every palm within the limits of tilt; the pictures with nothing but
/// other hands, each at a size at which the detector would answer for a palm; the pictures with
/// nothing but scenes. Each is set into a frame of 320 by 240.
class Exhibits {
public:
    /// Throws Failure when the split has no scenes, which the others are set before.
    Exhibits(const training::PhotoStore& store, const std::string& split);

    /// All of a kind: PALM, HAND or SCENE, in the order of the manifest.
    const std::vector<Exhibit>& of(training::Kind kind) const;

    /// Draws the frame; says where the hand stands, unless it is a scene.
    std::optional<ShownPalm> draw(const Exhibit& exhibit, cv::Mat& frame) const;
    /// Where the picture's other palms stand, and its unclear hands, when the exhibit's hand stands
    /// at `shown`.
    std::vector<ShownPalm> others(const Exhibit& exhibit, const ShownPalm& shown) const;

    /// Mean grey level of the hand's box, or of the whole picture where there is none.
    double brightness(const Exhibit& exhibit) const;

private:
    void add(training::Kind kind, int photo, int number);

    const training::PhotoStore& store_;
    std::vector<Exhibit> palms_, hands_, scenes_;
};

/// Every `every`-th and of those at most `limit` (0: all).
std::vector<Exhibit> thinned(const std::vector<Exhibit>& exhibits, int every, int limit);

}  // namespace evaluate
