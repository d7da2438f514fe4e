#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "BaseDetector.h"
#include "ByteReader.h"
#include "CallCodes.h"
#include "DetectorResult.h"
#include "FuzzTarget.h"
#include "GRE_Interface.h"
#include "GRE_RaisedHand.h"
#include "GreCameraState.h"
#include "KZ_ViInterfaceSingleton.h"
#include "MultiFrameVerification.h"
#include "Session.h"
#include "VI_Interface.h"
#include "VI_State.h"

// Calls of the two C interfaces in any order, also wrong ones. Frames are as large as the interface
// asks for and no larger, and go as soon as it lets them.

namespace {

using namespace fuzz;

// A frame takes about a second per 50,000 pixels under the sanitizers, and small ones a little too.
const int64_t MOST_PIXELS = 60000;
const int64_t PIXELS_OF_A_CALL = 2000;

using Frame = std::unique_ptr<unsigned char[]>;

/// Grey levels for odd `fill`s, else noise.
Frame makeFrame(int64_t bytes, uint8_t fill) {
    Frame frame(new unsigned char[static_cast<size_t>(bytes)]);
    uint32_t state = fill;
    for (int64_t i = 0; i < bytes; ++i) {
        state = state * 1664525 + 1013904223;
        frame[static_cast<size_t>(i)] = fill % 2 ? fill : static_cast<unsigned char>(state >> 24);
    }
    return frame;
}

/// Finds a palm at one place of every upright picture, as chance never would.
class PalmAt : public BaseDetector {
public:
    explicit PalmAt(const KZ::ObjectLocation& place) : place_(place) {}
    KZ::Rect getDataRoi(const DetectorData&, const KZ::DetectRegion& region) override {
        return region.rect;
    }
    void detect(DetectorData&, const KZ::DetectRegion&, DetectorResult& result) override {
        result.found = true;
        result.name = "palm";
        static_cast<KZ::ObjectLocation&>(result.location) = place_;
        result.score = 0.5f;
    }

private:
    KZ::ObjectLocation place_;
};

bool engineProperty(const char* key, const char* value) {
    const auto& properties = VI_GetEngineInfo_()->parameters;
    const auto found = properties.find(key);
    return found != properties.end() && found->second == value;
}

class Calls {
public:
    Calls(const uint8_t* bytes, size_t size) : input_(bytes, size) {}

    void run() {
        while (!input_.empty()) {
            const int call = input_.next() % NUM_CALLS;
            fuzz::accepted([&] { make(call); });
        }
    }

private:
    void make(int call);
    void setFrame(int width, int height, int i, uint8_t fill);
    void setFittingFrame();
    void processViFrame();
    void processGreFrame();
    void setProperty();
    void putPalm();
    void setGreRoi();
    void setViRoi();
    std::string option();

    /// False when the input has used up its time.
    bool mayProcess() {
        const int64_t pixels = greyPixels() + PIXELS_OF_A_CALL;
        if (pixels > pixelsLeft_) return false;
        pixelsLeft_ -= pixels;
        return true;
    }
    static int64_t greyPixels() { return int64_t{frameSize.width} * frameSize.height; }

