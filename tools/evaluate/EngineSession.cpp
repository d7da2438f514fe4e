#include "EngineSession.h"

#include <cstring>
#include <ctime>
#include <opencv2/imgproc.hpp>

#include "Failure.h"
#include "GRE_Interface.h"
#include "Random.h"
#include "VI_Interface.h"

namespace evaluate {

namespace {

/// A report, its rest, the misses that end a track, the next scan: far below this.
constexpr int MOST_BLANK_FRAMES = 60;

double processorMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

/// The picture moved by up to a camera pixel, with noise.
cv::Mat shaken(const cv::Mat& picture, training::Random& random) {
    const cv::Matx23d shift(1, 0, random.uniform(-1, 1), 0, 1, random.uniform(-1, 1));
    cv::Mat moved, noise(picture.size(), CV_16S);
    cv::warpAffine(picture, moved, shift, picture.size(), cv::INTER_LINEAR, cv::BORDER_REPLICATE);
    cv::RNG(random.next()).fill(noise, cv::RNG::NORMAL, 0, 3);
    cv::add(moved, noise, moved, cv::noArray(), CV_8U);
    return moved;
}

void readReport(FrameAnswer& answer) {
    const char* gesture = nullptr;
    answer.reported = VI_GetGesture(&gesture, 0) == 1 && std::strcmp(gesture, "palm") == 0;
    if (!answer.reported) return;
    float left, top, right, bottom, score, angle;
    VI_GetRect(&left, &top, &right, &bottom, 0);
    VI_GetFloat(&score, 0);
    VI_GetFloat(&angle, 1);
    answer.rect = cv::Rect2d(left / 2, top / 2, (right - left) / 2, (bottom - top) / 2);
    answer.score = score;
    answer.angle = angle > 180 ? angle - 360 : angle;
}

}  // namespace

EngineSession::EngineSession() : buffer_(WIDTH * HEIGHT * 3 / 2, 128) {
    VI_Init();
    GRE_SetCameraAngle(0);
}

EngineSession::~EngineSession() {
    VI_Release();
}

FrameAnswer EngineSession::process(const cv::Mat& luma) {
    for (int y = 0; y < HEIGHT; ++y) {
        std::memcpy(buffer_.data() + static_cast<size_t>(y) * WIDTH, luma.ptr(y), WIDTH);
    }
    probe_.arm();
    FrameAnswer answer;
    const double start = processorMilliseconds();
    VI_SetFrame(buffer_.data(), WIDTH, HEIGHT * 3 / 2, 0);
    VI_ProcessFrame();
    answer.milliseconds = processorMilliseconds() - start;
    readReport(answer);
    answer.look = probe_.read();
    return answer;
}

void EngineSession::forget(int phase) {
    const cv::Mat nothing(HEIGHT, WIDTH, CV_8U, cv::Scalar(110));
    const auto atRest = [&] {
        const FrameAnswer answer = process(nothing);
        return answer.look.work == Work::SCAN && !answer.look.found();
    };
    int shown = 1;
    while (!atRest()) {
        if (++shown > MOST_BLANK_FRAMES) {
            throw training::Failure("the engine does not come to rest on blank frames");
        }
    }
    for (int i = 0; i < phase; ++i) process(nothing);
}

std::vector<FrameAnswer> EngineSession::showStill(const cv::Mat& frame, int frames, uint64_t seed) {
    forget(static_cast<int>(seed % 3));
    cv::Mat picture;
    cv::resize(frame, picture, cv::Size(WIDTH, HEIGHT), 0, 0, cv::INTER_LINEAR);
    training::Random random(seed);
    std::vector<FrameAnswer> answers;
    for (int i = 0; i < frames; ++i) answers.push_back(process(shaken(picture, random)));
    return answers;
}

}  // namespace evaluate
