#include "Engine.h"

#include <chrono>
#include <opencv2/imgproc.hpp>

#include "GRE_Interface.h"
#include "VI_Interface.h"

namespace palm {

namespace {

const int REMEMBERED_FRAMES = 3;
// From no reading to gravity is a jolt of 9.8 m/s2; the gate opens again within this many frames.
const int GATE_FRAMES = 12;

void setOption(const char* key, const std::optional<int>& value) {
    if (value) VI_SetParameter(key, std::to_string(*value).c_str());
}

double millisecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

}  // namespace

Engine::Engine(const Options& options, const cv::Size& frameSize)
    : frameSize_(frameSize), cameraAngle_(options.cameraAngle), withStages_(options.stages) {
    // Frames enter at half size, and the option wants the size that they have then.
    const std::string size = "Size(" + std::to_string(frameSize.width / 2) + ", " +
                             std::to_string(frameSize.height / 2) + ")";
    VI_SetParameter("size", size.c_str());
    VI_SetParameter("camera-flip", options.flip ? "true" : "false");
    setOption("min-distance", options.minDistance);
    setOption("max-distance", options.maxDistance);
    setOption("fov-angle", options.fovAngle);
    VI_Init();
    // Distances and field of view are read once the frame size is known: from the second start on.
    VI_Init();
    GRE_SetCameraAngle(cameraAngle_);
}

Engine::~Engine() {
    VI_Release();
}

void Engine::reset() {
    VI_Reset();
    GRE_SetCameraAngle(cameraAngle_);
    if (settled_) return;
    // A reset keeps what is tracked. Blank frames end it: those of the rest after a hit, then as
    // many misses as the confirmation remembers.
    processBlank(REST_FRAMES + REMEMBERED_FRAMES);
    settled_ = true;
}

void Engine::processBlank(int frames) {
    nv21_.assign(static_cast<size_t>(frameSize_.area()) * 3 / 2, 128);
    for (int i = 0; i < frames; ++i) processNv21();
}

void Engine::settleAt(const AccelerationReading& reading) {
    setAcceleration(reading);
    processBlank(GATE_FRAMES);
}

void Engine::setAcceleration(const AccelerationReading& reading) {
    GRE_SetCameraAcceleration(reading.x, reading.y, reading.z);
}

Outcome Engine::process(const cv::Mat& picture) {
    toNv21(picture, nv21_);
    settled_ = false;
    return processNv21();
}

Outcome Engine::processNv21() {
    if (withStages_) stages::forget();
    const auto start = std::chrono::steady_clock::now();
    VI_SetFrame(nv21_.data(), frameSize_.width, frameSize_.height * 3 / 2, 0);
    VI_ProcessFrame();
    Outcome outcome;
    outcome.milliseconds = millisecondsSince(start);
    const char* gesture = nullptr;
    if (VI_GetGesture(&gesture, 0)) outcome.gesture = gesture;
    VI_GetRect(&outcome.left, &outcome.top, &outcome.right, &outcome.bottom, 0);
    VI_GetFloat(&outcome.score, 0);
    VI_GetFloat(&outcome.angle, 1);
    if (outcome.angle > 180) outcome.angle -= 360;
    if (withStages_) outcome.stages = readStages();
    return outcome;
}

std::vector<stages::StageResult> Engine::readStages() const {
    std::vector<stages::StageResult> results = stages::ofLastFrame();
    for (stages::StageResult& stage : results) {
        for (float* value : {&stage.x, &stage.y, &stage.width, &stage.height}) *value *= 2;
        if (stage.angle > 180) stage.angle -= 360;
    }
    return results;
}

void toNv21(const cv::Mat& picture, std::vector<unsigned char>& nv21) {
    const int width = picture.cols, height = picture.rows;
    nv21.resize(static_cast<size_t>(width) * height * 3 / 2);
    cv::Mat full, chroma;
    cv::cvtColor(picture, full, cv::COLOR_BGR2YCrCb);
    cv::Mat luma(height, width, CV_8UC1, nv21.data());
    cv::extractChannel(full, luma, 0);
    cv::resize(full, chroma, cv::Size(width / 2, height / 2), 0, 0, cv::INTER_AREA);
    cv::Mat pairs(height / 2, width / 2, CV_8UC2,
                  nv21.data() + static_cast<size_t>(width) * height);
    const int crAndCb[] = {1, 0, 2, 1};
    cv::mixChannels(&chroma, 1, &pairs, 1, crAndCb, 2);
}

}  // namespace palm
