#pragma once

#include <functional>
#include <opencv2/videoio.hpp>
#include <string>

namespace palm {

/// Lets `write` make a file under a name beside `path` that ends in `extension`, and renames it
/// when it says true. Throws WorkError otherwise.
void writeBeside(const std::string& path, const std::string& extension,
                 const std::function<bool(const std::string&)>& write);

/// A video file that appears under its name only when it is complete.
class VideoOutput {
public:
    /// Throws WorkError when the file cannot be made.
    VideoOutput(const std::string& path, double framesPerSecond, const cv::Size& size);
    ~VideoOutput();
    VideoOutput(const VideoOutput&) = delete;
    VideoOutput& operator=(const VideoOutput&) = delete;

    void add(const cv::Mat& picture) { writer_.write(picture); }
    /// Ends the file and gives it its name.
    void finish();

private:
    std::string path_;
    std::string part_;
    cv::VideoWriter writer_;
};

}  // namespace palm
