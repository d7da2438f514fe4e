#pragma once

#include <cstdint>
#include <memory>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "KZ_BasePoint.h"
#include "KZ_BaseSize.h"
#include "KZ_Image.h"
#include "KZ_RmctPyramid.h"

namespace training {

/// Geometry of one cascade of the ring.
struct WindowShape {
    std::string name;
    KZ::Size size;  ///< window in layer pixels
    int angle = 0;  ///< degrees at which the cascade expects the hand

    /// Window widths per palm width, the same for every cascade.
    static constexpr double PER_PALM = 35.0 / 15.0;
    /// Palm width in layer pixels that fits the window.
    double palmWidth() const { return size.width / PER_PALM; }
    /// Where the hand's middle belongs, in window pixels.
    KZ::Point centre() const { return KZ::Point(size.width / 2, size.height / 2); }
};

/// The number of layers and the step of the pyramid that the detector searches.
constexpr int PYRAMID_LAYERS = 20;
constexpr float PYRAMID_STEP = 1.2f;

/// All pixels that a cascade reads of one window.
struct Window {
    float zoom = 1;             ///< of the window's layer
    std::vector<uint8_t> rmct;  ///< codes, row by row without gaps
    std::vector<uint8_t> mono;  ///< layer pixels, likewise
    KZ::Size baseSize;
    std::vector<uint8_t> base;  ///< pixels of the view behind the window, likewise
};

/// Cuts the window whose left top pixel in layer `layer` is `corner`; it must lie in the layer,
/// and the layer must be computed. `view` is the picture that the pyramid was made of.
Window cutWindow(const KZ::Image& view, const KZ::RmctPyramid& pyramid, int layer,
                 const KZ::Point& corner, const KZ::Size& size);

}  // namespace training
