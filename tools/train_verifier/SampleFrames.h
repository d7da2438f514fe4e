#pragma once

#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "NegativeFrames.h"
#include "PhotoStore.h"
#include "Random.h"

namespace training {

/// A hand in a frame. Lengths are frame pixels, angles degrees as in the manifest.
struct ShownHand {
    Kind kind = Kind::HAND;  ///< PALM, HAND or IGNORE
    HandZone zone;           ///< of its box
    cv::Point2d centre;      ///< where the detection window's centre belongs
    double palmWidth = 0;    ///< a guess for hands that the manifest gives no numbers for
    double angle = 0;
    bool mirrored = false;  ///< looks like a left hand
};

/// A camera frame with all that is known to be in it.
struct ShownFrame {
    cv::Mat pixels;
    std::vector<ShownHand> hands;
    bool isCrops = false;  ///< crops laid over a scene
    bool isScene = false;  ///< shows no hand anywhere; else there may be more than `hands`
};

/// Some sources, and of those whose pictures each show another person a share of the pictures, are
/// not trained on until the progress and the thresholds have been measured on them.
bool isHeldOut(const Photo& photo);

/// Camera frames made of the training pictures that are held out, or of those that are not.
class SampleFrames {
public:
    static constexpr int WIDTH = NegativeFrames::WIDTH, HEIGHT = NegativeFrames::HEIGHT;

    /// Throws Failure when a kind of picture is missing.
    SampleFrames(const PhotoStore& store, bool heldOut);

    /// A random look at a random scene.
    void drawScene(Random& random, ShownFrame& frame) const;
    /// A photograph with labelled hands before a scene, seen from a random distance; the one it
    /// was chosen for is a palm with the given probability.
    void drawPhoto(Random& random, double palmShare, ShownFrame& frame) const;
    /// Several crops of hands laid over a scene; each is a palm with the given probability.
    void drawCrops(Random& random, double palmShare, ShownFrame& frame) const;

private:
    struct Hand {
        int photo;
        const ManifestRow* row;
    };
    /// Hands of one source. Sources are chosen by the root of their size, so that a few large ones
    /// do not make all of the training.
    struct Source {
        std::string name;
        std::vector<Hand> hands;
        double weight = 0;
    };

    void addHands(int photo);
    void drawBackground(const std::vector<int>& scenes, Random& random, cv::Mat& pixels) const;
    /// Crops without a hand, lest their edges give palms away.
    Hand pieceOfScene(Random& random) const;
    void drawCrop(const Hand& hand, const cv::Rect& cell, Random& random, ShownFrame& frame) const;

    const PhotoStore& store_;
    std::vector<int> scenes_, licensedScenes_;
    std::vector<Source> palms_, others_;  ///< in whole photographs
    std::vector<Hand> croppedPalms_, croppedOthers_;
};

}  // namespace training
