#pragma once

#include <opencv2/core.hpp>
#include <optional>

#include "Random.h"

namespace training {

/// Light from one side: it fades along one direction from full to `darkest`.
struct SideLight {
    cv::Point2d towards{1, 0};  ///< unit vector: where it is bright
    double darkest = 1;         ///< share of the light that is left at the far end
    double middle = 0;     ///< where half of it is gone, in parts of the picture from its middle
    double steepness = 1;  ///< 1 over the part of the picture that the fading takes

    static SideLight draw(Random& random);
    /// Share of the light at (x, y), both -0.5 to 0.5 from edge to edge.
    double at(double x, double y) const;
};

/// What light, lens and sensor do to a frame, in this order.
struct Exposure {
    std::optional<SideLight> sideLight;
    double blur = 0;     ///< standard deviation in frame pixels
    cv::Point2d motion;  ///< way of the hand during the exposure, in frame pixels
    double gamma = 1;
    double contrast = 1;    ///< about the frame's mean
    double brightness = 0;  ///< grey levels
    double noise = 0;       ///< standard deviation in grey levels
    int jpegQuality = 0;    ///< 0: not compressed

    /// `hardship` scales how often light comes from one side or is flat, the hand moves, and the
    /// frame is compressed: 1 is about one frame in eight each.
    static Exposure draw(Random& random, double hardship);
};

/// `random` gives the noise; `frame` is 8-bit grey.
void expose(const Exposure& exposure, Random& random, cv::Mat& frame);

}  // namespace training
