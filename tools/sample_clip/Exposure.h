#pragma once

#include <opencv2/core.hpp>
#include <string>

#include "HandRenderer.h"
#include "HandTruth.h"
#include "Room.h"
#include "Timeline.h"

namespace sample {

/// What a frame shows. `IGNORE` is a hand on its way from one state to another, or partly outside
/// the picture: neither an error to report nor to miss.
enum class State { NONE, PALM, BACK, FIST, MOVING, IGNORE };
std::string nameOf(State state);

/// The truth of a frame. The hand's numbers hold in the middle of the exposure, and only where
/// `hand` is set.
struct FrameTruth {
    State state = State::NONE;
    bool hand = false;
    bool left = false;
    hand::HandTruth where;
};

/// Takes the frames of the clip one by one, as a camera would.
class Exposure {
public:
    explicit Exposure(const hand::HandMesh& mesh);

    /// The picture that the frame `index` shows, 8-bit BGR, 640 by 480.
    cv::Mat frame(int index) const;
    FrameTruth truth(int index) const;

private:
    hand::PosedHand poseAt(const Appearance& appearance) const;
    hand::HandLayer handLayer(double start) const;
    cv::Mat roomPicture(double start) const;

    const hand::HandMesh& mesh_;
    hand::Camera camera_;
    hand::Surface rightSurface_, leftSurface_;
    Room room_;
};

}  // namespace sample
