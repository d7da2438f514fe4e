#pragma once

#include <functional>
#include <string>
#include <vector>

#include "EngineSession.h"
#include "PhotoStore.h"

/// One photograph that was shown, and what became of it.
struct ShownPhoto {
    training::Kind kind = training::Kind::SCENE;
    std::string image, source;
    double width = 0, angle = 0;  ///< of the hand: frame pixels and degrees
    EngineAnswer answer;
    bool onPalm = false;  ///< the answer lies on the labelled palm
};

/// Shows photographs of a split to the engine: every palm in range; the pictures with nothing but
/// other hands, each at a size at which the detector would answer for a palm; every scene.
class EngineEvaluation {
public:
    /// Throws Failure when the split has no scenes, which the others are set before.
    EngineEvaluation(const training::PhotoStore& store, const std::string& split);

    /// Every `stride`-th of one kind. `onShown` hears of each.
    std::vector<ShownPhoto> run(training::Kind kind, int stride, int frames,
                                const std::function<void(int done, int all)>& onShown);

private:
    struct Hand {
        int photo;
        training::ManifestRow row;
    };

    void addHand(int photo);
    ShownPhoto showHand(training::Kind kind, const Hand& hand, int index, int frames);
    ShownPhoto showScene(int photo, int index, int frames);

    const training::PhotoStore& store_;
    std::vector<Hand> palms_, others_;
    std::vector<int> scenes_;
    EngineSession session_;
};
