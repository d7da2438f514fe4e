#pragma once

#include <opencv2/core.hpp>
#include <vector>

#include "PhotoStore.h"
#include "Random.h"

namespace training {

/// Where a labelled hand stands in a frame.
struct HandZone {
    cv::Point2d centre;
    double extent = 0;  ///< longer side of the hand's box, frame pixels

    /// A window of this centre and width shows this hand rather than something beside it.
    bool shows(const cv::Point2d& windowCentre, double windowWidth) const;
};

/// Camera frames in which every window, or every window on a labelled hand, is no palm.
class NegativeFrames {
public:
    static constexpr int WIDTH = 320, HEIGHT = 240;

    /// Uses the pictures of `split` alone: those labelled `scene` throughout, and those labelled
    /// `hand` throughout. Pictures with a palm or an unclear hand take no part. Throws Failure
    /// when a kind is missing.
    NegativeFrames(const PhotoStore& store, const std::string& split);

    /// Pictures without hands whose sources come with a licence.
    std::vector<int> licensedScenes() const;

    /// A random look at a random scene.
    void drawScene(Random& random, cv::Mat& frame) const;
    /// Other hands: a photograph with labelled hands, or crops of hands laid over a scene. The
    /// picture beside the zones may hold an unlabelled palm.
    std::vector<HandZone> drawHands(Random& random, cv::Mat& frame) const;

private:
    std::vector<HandZone> drawPosedHands(Random& random, cv::Mat& frame) const;
    std::vector<HandZone> drawCroppedHands(Random& random, cv::Mat& frame) const;

    const PhotoStore& store_;
    std::vector<int> scenes_, posedHands_, croppedHands_;
};

}  // namespace training
