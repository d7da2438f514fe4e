#pragma once

#include <opencv2/core.hpp>

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

}  // namespace training
