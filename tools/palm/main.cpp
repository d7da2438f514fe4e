// palm: finds raised open palms in a video, in pictures or in a camera's frames.

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <opencv2/core/utils/logger.hpp>
#include <opencv2/highgui.hpp>
#include <opencv2/imgproc.hpp>

#include "Engine.h"
#include "Error.h"
#include "FrameSource.h"
#include "Log.h"
#include "Options.h"
#include "Overlay.h"
#include "Report.h"
#include "Sheet.h"
#include "VideoOutput.h"

namespace palm {

namespace {

std::atomic<bool> interrupted{false};

// The long side becomes 640, so that the half-size frame of the library has the 320 pixels that its
// distances are made for.
cv::Size defaultSize(const cv::Size& picture) {
    const double scale = 640.0 / std::max(picture.width, picture.height);
    const auto even = [&](int side) {
        return std::max(64, static_cast<int>(side * scale / 2 + 0.5) * 2);
    };
    return cv::Size(even(picture.width), even(picture.height));
}

// The picture at the largest size that fits, centred on a dark ground.
void fitInto(const cv::Mat& picture, const cv::Size& size, cv::Mat& frame) {
    const double scale = std::min(static_cast<double>(size.width) / picture.cols,
                                  static_cast<double>(size.height) / picture.rows);
    const cv::Size inner(std::min(size.width, cvRound(picture.cols * scale)),
                         std::min(size.height, cvRound(picture.rows * scale)));
    frame.create(size, CV_8UC3);
    frame.setTo(cv::Scalar(24, 24, 24));
    const cv::Rect place((size.width - inner.width) / 2, (size.height - inner.height) / 2,
                         inner.width, inner.height);
    cv::Mat target = frame(place);
    cv::resize(picture, target, inner, 0, 0, scale < 1 ? cv::INTER_AREA : cv::INTER_LINEAR);
}

class ProgressBar {
public:
    explicit ProgressBar(int total) : total_(isatty(STDERR_FILENO) ? total : 0) {}
    void show(int done) {
        if (total_ <= 0 || done * 100 / total_ == percent_) return;
        percent_ = done * 100 / total_;
        std::fprintf(stderr, "\r[%3d%%] frame %d of %d ", percent_, done, total_);
    }
    void clear() {
        if (total_ > 0) std::fprintf(stderr, "\r%40s\r", "");
        percent_ = -1;
    }

private:
    int total_;
    int percent_ = -1;
};

// Where the marked-up frames go.
class PictureOutputs {
public:
    PictureOutputs(const Options& options, double rate) : options_(options), rate_(rate) {}

    bool wanted() const {
        return options_.show || !options_.video.empty() || !options_.sheet.empty();
    }

    void add(const cv::Mat& picture, bool notable) {
        if (!options_.video.empty()) {
            if (!video_)
                video_ = std::make_unique<VideoOutput>(options_.video, rate_, picture.size());
            video_->add(picture);
        }
        if (!options_.sheet.empty()) sheet_.add(picture, notable);
        if (!options_.show) return;
        cv::imshow("palm", picture);
        const int key = cv::waitKey(1);
        if (key == 27 || key == 'q') interrupted = true;
    }

    void finish() {
        if (video_) video_->finish();
        if (!options_.sheet.empty()) sheet_.write(options_.sheet);
    }

private:
    const Options& options_;
    double rate_;
    std::unique_ptr<VideoOutput> video_;
    Sheet sheet_;
};

void writeJson(const std::string& path, const std::string& text) {
    if (path == "-") {
        std::cout << text;
        return;
    }
    writeBeside(path, ".json", [&](const std::string& part) {
        std::ofstream file(part);
        file << text;
        return static_cast<bool>(file.flush());
    });
}

class Run {
public:
    explicit Run(const Options& options) : options_(options) {
        if (!options.accelerometer.empty()) {
            accelerometer_ = AccelerometerLog::read(options.accelerometer);
        }
        source_ = options.camera.empty() ? openFile(options.input, options.stillFrames)
                                         : openCamera(options.camera);
    }

