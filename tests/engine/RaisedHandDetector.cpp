#include "RaisedHandDetector.h"

#include <gtest/gtest.h>

#include <cmath>

#include "FakeDetector.h"
#include "GRE_Interface.h"
#include "GreCameraState.h"
#include "LogCapture.h"
#include "Scenes.h"

using testing_support::assertionOf;
using testing_support::FakeDetector;
using testing_support::LogCapture;

TEST(RaisedHandDetector, HandSizesSetZoomAndPicture) {
    struct Row {
        float smallest, largest, zoom;
        const char* log;
    };
    const Row rows[] = {{14, 50, 1, "Warning: minHandSize < 15: 14"},
                        {15, 50, 1, ""},
                        {17.28f, 57.6f, 1.152f, ""},
                        {45, 135, 3, ""}};
    RaisedHandDetector detector;
    for (const Row& row : rows) {
        LogCapture capture;
        detector.setHandSizes(row.smallest, row.largest);
        EXPECT_FLOAT_EQ(row.zoom, detector.zoom());
        EXPECT_EQ(row.log, capture.text());
    }
    EXPECT_EQ("numlevels must be >= 1\n", assertionOf([&] { detector.setHandSizes(100, 8); }));
    EXPECT_EQ("wrong hand sizes: 20, inf\n",
              assertionOf([&] { detector.setHandSizes(20, HUGE_VALF); }));
    // A reduction by 2 and by 1.25, turned on its side, with room beside a turned hand.
    detector.setHandSizes(37.5f, 60);
    detector.setData(KZ::Image(KZ::Size(320, 240), KZ::COLOR_MODE_MONO), radians(270));
    EXPECT_EQ(KZ::Size(134, 128), detector.rotatedFrame().size());
    const KZ::Image bgr(KZ::Size(20, 20), KZ::COLOR_MODE_BGR);
    const testing_support::Assertion failure =
        testing_support::failureOf([&] { detector.setData(bgr, 0); });
    EXPECT_EQ("(currentFrame).colorMode() == (KZ::COLOR_MODE_MONO)", failure.condition);
    EXPECT_EQ("have COLOR_MODE_BGR, but need COLOR_MODE_MONO\n", failure.detail);
}

// A scene whose brightness tells every place and direction apart, seen by a turned camera: the
// chain gets it upright, also when the accelerometer alone tells the angle.
TEST(RaisedHandDetector, BringsTheSceneUpright) {
    for (const View& view : views()) {
        for (const float zoom : {1.0f, 1.7f, 3.0f}) {
            for (const KZ::Size& size : {KZ::Size(320, 240), KZ::Size(161, 223)}) {
                SCOPED_TRACE(testing::Message() << view.what << " zoom " << zoom << " " << size);
                view.turnCamera();
                RaisedHandDetector detector;
                detector.setHandSizes(15 * zoom, 60 * zoom);
                detector.setData(photograph(size, view), cameraAngle);

                const KZ::Image& picture = detector.rotatedFrame();
                float worst = 0;
                for (int dy = -30; dy <= 30; dy += 5) {
                    for (int dx = -30; dx <= 30; dx += 5) {
                        const int x = picture.width() / 2 + int(dx / zoom);
                        const int y = picture.height() / 2 + int(dy / zoom);
                        const float expected =
                            brightness((x - (picture.width() - 1) * 0.5f) * zoom,
                                       (y - (picture.height() - 1) * 0.5f) * zoom);
                        worst = std::max(worst, std::fabs(expected - *picture.data(x, y)));
                    }
                }
                EXPECT_LE(worst, 1.5f + zoom);
            }
        }
    }
    cameraAngle = 0;
}

// A bright spot that the chain finds in its picture is reported where it is in the frame.
TEST(RaisedHandDetector, MapsLocationsBack) {
    for (const View& view : views()) {
        for (const float zoom : {1.0f, 1.7f, 3.0f}) {
            for (const KZ::Point& spot : {KZ::Point(160, 120), KZ::Point(95, 70),
                                          KZ::Point(210, 165), KZ::Point(110, 180)}) {
                SCOPED_TRACE(testing::Message() << view.what << " zoom " << zoom << " " << spot);
                view.turnCamera();
                RaisedHandDetector detector;
                detector.setHandSizes(15 * zoom, 60 * zoom);
                detector.setAngle(cameraAngle);
                detector.setDetector(KZ::SharedPtr<BaseDetector>(
                    new FakeDetector(findSpot, KZ::Rect(-50, -50, 5000, 5000))));
                DetectorData data;
                data.inputImage = spotImage(KZ::Size(320, 240), spot, 3 * zoom);
                data.name = "frame";
                DetectorResult result;
                detector.detect(data, KZ::DetectRegion(), result);
                EXPECT_NEAR(spot.x, result.location.center.x, zoom);
                EXPECT_NEAR(spot.y, result.location.center.y, zoom);
                EXPECT_FLOAT_EQ(20 * zoom, result.location.size.width);
                EXPECT_FLOAT_EQ(30 * zoom, result.location.size.height);
                const float degrees =
                    (cameraAngle + (cameraAngle < 0 ? 6.2831855f : 0)) * 57.29578f;
                EXPECT_NEAR(degrees + 10, result.location.angle, 1e-3);
                EXPECT_EQ("palm", result.name);
            }
        }
    }
    cameraAngle = 0;
}

TEST(RaisedHandDetector, AsksTheChainBeforeItComputes) {
    FakeDetector* chain = new FakeDetector;
    RaisedHandDetector detector;
    detector.setDetector(KZ::SharedPtr<BaseDetector>(chain));
    bool computed = false;
    chain->act = [&](DetectorData& frame, const KZ::DetectRegion&, DetectorResult&) {
        computed = frame.integral.isCreated();
        EXPECT_EQ("part", frame.inputFramePart);
    };
    DetectorData data;
    data.inputImage = spotImage(KZ::Size(100, 80), KZ::Point(20, 20), 3);
    data.inputFramePart = "part";
    struct Row {
        const char* what;
        KZ::Rect needed;
        int runs;
        bool computes;
    };
    const Row rows[] = {
        {"nothing needed", KZ::Rect(), 0, false},
        {"partly inside", KZ::Rect(-20, -20, 30, 30), 1, true},
        {"beyond the picture", KZ::Rect(500, 0, 600, 50), 2, false},
    };
    detector.setAngle(1);
    detector.reset();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        chain->roi = row.needed;
        DetectorResult result("stale");
        detector.detect(data, KZ::DetectRegion(), result);
        EXPECT_EQ(row.runs, chain->detects);
        EXPECT_EQ(row.computes, computed);
        EXPECT_EQ("", result.name);
        EXPECT_EQ(KZ::Rect(0, 0, 140, 80), chain->region.rect) << "upright after the reset";
    }
}

// A frame taken as it is must not be written to when a later one of half its size is reduced.
TEST(RaisedHandDetector, NeverWritesToTheCallersPixels) {
    const KZ::Image small = spotImage(KZ::Size(100, 80), KZ::Point(20, 20), 3);
    const KZ::Image large = spotImage(KZ::Size(200, 160), KZ::Point(150, 100), 3);
    KZ::Image caller = small;
    RaisedHandDetector detector;
    detector.setData(caller, 0);
    detector.setHandSizes(30, 60);
    detector.setData(large, 0);
    EXPECT_EQ(small, caller);
}
