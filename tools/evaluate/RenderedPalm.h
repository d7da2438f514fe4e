#pragma once

#include <array>
#include <cstdint>
#include <opencv2/core.hpp>
#include <vector>

#include "HandTruth.h"
#include "PalmFrame.h"

namespace evaluate {

/// How a rendered hand is shown. As it stands: an open palm, upright, in good light.
struct PalmView {
    float palmWidth = 40;  ///< pixels of a frame of 320 by 240, before any turning or tipping
    float lean = 0;        ///< degrees in the picture, positive counter-clockwise
    float turn = 0;        ///< degrees about the hand's length
    float tip = 0;         ///< degrees that the fingers are tipped away from the camera
    float together = 0;    ///< 0 fingers apart, 1 side by side
    float folded = 0;      ///< 0 fingers straight, 1 a fist

    bool sideLight = false;  ///< the key light comes from one side
    float ambient = 1;       ///< share that is left of the light from all around
    float behind = 0;        ///< brightness of the background in palms; 0: as the room is
    float motion = 0;        ///< way of the hand during the exposure, pixels
    float dimmed = 0;        ///< stops below good light
};

/// Whose hand it is and where.
struct PalmVariant {
    int tone = 0;  ///< of PalmStudio::TONES
    bool left = false;
    int background = 0;  ///< of PalmStudio::BACKGROUNDS; hands turn the other way on every second
    uint64_t seed = 0;   ///< of place, noise and direction of motion
};

struct RenderedPalm {
    cv::Mat frame;          ///< 8-bit grey, 320 by 240
    hand::HandTruth truth;  ///< measured in the picture, so that turning makes a palm narrow
    ShownPalm palm;         ///< the same place with the width that was asked for
};

/// Draws hands before drawn rooms as a small camera would take them. Equal arguments give equal
/// frames.
class PalmStudio {
public:
    static constexpr int TONES = 3, BACKGROUNDS = 2;

    /// Keeps a reference to the mesh.
    explicit PalmStudio(const hand::HandMesh& mesh);

    RenderedPalm take(const PalmView& view, const PalmVariant& variant) const;

private:
    hand::PosedHand pose(const PalmView& view, const PalmVariant& variant) const;
    hand::HandLayer expose(const PalmView& view, const PalmVariant& variant,
                           const hand::PosedHand& posed) const;

    const hand::HandMesh& mesh_;
    hand::Camera camera_;
    std::vector<hand::Surface> surfaces_;           ///< by tone
    std::array<cv::Mat, BACKGROUNDS> backgrounds_;  ///< linear light, 32-bit BGR
};

}  // namespace evaluate
