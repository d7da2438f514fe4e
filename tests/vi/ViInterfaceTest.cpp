#include <atomic>
#include <climits>
#include <thread>

#include "KZ_DebugImages.h"
#include "LogCapture.h"
#include "TestEngine.h"

using namespace testing_support;
using ViInterfaceTest = ViTest;

namespace {

// Outputs of all readers.
struct Out {
    float a = 9, b = 9, c = 9, d = 9;
    const char* text = "unset";
    const char* text2 = "unset";
    const void* data = &text;
    int width = 9, height = 9, pitch = 9;
};

const struct {
    const char* name;
    std::function<int(Out&, int)> read;
    std::string present, absent;
} READERS[] = {
    {"gesture", [](Out& o, int i) { return VI_GetGesture(&o.text, i); },
     "9 9 9 9 palm unset 9x9/9 data", "9 9 9 9  unset 9x9/9 data"},
    {"rect", [](Out& o, int i) { return VI_GetRect(&o.a, &o.b, &o.c, &o.d, i); },
     "1 2 30 40 unset unset 9x9/9 data", "0 0 0 0 unset unset 9x9/9 data"},
    {"point", [](Out& o, int i) { return VI_GetPoint(&o.a, &o.b, i); },
     "5 6 9 9 unset unset 9x9/9 data", "0 0 9 9 unset unset 9x9/9 data"},
    {"point3d", [](Out& o, int i) { return VI_GetPoint3d(&o.a, &o.b, &o.c, i); },
     "7 8 9.5 9 unset unset 9x9/9 data", "0 0 0 9 unset unset 9x9/9 data"},
    {"float", [](Out& o, int i) { return VI_GetFloat(&o.a, i); },
     "0.25 9 9 9 unset unset 9x9/9 data", "0 9 9 9 unset unset 9x9/9 data"},
    {"parameter", [](Out& o, int i) { return VI_GetParameter("key", &o.text, i); },
     "9 9 9 9 value unset 9x9/9 data", "9 9 9 9 null unset 9x9/9 data"},
    {"frame", [](Out& o, int i) { return VI_GetFrame(&o.data, &o.width, &o.height, i); },
     "9 9 9 9 unset unset 4x3/9 data", "9 9 9 9 unset unset 0x0/9 null"},
    {"colour mode", [](Out& o, int i) { return VI_GetFrameColorMode_(&o.text, i); },
     "9 9 9 9 COLOR_MODE_BGR unset 9x9/9 data", "9 9 9 9 null unset 9x9/9 data"},
    {"debug image",
     [](Out& o, int i) {
         return VI_GetDebugImage_(&o.text2, &o.data, &o.text, &o.width, &o.height, &o.pitch, i);
     },
     "9 9 9 9 COLOR_MODE_MONO16 edges 5x2/10 data", "9 9 9 9 null null 0x0/0 null"},
};

std::string shown(const Out& o) {
    const auto text = [](const char* t) { return t ? t : "null"; };
    return KZ::joined(o.a, " ", o.b, " ", o.c, " ", o.d, " ", text(o.text), " ", text(o.text2), " ",
                      o.width, "x", o.height, "/", o.pitch, o.data ? " data" : " null");
}

void giveOneOfEach(KZ::ViResult& result) {
    result.gestures = {"palm"};
    result.rects = {KZ::RectF(1, 2, 30, 40)};
    result.points = {KZ::PointF(5, 6)};
    result.points3d = {KZ::Point3d(7, 8, 9.5f)};
    result.floats = {.25f};
    result.parameters = {{{"key", "value"}}};
    result.images.emplace_back(KZ::Size(4, 3), KZ::COLOR_MODE_BGR);
}

}  // namespace

TEST_F(ViInterfaceTest, ReadersGiveElementsAndThenZeros) {
    engine->onFrame = giveOneOfEach;
    VI_ProcessFrame();
    KZ::DebugImages::add(KZ::Image(KZ::Size(5, 2), KZ::COLOR_MODE_MONO16), "edges", 1);
    for (const auto& reader : READERS) {
        SCOPED_TRACE(reader.name);
        for (const int i : {0, 1, INT_MAX}) {
            Out out;
            EXPECT_EQ(i == 0, reader.read(out, i));
            EXPECT_EQ(i == 0 ? reader.present : reader.absent, shown(out));
        }
        Out out;
        EXPECT_EQ("-1 < 0\n", assertionOf([&] { reader.read(out, -1); }));
        expectNoLockHeld();
    }
    KZ::DebugImages::reset();
    const char* value = "unset";
    EXPECT_EQ(0, VI_GetParameter("other", &value, 0));
    EXPECT_EQ(nullptr, value);
}

