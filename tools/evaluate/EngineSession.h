#pragma once

#include <array>
#include <cstdint>
#include <opencv2/core.hpp>
#include <vector>

#include "ChainProbe.h"

namespace evaluate {

/// What the engine said and did in one frame. Rectangles are in pixels of a frame of 320 by 240.
struct FrameAnswer {
    bool reported = false;  ///< the gesture "palm"; what follows up to `angle` is its
    cv::Rect2d rect;
    double score = 0;
    double angle = 0;         ///< degrees
    ChainLook look;           ///< what the stages of the chain left
    double milliseconds = 0;  ///< processor time of the calls for the frame
};

/// The whole engine behind its C interface, for upright frames of a camera of 640 by 480. The
/// process has only one.
class EngineSession {
public:
    static constexpr int WIDTH = 640, HEIGHT = 480;
    static constexpr double STILL_RATE = 30;  ///< frames a second that stills stand for

    EngineSession();
    ~EngineSession();
    EngineSession(const EngineSession&) = delete;
    EngineSession& operator=(const EngineSession&) = delete;

    /// Shows blank frames until nothing is remembered of what was seen, then `phase` more (0 to 2):
    /// what follows does not depend on what went before, and is first looked at after 2 - `phase`
    /// further frames. Throws Failure when the engine does not come to rest.
    void forget(int phase);

    /// Forgets, then shows a grey frame of 320 by 240 for `frames` frames, which a hand does not
    /// hold quite still and whose sensor adds noise.
    std::vector<FrameAnswer> showStill(const cv::Mat& frame, int frames, uint64_t seed);

    /// One grey frame of 640 by 480.
    FrameAnswer process(const cv::Mat& luma);

private:
    std::vector<unsigned char> buffer_;
    ChainProbe probe_;
};

}  // namespace evaluate
