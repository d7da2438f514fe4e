#include "GuardedBuffer.h"
#include "KZ_Yuv420Converter.h"
#include "LogCapture.h"
#include "TestEngine.h"

using namespace testing_support;
using KZ::Size;

namespace {

class SetFrameTest : public ViTest {
protected:
    SetFrameTest() : buffer(8 * 6) {}
    void SetUp() override {
        unsigned seed = 5;
        for (unsigned char& byte : buffer) byte = (seed = seed * 1103515245u + 12345u) >> 16;
    }

    // Sets the first `width` by `height` bytes or pixels of `buffer`.
    void set(const char* name, const char* format, bool zoom, int width, int height) {
        info().imageNames = {name};
        info().parameters.clear();
        if (format) info().parameters["image-format"] = format;
        if (swapRedBlue) info().parameters["swap-red-blue"] = swapRedBlue;
        zoomTwice = zoom;
        VI_SetFrame(buffer.data(), width, height, 0);
    }
    // What the engine is given.
    KZ::Image processed(const char* name) {
        VI_ProcessFrame();
        pixels = engine->frame.images[name].data();
        return engine->frame.images[name];
    }
    KZ::Image intake(const char* name, const char* format, bool zoom, int width, int height) {
        set(name, format, zoom, width, height);
        return processed(name);
    }

    GuardedBuffer<unsigned char> buffer;
    const char* swapRedBlue = nullptr;
    const unsigned char* pixels = nullptr;  // of the last frame
};

}  // namespace

// Converted pixels are the library's own: the caller may reuse its buffer.
TEST_F(SetFrameTest, ConvertsByFormat) {
    const struct {
        const char *format, *swap;
        bool zoom, uFirst, swapped;
    } rows[] = {{nullptr, nullptr, false, false, false},
                {"17", "0", true, false, false},
                {"17", "1", true, false, true},
                {"35", "2", true, true, true}};
    for (const auto& row : rows) {
        SetUp();
        KZ::Image source, expected;
        source.createRef(buffer.data(), Size(8, 6), KZ::COLOR_MODE_BGR);
        swapRedBlue = row.swap;
        KZ::yuv420toBgr(source, expected, row.zoom, row.swapped, row.uFirst);
        set("bgr", row.format, row.zoom, 8, 6);
        for (unsigned char& byte : buffer) byte = 0;
        EXPECT_EQ(expected, processed("bgr"));
    }
}

// The buffer ends where a picture of the told size does: nothing beyond it is touched.
TEST_F(SetFrameTest, TakesGreyAndPackedPicturesAsTheyAre) {
    EXPECT_EQ(Size(8, 6), intake("mono", nullptr, false, 8, 6).size());
    EXPECT_EQ(buffer.data(), pixels);
    const KZ::Image half = intake("mono", "35", true, 8, 6);
    EXPECT_EQ(Size(4, 3), half.size());
    EXPECT_EQ((buffer[38] + buffer[39] + buffer[46] + buffer[47]) >> 2, half.data(3, 2)[0]);
    EXPECT_EQ(Size(4, 4), intake("bgr", "41", false, 4, 4).size());
    EXPECT_EQ(buffer.data(), pixels);
    const KZ::Image small = intake("bgr", "41", true, 4, 4);
    EXPECT_EQ(KZ::COLOR_MODE_BGR, small.colorMode());
    EXPECT_EQ((buffer[32] + buffer[35] + buffer[44] + buffer[47]) >> 2, small.data(1, 1)[2]);
}

TEST_F(SetFrameTest, RefusesAndFilesNothing) {
    const struct {
        const char *name, *format;
        int width, height, i;
        const char* detail;
    } rows[] = {
        {"bgr", "17", 8, 6, -1, "-1 < 0\n"},
        {"bgr", "17", 8, 6, 1, "1 >= 1\n"},
        {"bgr", "18", 8, 6, 0,
         "Unsupported image format for android: 18. For now only (17)NV21, (35)YUV_421_888, "
         "(41)FLEX_RGB_888 iterpreted as BGR24\n\n"},
        {"rgb", "35", 8, 6, 0, "unsupported color mode: COLOR_MODE_RGB\n"},
        {"camera", "17", 8, 6, 0, "cannot parse color mode from camera\n"},
        {"mono", "17", -8, -6, 0, "wrong frame size Size(-8, -6)\n"},
        {"bgr", "41", 40000, 20000, 0, "wrong frame size Size(40000, 20000)\n"},
        {"bgr", "17", 8, 2, 0, "empty rect: Rect(0, 0, 8, 0)\n"},
        {"mono", "17", 8, 0, 0, "empty rect: Rect(0, 0, 8, 0)\n"},
    };
    for (const auto& row : rows) {
        info().imageNames = {row.name};
        info().parameters["image-format"] = row.format;
        EXPECT_EQ(row.detail,
                  assertionOf([&] { VI_SetFrame(buffer.data(), row.width, row.height, row.i); }));
        EXPECT_TRUE(viFrameParameters.images.empty());
        expectNoLockHeld();
    }
}

using SetFrameDeathTest = SetFrameTest;

TEST_F(SetFrameDeathTest, NullFrameEndsTheProcess) {
    EXPECT_DEATH(VI_SetFrame(nullptr, 8, 6, 0), "");
}