TEST_F(ViInterfaceTest, ParametersHoldForOneFrame) {
    VI_SetRoi(1, 2, 3, 4);
    VI_SetRoi(INT_MIN, -5, 0, INT_MAX);
    VI_SetFrameParameter("key", "first");
    VI_SetFrameParameter("key", "second");
    VI_ProcessFrame();
    const std::map<std::string, std::string> expected = {
        {"rect", "Rect(-2147483648, -5, 0, 2147483647)"}, {"key", "first"}};
    EXPECT_EQ(expected, engine->frame.parameters);
    VI_ProcessFrame();
    EXPECT_TRUE(engine->frame.parameters.empty());
}

TEST_F(ViInterfaceTest, FailedFrameKeepsOldResultsAndLeavesNothingBehind) {
    const unsigned char pixels[6] = {};
    engine->onFrame = giveOneOfEach;
    VI_ProcessFrame();
    engine->onFrame = [](KZ::ViResult&) { KZ_ASSERT(0, "broken"); };
    VI_SetFrame(pixels, 2, 3, 0);
    VI_SetFrameParameter("key", "value");
    EXPECT_EQ("broken\n", assertionOf([] { VI_ProcessFrame(); }));
    expectNoLockHeld();
    float score = 0;
    EXPECT_EQ(1, VI_GetFloat(&score, 0));
    EXPECT_EQ(.25f, score);
    engine->onFrame = [](KZ::ViResult& result) { result.floats = {1, 2}; };
    VI_ProcessFrame();
    EXPECT_TRUE(engine->frame.parameters.empty() && engine->frame.images.empty());
    EXPECT_EQ(1, VI_GetFloat(&score, 1));
}

TEST_F(ViInterfaceTest, InitReadsZoomTwice) {
    const char* const values[] = {"1", "0", "-2"};
    for (const char* value : values) {
        info().parameters["zoom-twice"] = value;
        VI_Init();
        EXPECT_EQ(*value != '0', zoomTwice);
    }
    info().parameters.clear();
    VI_Init();
    EXPECT_TRUE(zoomTwice) << "stays where nothing is said";
    info().parameters["zoom-twice"] = "twice";
    EXPECT_EQ("1 == 1\n", assertionOf([] { VI_Init(); }));
    expectNoLockHeld();
}

TEST_F(ViInterfaceTest, NullArgumentsAreRefused) {
    float f;
    const std::function<void()> calls[] = {
        [] { VI_SetParameter(nullptr, "1"); },       [] { VI_SetFrameParameter("a", nullptr); },
        [] { VI_Request_(nullptr, "1"); },           [] { VI_GetGesture(nullptr, 0); },
        [&] { VI_GetRect(&f, &f, &f, nullptr, 0); }, [] { VI_GetParameter("a", nullptr, 0); },
    };
    for (const auto& call : calls) EXPECT_NE("no failure", conditionOf(call));
    expectNoLockHeld();
}

// Frames on one thread, readers and setters on another: every answer belongs to one frame.
TEST_F(ViInterfaceTest, ReadersRunBesideFrames) {
    std::atomic<bool> done{false};
    std::atomic<int> torn{0};
    int frames = 0;
    engine->onFrame = [&](KZ::ViResult& result) {
        const float number = static_cast<float>(++frames);
        result.rects.assign(1 + frames % 3, KZ::RectF(number, number, number, number));
        result.images.emplace_back(KZ::Size(8, 8), KZ::COLOR_MODE_MONO);
    };
    std::thread reader([&] {
        const void* data;
        int width, height;
        float a, b, c, d;
        while (!done) {
            if (VI_GetRect(&a, &b, &c, &d, 0) && !(a == b && b == c && c == d)) ++torn;
            VI_GetFrame(&data, &width, &height, 0);
            VI_SetRoi(0, 0, 1, 1);
        }
    });
    const std::vector<unsigned char> pixels(16 * 24, 128);
    for (int i = 0; i < 200; ++i) {
        VI_SetFrame(pixels.data(), 16, 24, 0);
        VI_ProcessFrame();
    }
    done = true;
    reader.join();
    EXPECT_EQ(0, torn);
    EXPECT_EQ(200, frames);
}
