#include <cmath>

#include "GreFixture.h"
#include "LogCapture.h"

using testing_support::assertionOf;
using testing_support::LogCapture;

namespace {

class GreParameters : public GreFixture {};

}  // namespace

TEST_F(GreParameters, HandSizeFollowsFrameShapeAndOptions) {
    struct Row {
        int width, height;
        const char* options;
        double k;
        int farthest, fov;
    };
    const Row rows[] = {
        {320, 240, "", 8.49, 100, 89},
        {240, 320, "--min-distance=40", 8.49, 100, 89},
        {640, 480, "--max-distance=120 --fov-angle=60", 8.49, 120, 60},
        {1280, 720, "--fov-angle=70", 9.23, 120, 70},  // the distance given before stays
        {300, 300, "", 10.06, 120, 70},
        {300, 240, "", 9.17, 120, 70},
        {40000, 30000, "", 8.49, 120, 70},  // the square of the diagonal is beyond int
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.width << "x" << row.height << row.options);
        GRE_Init(row.width, row.height);
        GRE_SetParameters(row.options);
        // Brings a hand of k units at the farthest distance to 15 pixels.
        const double tangent = std::tan(row.fov * 0.5 * 3.14159265358979 / 180);
        const double zoom =
            row.k * std::hypot(row.width, row.height) / (2 * tangent * row.farthest) / 15;
        EXPECT_NEAR(zoom, raisedHandDetector.zoom(), zoom * 1e-5);
    }
}

TEST_F(GreParameters, ReportsBadOptions) {
    GRE_SetParameters("--min-distance=40");
    EXPECT_EQ(30, minDistance) << "before GRE_Init nothing is read";
    LogCapture capture;
    GRE_Init(300, 240);
    EXPECT_EQ("undefined ratio of camera (using default value)", capture.text());
    GRE_Init(320, 240);
    const float zoom = raisedHandDetector.zoom();
    EXPECT_EQ(
        "max-distance must be more than min-distance: min-distance = 100, "
        "max-distance = 100\n",
        assertionOf([] { GRE_SetParameters("--min-distance=100"); }));
    EXPECT_EQ(100, minDistance) << "stored all the same";
    EXPECT_EQ(zoom, raisedHandDetector.zoom());
    EXPECT_EQ(" == NULL\n", assertionOf([] { GRE_SetParameters(nullptr); }));

    // What cannot be a hand size is refused under the guard.
    for (const char* options :
         {"--fov-angle=0 --min-distance=30", "--fov-angle=89 --min-distance=0", "--min-distance=-5",
          "--min-distance=-10 --max-distance=-5"}) {
        capture.clear();
        GRE_SetParameters(options);
        EXPECT_NE(std::string::npos,
                  capture.text().find("'raisedHandDetector.setHandSizes(minHandSize, maxHandSize)' "
                                      "non-standart exception occured"))
            << options;
    }
}

TEST_F(GreParameters, AccelerometerSetsTheAngle) {
    struct Row {
        const char* what;
        float x, y, z, angle;
    };
    const Row rows[] = {
        {"flat without a history", 0, 0, 9.8f, 0},  // enters the history as any reading
        {"landscape", 9.8f, 0, 0, 0},
        {"portrait", 0, 9.8f, 0, -1.5707964f},
        {"upside down", 0, -9.8f, 0, 1.5707964f},
        {"tilted: 2 in the plane is not below", 4, 0, 8.9f, 0},
        {"tilted: 8 along the view is not above", 0, 1, 8, -1.5707964f},
        {"flat: the upper median of -1.57 twice, 0 three times, 1.57", 0, 0, 9.8f, 0},
        {"again, nothing was added", 1, -1, 9, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        GRE_SetCameraAcceleration(row.x, row.y, row.z);
        EXPECT_FLOAT_EQ(row.angle, cameraAngle);
        EXPECT_EQ(KZ::Point3d(row.x, row.y, row.z), cameraAccel);
    }
    EXPECT_EQ(6u, angleHist.size());
    // Any of these would close the gate for good.
    for (const float wrong : {HUGE_VALF, std::nanf(""), 1e30f, -2e6f})
        EXPECT_EQ(KZ::joined("wrong acceleration: 0, ", wrong, ", 0\n"),
                  assertionOf([&] { GRE_SetCameraAcceleration(0, wrong, 0); }));
}

TEST_F(GreParameters, InitResetAndReleaseTouchWhatTheyShould) {
    GRE_Init(320, 240);
    GRE_SetCameraFlip(true);
    GRE_SetCameraAcceleration(9, 1, 1);
    GRE_ProcessFrame(nullptr);
    EXPECT_EQ("MOVING", gesture());
    framesToSkip = 4;
    const float speed = averageSpeed;
    GRE_SetRoi(1, 2, 3, 4);
    GRE_Reset();
    EXPECT_EQ("", gesture());
    EXPECT_EQ(KZ::Rect(1, 2, 3, 4), roi);
    GRE_Init(160, 120);
    EXPECT_EQ(speed, averageSpeed);
    EXPECT_TRUE(isFlip && angleHist.size() == 1);
    for (int i = 0; i < 2; ++i) GRE_Release();
    EXPECT_EQ(KZ::Size(), frameSize);
    EXPECT_EQ(KZ::Rect(0, 0, 160, 120), roi);
    EXPECT_EQ(KZ::Point3d(), cameraAccel);
    EXPECT_TRUE(!isFlip && angleHist.size() == 0 && averageSpeed == 0);
    EXPECT_EQ(4, framesToSkip) << "the rest after a hit outlives all three";
}
