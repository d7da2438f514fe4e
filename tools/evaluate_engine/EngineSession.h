#pragma once

#include <cstdint>
#include <opencv2/core.hpp>
#include <vector>

/// What the engine said while a still picture was shown.
struct EngineAnswer {
    int palms = 0;    ///< frames with a palm
    cv::Rect2d rect;  ///< of the first one, pixels of a frame of 320 by 240
    float score = 0;  ///< likewise
};

/// The whole engine behind its C interface, for upright frames. The process has only one.
class EngineSession {
public:
    EngineSession();
    ~EngineSession();

    /// Shows a grey frame of 320 by 240 for `frames` frames of a camera of 640 by 480, which a
    /// hand does not hold quite still and whose sensor adds noise. Before, the engine is made to
    /// forget what it has seen.
    EngineAnswer show(const cv::Mat& frame, int frames, uint64_t seed);

private:
    void process(const cv::Mat& luma);

    std::vector<unsigned char> buffer_;
};
