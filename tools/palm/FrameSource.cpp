#include "FrameSource.h"

#include <algorithm>
#include <filesystem>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/videoio.hpp>
#include <set>
#include <vector>

#include "Error.h"

namespace palm {

namespace {

namespace fs = std::filesystem;

const double STILL_RATE = 30;

bool isPicture(const fs::path& path) {
    static const std::set<std::string> known = {".jpg", ".jpeg", ".png",  ".bmp", ".pgm",
                                                ".ppm", ".tif",  ".tiff", ".webp"};
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), ::tolower);
    return known.count(extension) > 0;
}

class VideoSource : public FrameSource {
public:
    VideoSource(cv::VideoCapture capture, bool live) : capture_(std::move(capture)), live_(live) {
        const double rate = capture_.get(cv::CAP_PROP_FPS);
        rate_ = rate > 0 && rate < 1000 ? rate : 30;
    }

    bool next(Frame& frame) override {
        if (!capture_.read(frame.picture) || frame.picture.empty()) return false;
        frame.time = number_ / rate_;
        frame.name.clear();
        frame.first = number_ == 0;
        ++number_;
        return true;
    }
    int count() const override {
        return live_ ? 0 : std::max(0, static_cast<int>(capture_.get(cv::CAP_PROP_FRAME_COUNT)));
    }
    double framesPerSecond() const override { return rate_; }

private:
    cv::VideoCapture capture_;
    bool live_;
    double rate_;
    int number_ = 0;
};

class PictureSource : public FrameSource {
public:
    PictureSource(std::vector<std::string> paths, int repeats)
        : paths_(std::move(paths)), repeats_(repeats) {}

    bool next(Frame& frame) override {
        const size_t picture = static_cast<size_t>(number_ / repeats_);
        if (picture >= paths_.size()) return false;
        frame.first = number_ % repeats_ == 0;
        if (frame.first) {
            current_ = cv::imread(paths_[picture], cv::IMREAD_COLOR);
            if (current_.empty()) {
                throw InputError("cannot read the picture \"" + paths_[picture] + "\"");
            }
        }
        frame.picture = current_;
        frame.time = number_ / STILL_RATE;
        frame.name = paths_[picture];
        ++number_;
        return true;
    }
    int count() const override { return static_cast<int>(paths_.size()) * repeats_; }
    double framesPerSecond() const override { return STILL_RATE; }

private:
    std::vector<std::string> paths_;
    int repeats_;
    int number_ = 0;
    cv::Mat current_;
};

std::vector<std::string> picturesIn(const fs::path& folder) {
    std::vector<std::string> paths;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (entry.is_regular_file() && isPicture(entry.path())) paths.push_back(entry.path());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

}  // namespace

std::unique_ptr<FrameSource> openFile(const std::string& path, int stillFrames) {
    if (!fs::exists(path)) {
        throw InputError("cannot open \"" + path +
                         "\": no such file. Try: palm --camera /dev/video0");
    }
    if (fs::is_directory(path)) {
        std::vector<std::string> pictures = picturesIn(path);
        if (pictures.empty()) throw InputError("the folder \"" + path + "\" holds no picture");
        return std::make_unique<PictureSource>(std::move(pictures), stillFrames);
    }
    if (isPicture(path)) {
        return std::make_unique<PictureSource>(std::vector<std::string>{path}, stillFrames);
    }
    cv::VideoCapture capture(path, cv::CAP_FFMPEG);
    if (!capture.isOpened()) {
        throw InputError("\"" + path + "\" is neither a picture nor a video that can be read");
    }
    return std::make_unique<VideoSource>(std::move(capture), false);
}

std::unique_ptr<FrameSource> openCamera(const std::string& device) {
    const bool number = device.find_first_not_of("0123456789") == std::string::npos;
    cv::VideoCapture capture;
    if (number) {
        capture.open(std::stoi(device.substr(0, 6)));
    } else if (fs::exists(device)) {
        capture.open(device, cv::CAP_V4L2);
    }
    if (!capture.isOpened()) {
        throw InputError("cannot open the camera \"" + device + "\". Try: ls /dev/video*");
    }
    return std::make_unique<VideoSource>(std::move(capture), true);
}

}  // namespace palm
