#include <climits>

#include "GuardedBuffer.h"
#include "KZ_Yuv420Converter.h"
#include "LogCapture.h"
#include "TestEngine.h"

using namespace testing_support;
using KZ::Size;

namespace {

class SetFrameTest : public ViTest {
protected:
    SetFrameTest() : buffer(8 * 6) {
        unsigned seed = 5;
        for (unsigned char& byte : buffer) byte = (seed = seed * 1103515245u + 12345u) >> 16;
    }

    // What the engine is given for `buffer`, taken as 8 by 6 bytes.
    KZ::Image intake(const char* name, const char* format, bool zoom, int width, int height) {
        info().imageNames = {name};
        info().parameters.clear();
        if (format) info().parameters["image-format"] = format;
        if (swapRedBlue) info().parameters["swap-red-blue"] = swapRedBlue;
        zoomTwice = zoom;
        VI_SetFrame(buffer.data(), width, height, 0);
        VI_ProcessFrame();
        KZ::Image image;
        image.createRef(engine->frame.images[name]);
        pixels = image.data();
        return image;
    }

    GuardedBuffer<unsigned char> buffer;
    const char* swapRedBlue = nullptr;
    const unsigned char* pixels = nullptr;  // of the last intake
};

}  // namespace

TEST_F(SetFrameTest, ConvertsByFormat) {
    struct Row {
        const char* format;
        const char* swap;
        bool zoom, uFirst, swapped;
    };
    const Row rows[] = {{nullptr, nullptr, false, false, false},
                        {"17", "0", true, false, false},
                        {"17", "1", true, false, true},
                        {"35", nullptr, false, true, false},
                        {"35", "2", true, true, true}};
    KZ::Image source, expected;
    source.createRef(buffer.data(), Size(8, 6), KZ::COLOR_MODE_BGR);
    for (const Row& row : rows) {
        swapRedBlue = row.swap;
        KZ::yuv420toBgr(source, expected, row.zoom, row.swapped, row.uFirst);
        EXPECT_EQ(expected, intake("bgr", row.format, row.zoom, 8, 6));
    }
    EXPECT_EQ(Size(4, 2), expected.size());
}

TEST_F(SetFrameTest, ConvertedPixelsAreTheLibrarysOwn) {
    VI_SetFrame(buffer.data(), 8, 6, 0);
    KZ::Image source, expected;
    source.createRef(buffer.data(), Size(8, 6), KZ::COLOR_MODE_BGR);
    KZ::yuv420toBgr(source, expected, false, false, false);
    for (unsigned char& byte : buffer) byte = 0;
    VI_ProcessFrame();
    EXPECT_EQ(expected, engine->frame.images["bgr"]);
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
    struct Row {
        const char *name, *format;
        int width, height, i;
        const char *condition, *detail;
    };
    const Row rows[] = {
        {"bgr", "17", 8, 6, -1, "(i) >= (0)", "-1 < 0\n"},
        {"bgr", "17", 8, 6, 1,
         "(i) < ((int)ViInterfaceSingleton::get()->getEngineInfo().imageNames.size())", "1 >= 1\n"},
        {"bgr", "18", 8, 6, 0, "imageFormat == 17 || imageFormat == 35 || imageFormat == 41",
         "Unsupported image format for android: 18. For now only (17)NV21, (35)YUV_421_888, "
         "(41)FLEX_RGB_888 iterpreted as BGR24\n\n"},
        {"rgb", "35", 8, 6, 0, "0", "unsupported color mode: COLOR_MODE_RGB\n"},
        {"camera", "17", 8, 6, 0, "0", "cannot parse color mode from camera\n"},
        {"mono", "17", -8, -6, 0, "width >= 0", "wrong frame size Size(-8, -6)\n"},
        {"bgr", "41", INT_MAX, INT_MAX, 0, "width >= 0",
         "wrong frame size Size(2147483647, 2147483647)\n"},
        {"bgr", "17", 8, 2, 0, "rect.area()", "empty rect: Rect(0, 0, 8, 0)\n"},
        {"mono", "17", 8, 0, 0, "rect.area()", "empty rect: Rect(0, 0, 8, 0)\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.detail);
        info().imageNames = {row.name};
        info().parameters["image-format"] = row.format;
        const auto failure =
            failureOf([&] { VI_SetFrame(buffer.data(), row.width, row.height, row.i); });
        EXPECT_EQ(0u, failure.condition.find(row.condition)) << failure.condition;
        EXPECT_EQ(row.detail, failure.detail);
        EXPECT_TRUE(viFrameParameters.images.empty());
        expectNoLockHeld();
    }
}

using SetFrameDeathTest = SetFrameTest;

TEST_F(SetFrameDeathTest, NullFrameEndsTheProcess) {
    EXPECT_DEATH(VI_SetFrame(nullptr, 8, 6, 0), "");
}
