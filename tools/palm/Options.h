#pragma once

#include <opencv2/core/types.hpp>
#include <optional>
#include <string>

namespace palm {

struct Options {
    std::string input;             ///< video, picture or folder of pictures; empty with a camera
    std::string camera;            ///< device, such as /dev/video0 or 0
    std::optional<cv::Size> size;  ///< of the frames handed to the library
    int cameraAngle = 0;           ///< degrees
    bool flip = false;
    std::optional<int> minDistance;
    std::optional<int> maxDistance;
    std::optional<int> fovAngle;
    std::string accelerometer;
    int stillFrames = 9;  ///< how long each picture of a folder is shown
    std::string json;     ///< "-" is standard output
    std::string video;
    std::string sheet;
    bool show = false;
    bool stages = false;  ///< tell and draw what each stage kept
    bool verbose = false;
};

/// What the command line asks for beside a run.
enum class Command { RUN, STOP };

/// Reads the command line. `STOP` after --help, which is printed. Throws InputError.
Command readOptions(int argc, char** argv, Options& options);

}  // namespace palm
