#pragma once

#include <string>

#include "KZ_BaseRect.h"
#include "KZ_Image.h"
#include "KZ_RmctPyramid.h"
#include "LocationState.h"

/// The image products of a frame that detectors read, each computed once a frame and only on the
/// rectangle that the detector tree asked for. One record lives as long as its pipeline, which
/// makes `previousMono` a state across frames.
struct DetectorData {
    std::string name;             ///< of the frame; assigned by the owner
    std::string inputFramePart;   ///< frame parameter "input-frame-part" of this frame
    std::string outputFramePart;  ///< frame parameter "output-frame-part" of this frame
    int frameState = 0;

    KZ::Image inputImage;    ///< reference to the input of an engine that prepares frames itself
    KZ::Image bgr;           ///< reference to a BGR input; not created for a mono input
    KZ::Image rgb;           ///< made by `getImage`
    KZ::Image mono;          ///< own pixels
    KZ::Image previousMono;  ///< own pixels: `mono` of the frame before
    KZ::Image integral;      ///< of `mono`; not created when the frame needs no products
    KZ::RmctPyramid rmctPyramid;

    int scale = 1;               ///< input pixels per `mono` pixel
    int preprocessingAngle = 0;  ///< degrees by which the input was turned: a multiple of 90
    bool flipped = false;        ///< the input was mirrored

    /// No image, and a pyramid of 20 layers from zoom 1.
    DetectorData();

    /// A pyramid of `numLayers` layers (at least 1) from zoom `startZoom` (at least 1), each 1.2
    /// times smaller than the one before.
    void setPyramidParameters(float startZoom, int numLayers);
    /// Takes a MONO or BGR frame into `mono` and the frame before into `previousMono`; on the
    /// first frame the two are equal. Another mode is an assertion.
    void computeBase(const KZ::Image& image);
    /// `computeBase`, then the products on `rect`, which must lie inside `image`: otherwise an
    /// assertion, before anything changes.
    void compute(const KZ::Image& image, const KZ::Rect& rect);
    /// Integral image and pyramid of the `mono` at hand, on `rect` in its pixels. An empty
    /// rectangle leaves the frame without products.
    void compute(const KZ::Rect& rect);
    /// Drops the images and what came with the frame.
    void reset();
    /// The frame as BGR (not created for a mono input), MONO, or RGB (converted at each call; needs
    /// a BGR input). Another mode is an assertion.
    const KZ::Image& getImage(KZ::ColorMode mode);
    /// Writes the integral image and the pyramid's layers into the folder `dir`.
    void save(const std::string& dir, const std::string& extension);
    /// Takes a location in `mono` back to the input frame: undoes mirroring, turning and scale.
    LocationState getInputLocationState(const LocationState& location);

private:
    void resetProducts();
};
