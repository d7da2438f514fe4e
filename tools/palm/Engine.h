#pragma once

#include <opencv2/core/mat.hpp>
#include <string>
#include <vector>

#include "Accelerometer.h"
#include "Options.h"
#include "StageResults.h"

namespace palm {

/// What the library says of a frame; rectangle in pixels of the frame handed in.
struct Outcome {
    std::string gesture;  ///< "palm", "MOVING" or empty
    float left = 0, top = 0, right = 0, bottom = 0;
    float score = 0;
    float angle = 0;                          ///< degrees, counter-clockwise
    double milliseconds = 0;                  ///< VI_SetFrame and VI_ProcessFrame
    std::vector<stages::StageResult> stages;  ///< in pixels of the frame handed in; if asked for
};

/// Number of frames for which the library rests after a hit.
const int REST_FRAMES = 5;

/// The library, driven as a camera application drives it: NV21 frames in, gestures out. One object
/// a process, as the library holds one engine.
class Engine {
public:
    /// `frameSize` has even sides.
    Engine(const Options& options, const cv::Size& frameSize);
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// Forgets what was tracked: the next frame is another scene.
    void reset();
    void setAcceleration(const AccelerationReading& reading);
    /// Lets blank frames pass until the engine takes this reading for the phone at rest: on a phone
    /// the sensor runs before the camera does.
    void settleAt(const AccelerationReading& reading);
    /// `picture`: BGR of the frame size.
    Outcome process(const cv::Mat& picture);

private:
    Outcome processNv21();
    std::vector<stages::StageResult> readStages() const;
    void processBlank(int frames);

    cv::Size frameSize_;
    int cameraAngle_;
    bool withStages_;
    bool settled_ = true;  ///< nothing is tracked
    std::vector<unsigned char> nv21_;
};

/// Converts BGR to NV21 with full-range luma, as phones deliver it: the luma plane, then one plane
/// of V, U pairs, each the mean of a 2 by 2 block. `picture` has even sides.
void toNv21(const cv::Mat& picture, std::vector<unsigned char>& nv21);

}  // namespace palm
