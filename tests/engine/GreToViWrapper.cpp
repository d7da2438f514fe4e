#include "GreToViWrapper.h"

#include "GreFixture.h"
#include "LogCapture.h"
#include "VI_Interface.h"

using testing_support::conditionOf;
using testing_support::LogCapture;
using testing_support::square;

namespace {

/// A wrapper of the test's own, at camera angle 0 and without zoom.
class GreToVi : public GreFixture {
protected:
    void start(const std::string& options) {
        wrapper.init(options);
        GRE_SetCameraAngle(0);
        raisedHandDetector.setHandSizes(15, 60);
    }
    KZ::ViResult& process(const KZ::Size& size, unsigned char grey = 99) {
        KZ::Image bgr(size, KZ::COLOR_MODE_BGR);
        std::fill(bgr.data(), bgr.data() + bgr.stripLength() * size.height, grey);
        params.images["bgr"] = bgr;
        return wrapper.processFrame(params);
    }

    LogCapture capture;
    GreToViWrapper wrapper;
    KZ::ViFrameParameters params;
};

}  // namespace

TEST_F(GreToVi, PublishesInCameraPixels) {
    start(" --size=\"Size(100, 80)\"");
    find(KZ::ObjectLocation(KZ::PointF(60 + 20, 40), KZ::SizeF(30, 20), 12.75f, KZ::Side::LEFT),
         0.625f);
    const KZ::ViResult& result = process(KZ::Size(100, 80));
    ASSERT_EQ(1u, result.gestures.size());
    EXPECT_EQ("palm", result.gestures[0]);
    ASSERT_EQ(1u, result.rects.size());
    EXPECT_EQ(KZ::RectF(90, 60, 150, 100), result.rects[0]);
    EXPECT_EQ((std::vector<float>{0.625f, 12}), result.floats);
    EXPECT_TRUE(result.points.empty() && result.parameters.empty() && result.images.empty());

    process(KZ::Size(100, 80));  // at rest
    EXPECT_TRUE(result.gestures.empty() && result.rects.empty() && result.floats.empty());

    averageSpeed = 10;
    process(KZ::Size(100, 80));
    EXPECT_EQ(std::vector<std::string>{"MOVING"}, result.gestures);
    EXPECT_EQ(KZ::RectF(), result.rects.at(0));
    EXPECT_EQ((std::vector<float>{0, 0}), result.floats);
}

TEST_F(GreToVi, FirstStartDropsTheEngineOptions) {
    wrapper.init(" --max-distance=\"50\"");
    EXPECT_EQ(100, maxDistance);
    wrapper.init(" --max-distance=\"50\"");
    EXPECT_EQ(50, maxDistance);
    EXPECT_EQ(KZ::Size(320, 240), frameSize);
    EXPECT_FALSE(isFlip);
    EXPECT_FLOAT_EQ(4.712389f, cameraAngle) << "until the sensor says otherwise";
    wrapper.init(" --camera-flip=\"true\"");
    EXPECT_TRUE(isFlip);
}

TEST_F(GreToVi, SplitStereoTakesTheLeftHalf) {
    start(" --size=\"Size(64, 48)\" --split-stereo=\"true\"");
    EXPECT_EQ(KZ::Size(32, 48), frameSize);
    KZ::Image& both = params.images["bgr"];
    both.create(KZ::Size(64, 48), KZ::COLOR_MODE_BGR);
    for (int y = 0; y < 48; ++y) {
        for (int x = 0; x < 64; ++x) {
            std::fill(both.data(x, y), both.data(x, y) + 3, x < 32 ? x * 4 + y : 255);
        }
    }
    wrapper.processFrame(params);
    ASSERT_EQ(32 * 1, data.inputImage.stripLength()) << "rows without gaps";
    for (const KZ::Point& p :
         {KZ::Point(0, 0), KZ::Point(31, 0), KZ::Point(0, 47), KZ::Point(31, 47)}) {
        EXPECT_EQ(16 + ((220 * (p.x * 4 + p.y)) >> 8), *data.inputImage.data(p.x, p.y)) << p;
    }
}

TEST_F(GreToVi, FramePartReachesTheChainForOneFrame) {
    start(" --size=\"Size(64, 48)\"");
    std::string seen;
    chain->act = [&](DetectorData& frame, const KZ::DetectRegion&, DetectorResult&) {
        seen += "(" + frame.inputFramePart + "," + frame.outputFramePart + ")";
    };
    params.parameters = {{"input-frame-part", "left"},
                         {"output-frame-part", "set once more: lost"}};
    process(KZ::Size(64, 48));
    params.reset();
    process(KZ::Size(64, 48));
    EXPECT_EQ("(left,)(,)", seen);
}

TEST_F(GreToVi, MisuseIsAnAssertion) {
    EXPECT_EQ("found != params.images.end()", conditionOf([&] { wrapper.processFrame(params); }));
    EXPECT_EQ("(frame).size() == (frameSize_)", conditionOf([&] { process(KZ::Size(320, 240)); }))
        << "not initialised";
    start("");
    EXPECT_EQ("no failure", conditionOf([&] { process(KZ::Size(320, 240)); }));
    EXPECT_EQ("(frame).size() == (frameSize_)", conditionOf([&] { process(KZ::Size(160, 120)); }));
    GRE_Init(640, 480);
    EXPECT_EQ("(frame).size() == (frameSize)", conditionOf([&] { process(KZ::Size(320, 240)); }))
        << "the gesture engine would read beyond the frame";
    wrapper.release();
    EXPECT_EQ("(image.rect()).contains(rect)", conditionOf([&] { process(KZ::Size(320, 240)); }));
    for (const char* size : {"Size(-320, 240)", "Size(320 240)"})
        EXPECT_NE("no failure",
                  conditionOf([&] { start(" --size=\"" + std::string(size) + "\""); }));
}

// Through the exported functions, on camera frames: the engine halves them and gives its box back.
TEST_F(GreToVi, ReleasedEngineStartsAgain) {
    const std::vector<unsigned char> nv21(640 * 720, 128);
    const auto frame = [&] {
        VI_SetFrame(nv21.data(), 640, 720, 0);
        VI_ProcessFrame();
    };
    find(square(150, 100, 30));
    for (int i = 0; i < 2; ++i) {
        VI_Init();
        framesToSkip = 0;
        frame();
        const char* text = nullptr;
        EXPECT_EQ(1, VI_GetGesture(&text, 0));
        EXPECT_STREQ("palm", text);
        EXPECT_NE("no failure", conditionOf([] { VI_ProcessFrame(); }))
            << "a frame is for one call";
        VI_Reset();
        VI_Release();
        EXPECT_NE("no failure", conditionOf(frame)) << "released";
    }
}
