#pragma once

#include <vector>

#include "DetectorView.h"
#include "PhotoStore.h"
#include "Random.h"
#include "Window.h"

namespace training {

/// Shows labelled palms as the detector would meet them: turned to a cascade's angle, at the size
/// of a pyramid layer, before a background where the photograph ends, through frame intake, zoom
/// and pyramid. Not for two threads at once.
class PositiveRenderer {
public:
    /// Degrees around a cascade's angle at which palms are shown.
    static constexpr double ANGLE_SPREAD = 20;
    /// Of their exposure: thresholds that let the hardest palms pass would let much else pass, and
    /// cost time.
    static constexpr double HARDSHIP = 0.3;
    /// How often a sleeve covers the wrist, and how often a hand before plain ground stands before
    /// the scene without that ground. Other hands look alike in this, lest it tell palms apart.
    static constexpr double SLEEVES = 0.06, CUT_OUT = 0.5;
    /// Where the scan settles beside the place that it learnt, in palm widths of a right hand and
    /// as logarithm of the window's size (measured by evaluate): shown palms stand as far on the
    /// other side, so that reports are centred.
    static constexpr double SETTLES_RIGHT = -0.045, SETTLES_DOWN = -0.085, SETTLES_LARGER = -0.06;
    /// Layers on which palms are shown: palms 16 to 58 frame pixels wide.
    static constexpr int LAYERS = 8;

    /// `backgrounds` are photos without hands.
    PositiveRenderer(const PhotoStore& store, const std::vector<int>& backgrounds);

    /// One random view of the palm `row` of photo `photo`; left hands come out as right ones.
    Window render(int photo, const ManifestRow& row, const WindowShape& shape, Random& random);

private:
    void drawBackground(const cv::Mat& photo, Random& random);

    const PhotoStore& store_;
    const std::vector<int>& backgrounds_;
    cv::Mat frame_;
    DetectorView view_;
    KZ::RmctPyramid pyramid_;
};

}  // namespace training
