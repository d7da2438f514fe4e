#include "GreToViWrapper.h"

#include "GRE_Interface.h"
#include "GreCameraState.h"
#include "KZ_Check.h"
#include "KZ_ColorConversion.h"
#include "KZ_InheritedState.h"
#include "KZ_StateTags.h"
#include "KZ_Utils.h"
#include "KZ_ViInterfaceSingleton.h"
#include "KZ_ViResultState.h"

namespace {

using KZ::CommandLineParser;
using Parameters = std::map<std::string, std::string>;

// Frames come in at half size ("zoom-twice"), so results go back to camera pixels.
const float RESULT_ZOOM = 2;
const int INITIAL_CAMERA_ANGLE = 270;

std::string commandLine(const Parameters& parameters) {
    std::string text;
    for (const auto& entry : parameters) text += "--" + entry.first + "=\"" + entry.second + "\" ";
    return text;
}

}  // namespace

KZ::ViInterface* getEngine() {
    return new GreToViWrapper;
}

GreToViWrapper::GreToViWrapper() {
    viEngineInfo_.imageNames.push_back("bgr");
    viEngineInfo_.parameters["zoom-twice"] = "1";

    const CommandLineParser::ValueType::Value flag = CommandLineParser::ValueType::BOOL;
    commandLineParser_.add("", "--split-stereo", "false", false, flag,
                           "If true copy and use left half of input image");
    if (commandLineParser_.hasKey("--size")) {
        commandLineParser_.setDefaultValue("--size", "Size(320, 240)");
    } else {
        commandLineParser_.add("", "--size", "Size(320, 240)", false,
                               CommandLineParser::ValueType::STRING,
                               "set frame size in format Size(320, 240)");
    }
    commandLineParser_.add("", "--camera-flip", "false", false, flag, "if camera is flip");

    // Tells from the log which build runs.
    KZ_LOG_PLAIN(__DATE__ << " current engine, renaming");
}

void GreToViWrapper::init(const std::string& parameters) {
    commandLineParser_.parse(parameters);
    frameSize_ = KZ::fromStr<KZ::BaseSize<int>>(commandLineParser_.getString("--size"));
    if (commandLineParser_.getBool("--split-stereo")) frameSize_.width /= 2;
    // Before the first GRE_Init there is no frame size, and these options are dropped.
    GRE_SetParameters(parameters.c_str());
    GRE_Init(frameSize_.width, frameSize_.height);
    std::string& gesture =
        stateAggregator_->get<KZ::InheritedState<std::string, KZ::_GestureState>>();
    gesture = "palm";
    GRE_SetCameraFlip(commandLineParser_.getBool("--camera-flip"));
    GRE_SetCameraAngle(INITIAL_CAMERA_ANGLE);
}

void GreToViWrapper::reset() {
    KZ::ViDetectorInterface::reset();
    GRE_Reset();
}

void GreToViWrapper::release() {
    GRE_Release();
}

KZ::ViResult& GreToViWrapper::processFrame(const KZ::ViFrameParameters& params) {
    KZ_LOG_INFO("------------------------- frameNum_ = " << frameNum_
                                                         << " ------------------------------");
    GRE_SetFrameParameters(commandLine(params.parameters).c_str());
    if (&frameParameters_ != &params.parameters) frameParameters_ = params.parameters;

    const KZ::Image& mono = greyFrame(params);
    GRE_SetFrameParameters(("--input-frame-part=" + frameParameters_["input-frame-part"]).c_str());
    GRE_ProcessFrame(mono.data());

    stateAggregator_->get<KZ::ViResultState>();
    KZ::ViResultState::viResult.reset();
    publishResult(KZ::ViResultState::viResult);
    ++frameNum_;
    return KZ::ViResultState::viResult;
}

const KZ::Image& GreToViWrapper::greyFrame(const KZ::ViFrameParameters& params) {
    // One engine, one frame at a time: the pixels are kept for the next frame.
    static KZ::Image mono;
    const auto found = params.images.find(viEngineInfo_.imageNames[0]);
    KZ_ASSERT(found != params.images.end(),
              "no image '" << viEngineInfo_.imageNames[0] << "' was set for this frame");
    KZ::Image frame;
    if (commandLineParser_.getBool("--split-stereo")) {
        const KZ::Image& both = found->second;
        frame.createRef(both, KZ::Rect(0, 0, frameSize_.width, both.height()));
    } else {
        frame.createRef(found->second);
    }
    // The gesture engine gets a pointer alone, and an application that calls GRE_Init itself may
    // have told it another size. Without a size it looks at no pixel.
    KZ_CHECK_SIZE(frame, frameSize_);
    if (frameSize != KZ::Size()) KZ_CHECK_SIZE(frame, frameSize);
    KZ::toMono(frame, mono, KZ::Rect());
    return mono;
}

void GreToViWrapper::publishResult(KZ::ViResult& result) {
    const char* gesture = nullptr;
    KZ::Rect rect;
    float score = 0;
    int angle = 0;
    GRE_GetGesture(&gesture);
    GRE_GetResultRect(&rect.left, &rect.top, &rect.right, &rect.bottom);
    GRE_GetScore(&score);
    GRE_GetResultAngle(&angle);
    if (*gesture == '\0') return;
    result.gestures.push_back(gesture);
    result.rects.push_back(KZ::RectF(RESULT_ZOOM * static_cast<float>(rect.left),
                                     RESULT_ZOOM * static_cast<float>(rect.top),
                                     RESULT_ZOOM * static_cast<float>(rect.right),
                                     RESULT_ZOOM * static_cast<float>(rect.bottom)));
    result.floats.push_back(score);
    result.floats.push_back(static_cast<float>(angle));
}
