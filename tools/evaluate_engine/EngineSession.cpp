#include "EngineSession.h"

#include <cstring>
#include <opencv2/imgproc.hpp>

#include "GRE_Interface.h"
#include "Random.h"
#include "VI_Interface.h"

namespace {

constexpr int WIDTH = 640, HEIGHT = 480;
/// Frames without a hand after which nothing is tracked and no rest after a palm is left.
constexpr int FORGETTING = 12;

bool isPalm() {
    const char* gesture = nullptr;
    return VI_GetGesture(&gesture, 0) == 1 && std::strcmp(gesture, "palm") == 0;
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

}  // namespace

EngineSession::EngineSession() : buffer_(WIDTH * HEIGHT * 3 / 2, 128) {
    VI_Init();
    GRE_SetCameraAngle(0);
}

EngineSession::~EngineSession() {
    VI_Release();
}

void EngineSession::process(const cv::Mat& luma) {
    for (int y = 0; y < HEIGHT; ++y) {
        std::memcpy(buffer_.data() + static_cast<size_t>(y) * WIDTH, luma.ptr(y), WIDTH);
    }
    VI_SetFrame(buffer_.data(), WIDTH, HEIGHT * 3 / 2, 0);
    VI_ProcessFrame();
}

EngineAnswer EngineSession::show(const cv::Mat& frame, int frames, uint64_t seed) {
    const cv::Mat nothing(HEIGHT, WIDTH, CV_8U, cv::Scalar(110));
    for (int i = 0; i < FORGETTING; ++i) process(nothing);
    cv::Mat picture;
    cv::resize(frame, picture, cv::Size(WIDTH, HEIGHT), 0, 0, cv::INTER_LINEAR);
    training::Random random(seed);
    EngineAnswer answer;
    for (int i = 0; i < frames; ++i) {
        process(shaken(picture, random));
        if (!isPalm() || answer.palms++ > 0) continue;
        float left, top, right, bottom;
        VI_GetRect(&left, &top, &right, &bottom, 0);
        VI_GetFloat(&answer.score, 0);
        answer.rect = cv::Rect2d(left / 2, top / 2, (right - left) / 2, (bottom - top) / 2);
    }
    return answer;
}