    ByteReader input_;
    std::vector<Frame> heldFrames_;  ///< frames that the library may still look at
    const Session session_;          ///< goes before the frames do
    int64_t pixelsLeft_ = MOST_PIXELS;
};

std::string Calls::option() {
    const std::string key = input_.pick(KEYS);
    return "--" + key + "=\"" + input_.pick(VALUES) + "\"";
}

void Calls::setFrame(int width, int height, int i, uint8_t fill) {
    const bool wide = engineProperty("image-format", "41");
    const int64_t area = width > 0 && height > 0 ? int64_t{width} * height : 0;
    Frame frame = makeFrame(wide ? 3 * area : area, fill);
    const unsigned char* const pixels = frame.get();
    if (wide && !zoomTwice) heldFrames_.push_back(std::move(frame));
    VI_SetFrame(pixels, width, height, i);
}

void Calls::setFittingFrame() {
    const int width = 2 * input_.pick(SIZES), height = 2 * input_.pick(SIZES);
    setFrame(width, height / 2 * 3, 0, input_.next());
}

void Calls::processViFrame() {
    if (!mayProcess()) return;
    struct Release {
        std::vector<Frame>& frames;
        ~Release() { frames.clear(); }
    } const release{heldFrames_};
    VI_ProcessFrame();
}

void Calls::processGreFrame() {
    const uint8_t fill = input_.next();
    if (!mayProcess()) return;
    GRE_ProcessFrame(makeFrame(greyPixels(), fill).get());
}

void Calls::setProperty() {
    const std::string key = input_.pick(PROPERTIES);
    ViInterfaceSingleton::get()->getEngineInfo().parameters[key] = input_.pick(VALUES);
}

void Calls::putPalm() {
    float numbers[5];
    for (float& number : numbers) number = static_cast<float>(input_.pick(SIZES));
    const KZ::ObjectLocation place(KZ::PointF(numbers[0], numbers[1]),
                                   KZ::SizeF(numbers[2], numbers[3]), numbers[4], KZ::Side::RIGHT);
    MultiFrameVerification::Parameters parameters(1);
    parameters.historySize = 3;
    parameters.minHits = 2;
    raisedHandDetector.setDetector(
        KZ::SharedPtr<BaseDetector>(new MultiFrameVerification(new PalmAt(place), parameters)));
}

void Calls::setViRoi() {
    const int x = input_.pick(COORDINATES), y = input_.pick(COORDINATES);
    const int width = input_.pick(COORDINATES), height = input_.pick(COORDINATES);
    VI_SetRoi(x, y, width, height);
}

void Calls::setGreRoi() {
    const int left = input_.pick(COORDINATES), top = input_.pick(COORDINATES);
    const int right = input_.pick(COORDINATES), bottom = input_.pick(COORDINATES);
    GRE_SetRoi(left, top, right, bottom);
}

// Texts that come out are read to their ends.
void readText(int given, const char* text) {
    fuzz::require(!given || text, "a text that is there is null");
    if (text) (void)std::strlen(text);
}

void readViResults(int i) {
    const char* text = nullptr;
    const char* mode = nullptr;
    const void* pixels = nullptr;
    float a, b, c, d;
    int width, height, strip;
    fuzz::accepted([&] { readText(VI_GetGesture(&text, i), text); });
    fuzz::accepted([&] { VI_GetRect(&a, &b, &c, &d, i); });
    fuzz::accepted([&] { VI_GetPoint(&a, &b, i); });
    fuzz::accepted([&] { VI_GetPoint3d(&a, &b, &c, i); });
    fuzz::accepted([&] { VI_GetFloat(&a, i); });
    fuzz::accepted([&] { readText(VI_GetParameter("key", &text, i), text); });
    fuzz::accepted([&] { VI_GetFrame(&pixels, &width, &height, i); });
    fuzz::accepted([&] { readText(VI_GetFrameColorMode_(&mode, i), mode); });
    fuzz::accepted([&] {
        const int given = VI_GetDebugImage_(&text, &pixels, &mode, &width, &height, &strip, i);
        readText(given, text);
        readText(given, mode);
    });
    readText(1, VI_GetVersion());
    VI_Request_("anything", nullptr);
}

void readGreResults(int i) {
    const char* text = nullptr;
    float x, y, z;
    int left, top, right, bottom;
    bool flag;
    GRE_GetGesture(&text);
    readText(1, text);
    fuzz::require(GRE_GetGestureInt() == (std::strcmp(text, "palm") == 0), "two gestures");
    GRE_GetResultRect(&left, &top, &right, &bottom);
    GRE_GetScore(&x);
    fuzz::require(x >= 0 && x <= 1, "the score is out of its range");
    GRE_GetResultAngle(&left);
    GRE_GetFlipState(&flag);
    GRE_GetClickEvent(&flag);
    fuzz::accepted([&] { GRE_GetPoint(i, &x, &y, &z); });
    readText(1, GRE_GetVersion());
}

void Calls::make(int call) {
    switch (call) {
        case VI_SET_PARAMETER: {
            const char* const key = input_.pick(KEYS);
            return VI_SetParameter(key, input_.pick(VALUES));
        }
        case VI_SET_TEXT: {
            const std::string key = input_.text();
            return VI_SetParameter(key.c_str(), input_.text().c_str());
        }
        case VI_SET_SIZE: {
            const std::string width = std::to_string(input_.pick(SIZES));
            const std::string height = std::to_string(input_.pick(SIZES));
            return VI_SetParameter("size", ("Size(" + width + ", " + height + ")").c_str());
        }
        case VI_INIT:
            return VI_Init();
        case VI_SET_ROI:
            return setViRoi();
        case VI_SET_FRAME_PARAMETER: {
            const char* const key = input_.pick(KEYS);
            return VI_SetFrameParameter(key, input_.pick(VALUES));
        }
        case VI_SET_FRAME: {
            const int width = input_.pick(SIZES), height = input_.pick(SIZES);
            const int i = input_.pick(INDICES);
            return setFrame(width, height, i, input_.next());
        }
        case VI_PROCESS_FRAME:
            return processViFrame();
        case VI_RESET:
            return VI_Reset();
        case VI_RELEASE:
            return VI_Release();
        case VI_GET_ALL:
            return readViResults(input_.pick(INDICES));
        case VI_PROPERTY:
            return setProperty();
        case GRE_INIT: {
            const int width = input_.pick(SIZES);
            return GRE_Init(width, input_.pick(SIZES));
        }
        case GRE_RESET:
            return GRE_Reset();
        case GRE_RELEASE:
            return GRE_Release();
        case GRE_SET_PARAMETERS:
            return GRE_SetParameters(option().c_str());
        case GRE_SET_FRAME_PARAMETERS:
            return GRE_SetFrameParameters(option().c_str());
        case GRE_SET_CAMERA_FLIP:
            return GRE_SetCameraFlip(input_.next() % 2 != 0);
        case GRE_SET_CAMERA_ANGLE:
            return GRE_SetCameraAngle(input_.pick(COORDINATES));
        case GRE_SET_CAMERA_ACCELERATION: {
            const float x = input_.pick(SPEEDS), y = input_.pick(SPEEDS);
            return GRE_SetCameraAcceleration(x, y, input_.pick(SPEEDS));
        }
        case GRE_SET_ROI:
            return setGreRoi();
        case GRE_PROCESS_FRAME:
            return processGreFrame();
        case GRE_GET_ALL:
            return readGreResults(input_.pick(INDICES));
        case USE_SMOOTHING:
            useSmoothing = input_.next() % 2 != 0;
            return;
        case PALM_AT:
            return putPalm();
        case VI_SET_FITTING_FRAME:
            return setFittingFrame();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    Calls(bytes, size).run();
    return 0;
}
