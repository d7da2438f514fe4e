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
    /// Layers on which palms are shown: palms 17 to 62 frame pixels wide.
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