    void execute() {
        PictureOutputs outputs(options_, source_->framesPerSecond());
        ProgressBar progress(source_->count());
        Frame frame;
        while (!interrupted && source_->next(frame)) {
            step(frame, outputs, progress);
            progress.show(++state_.number);
        }
        progress.clear();
        if (!engine_) throw InputError("\"" + inputName() + "\" holds no frame that can be read");
        outputs.finish();
        if (!options_.json.empty()) {
            writeJson(options_.json, report_.json(inputName(), frameSize_));
        }
        std::fprintf(options_.json == "-" ? stderr : stdout, "%s\n", report_.summary().c_str());
    }

private:
    std::string inputName() const {
        return options_.camera.empty() ? options_.input : options_.camera;
    }

    void step(const Frame& frame, PictureOutputs& outputs, ProgressBar& progress) {
        if (!engine_) start(frame.picture.size());
        if (frame.first) {
            engine_->reset();
            state_.framesSinceHit = -1;
        }
        if (const AccelerationReading* reading = accelerometer_.at(frame.time)) {
            engine_->setAcceleration(*reading);
        }
        cv::Mat picture;
        fitInto(frame.picture, frameSize_, picture);
        const Outcome outcome = engine_->process(picture);
        track(outcome);
        state_.time = frame.time;
        if (options_.stages) tellStages(frame.time, outcome, progress);
        const bool begins = report_.add(state_.number, frame.time, frame.name, outcome);
        if (begins && options_.json != "-") {
            progress.clear();
            std::printf("%s\n", report_.line().c_str());
            std::fflush(stdout);
        }
        if (!outputs.wanted()) return;
        drawOutcome(picture, outcome, state_);
        outputs.add(picture, begins);
    }

    void tellStages(double time, const Outcome& outcome, ProgressBar& progress) const {
        const std::string line = Report::stagesLine(state_.number, time, outcome);
        if (line.empty()) return;
        progress.clear();
        std::fprintf(options_.json == "-" ? stderr : stdout, "%s\n", line.c_str());
    }

    void start(const cv::Size& pictureSize) {
        frameSize_ = options_.size.value_or(defaultSize(pictureSize));
        engine_ = std::make_unique<Engine>(options_, frameSize_);
        if (const AccelerationReading* first = accelerometer_.at(0)) engine_->settleAt(*first);
    }

    void track(const Outcome& outcome) {
        if (outcome.gesture == "palm") {
            state_.framesSinceHit = 0;
            state_.lastHit = outcome;
        } else if (state_.framesSinceHit >= 0) {
            ++state_.framesSinceHit;
        }
    }

    const Options& options_;
    AccelerometerLog accelerometer_;
    std::unique_ptr<FrameSource> source_;
    std::unique_ptr<Engine> engine_;
    cv::Size frameSize_;
    FrameState state_;
    Report report_;
};

void checkDisplay(const Options& options) {
    if (options.show && !std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY")) {
        throw InputError(
            "--show: there is no display here. Try: --video out.mp4 or --sheet out.png");
    }
}

int run(int argc, char** argv) {
    Options options;
    if (readOptions(argc, argv, options) == Command::STOP) return 0;
    setVerbose(options.verbose);
    checkDisplay(options);
    std::signal(SIGINT, [](int) { interrupted = true; });
    Run(options).execute();
    return 0;
}

}  // namespace

}  // namespace palm

int main(int argc, char** argv) {
    cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
    setenv("OPENCV_FFMPEG_LOGLEVEL", "-8", 0);
    try {
        return palm::run(argc, argv);
    } catch (const palm::InputError& error) {
        std::fprintf(stderr, "palm: %s\n", error.what());
        return 2;
    } catch (const char* text) {
        std::fprintf(stderr, "palm: the library refused: %s: %s\n", text,
                     palm::lastError().c_str());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "palm: %s\n", error.what());
    }
    return 1;
}
