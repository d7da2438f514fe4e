#pragma once

#include <opencv2/core.hpp>
#include <optional>

#include "Random.h"

namespace training {

/// How a picture is laid into a frame. The steps, in order: mirror about the anchor, scale, turn,
/// tilt in depth, move the anchor to `position`.
struct Placement {
    cv::Point2d anchor;    ///< in the picture
    cv::Point2d position;  ///< of the anchor in the frame
    double scale = 1;      ///< frame pixels per picture pixel
    double aspect = 1;     ///< further horizontal stretch
    double turn = 0;       ///< degrees, counter-clockwise on the screen
    bool mirrored = false;
    cv::Point2d tilt;  ///< relative change of scale per frame pixel to the right and downward

    /// Picture to frame in homogeneous coordinates of pixel centres.
    cv::Matx33d matrix() const;
};

cv::Point2d transformed(const cv::Matx33d& matrix, const cv::Point2d& p);

/// Lays `photo` over `frame` (both 8-bit grey). Where the frame reaches beyond the picture it keeps
/// what it held, and over the last `feather` picture pixels the two fade into each other; with 0
/// the picture has to cover the frame.
/// `sharpness` is 1 for the resolution of the frame's pixels; up to 2 it leaves finer detail in,
/// which the sampling then folds, as cameras that skip pixels do. With a `matte` (the opacity of
/// each picture pixel) only what is opaque covers the frame; it needs a `feather`.
void paste(const cv::Mat& photo, const Placement& placement, double feather, double sharpness,
           cv::Mat& frame, const cv::Mat& matte = cv::Mat());

/// A sleeve of random grey over the wrist of the hand whose middle is at `hand`, its palm
/// `palmWidth` frame pixels wide, leaning by `angle` degrees.
void coverWrist(const cv::Point2d& hand, double palmWidth, double angle, Random& random,
                cv::Mat& frame);

/// A random part of `scene`, mirrored or turned by quarters, that fills `frame`. It is shrunk by
/// no more than what fits, and enlarged at most `maxEnlargement` times.
void fillWithScene(const cv::Mat& scene, double maxEnlargement, Random& random, cv::Mat& frame);

/// The middle of `scene`, at the scale at which it just covers `frame`.
void coverWithScene(const cv::Mat& scene, cv::Mat& frame);

/// Light from one side: it fades along one direction from full to `darkest`.
struct SideLight {
    double direction = 0;  ///< radians
    double darkest = 1;    ///< share of the light that is left at the far end
    double middle = 0;     ///< where half of it is gone, in parts of the picture from its middle
    double steepness = 1;  ///< 1 over the part of the picture that the fading takes

    static SideLight draw(Random& random);
    /// Share of the light at (x, y), both -0.5 to 0.5 from edge to edge.
    double at(double x, double y) const;
};

/// What light, lens and sensor do to a frame, in this order.
struct Exposure {
    std::optional<SideLight> sideLight;
    double gamma = 1;
    double contrast = 1;    ///< about the frame's mean
    double brightness = 0;  ///< grey levels
    double blur = 0;        ///< standard deviation in frame pixels
    cv::Point2d motion;     ///< way of the hand during the exposure, in frame pixels
    double noise = 0;       ///< standard deviation in grey levels
    int jpegQuality = 0;    ///< 0: not compressed

    /// `hardship` scales how often light comes from one side or is flat, the hand moves, and the
    /// frame is compressed: 1 is about one frame in eight each.
    static Exposure draw(Random& random, double hardship);
};

void expose(const Exposure& exposure, Random& random, cv::Mat& frame);

}  // namespace training
