#pragma once

#include <memory>
#include <opencv2/core/mat.hpp>
#include <string>

namespace palm {

struct Frame {
    cv::Mat picture;    ///< BGR, 8 bits
    double time = 0;    ///< seconds from the first frame
    std::string name;   ///< file of a picture; empty in a video
    bool first = true;  ///< the first frame of its file: what went before is another scene
};

/// A sequence of BGR frames.
class FrameSource {
public:
    virtual ~FrameSource() = default;
    /// False at the end.
    virtual bool next(Frame& frame) = 0;
    /// Number of frames where it is known, else 0.
    virtual int count() const = 0;
    virtual double framesPerSecond() const = 0;
};

/// A video, a picture or a folder of pictures; each picture is shown for `stillFrames` frames.
/// Throws InputError when there is nothing to read.
std::unique_ptr<FrameSource> openFile(const std::string& path, int stillFrames);

/// A camera, by device path or number.
std::unique_ptr<FrameSource> openCamera(const std::string& device);

}  // namespace palm
