#include "RaisedHandDetector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "FakeDetector.h"
#include "GRE_Interface.h"
#include "GreCameraState.h"
#include "LogCapture.h"

using testing_support::assertionOf;
using testing_support::FakeDetector;
using testing_support::LogCapture;

namespace {

float radians(int degrees) {
    return static_cast<float>(degrees) * 3.14159265f / 180;
}

/// A way to hold the camera: by `degrees` when there is no accelerometer reading (x, y).
struct View {
    const char* what;
    float x, y;
    int degrees;

    void turnCamera() const {
        if (x != 0 || y != 0) {
            GRE_SetCameraAcceleration(x, y, 0);
        } else {
            GRE_SetCameraAngle(degrees);
        }
    }
    /// Where the scene's "down" points in the frame. A sensor at (1, 0) sees the world upright.
    KZ::PointF down() const {
        if (x == 0 && y == 0)
            return KZ::PointF(std::sin(radians(degrees)), std::cos(radians(degrees)));
        return KZ::PointF(-y, x) * (1 / std::sqrt(x * x + y * y));
    }
};

const View VIEWS[] = {
    {"0", 0, 0, 0},           {"90", 0, 0, 90},           {"180", 0, 0, 180},
    {"270", 0, 0, 270},       {"30", 0, 0, 30},           {"landscape", 9.8f, 0, 0},
    {"portrait", 0, 9.8f, 0}, {"head down", 0, -9.8f, 0}, {"tilted", -5, 7, 0}};

/// A dark frame with a round bright spot.
KZ::Image spotImage(const KZ::Size& size, const KZ::Point& spot, float radius) {
    KZ::Image frame(size, KZ::COLOR_MODE_MONO);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const float dx = float(x - spot.x), dy = float(y - spot.y);
            const float value = 255 * std::exp(-(dx * dx + dy * dy) / (radius * radius));
            *frame.data(x, y) = static_cast<unsigned char>(value);
        }
    }
    return frame;
}

/// The middle of what is bright.
KZ::PointF spotIn(const KZ::Image& mono) {
    double sum = 0, sumX = 0, sumY = 0;
    for (int y = 0; y < mono.height(); ++y) {
        for (int x = 0; x < mono.width(); ++x) {
            const double value = std::max(0, *mono.data(x, y) - 60);
            sum += value;
            sumX += value * x;
            sumY += value * y;
        }
    }
    return KZ::PointF(float(sumX / sum), float(sumY / sum));
}

}  // namespace

TEST(RaisedHandDetector, HandSizesSetZoomAndPicture) {
    RaisedHandDetector detector;
    LogCapture capture;
    for (const float smallest : {17.28f, 15.0f, 14.0f}) {
        EXPECT_EQ("", capture.text());
        detector.setHandSizes(smallest, 57.6f);
        EXPECT_FLOAT_EQ(std::max(smallest / 15, 1.0f), detector.zoom());
    }
    EXPECT_EQ("Warning: minHandSize < 15: 14", capture.text());
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
    unsigned char pixel = 0;
    KZ::Image row;
    row.createRef(&pixel, KZ::Size(1600000000, 1), KZ::COLOR_MODE_MONO);
    detector.setHandSizes(15, 60);
    EXPECT_EQ("frame too large: Size(1600000000, 1)\n",
              assertionOf([&] { detector.setData(row, 0); }));
}

// A bright spot, seen by a turned camera: the chain gets it where it is in the upright scene, also
// when the accelerometer alone tells the angle, and what the chain finds there is reported where it
// is in the frame.
TEST(RaisedHandDetector, BringsFramesUprightAndLocationsBack) {
    FakeDetector* chain = new FakeDetector(nullptr, KZ::Rect(-50, -50, 5000, 5000));
    RaisedHandDetector detector;
    detector.setDetector(KZ::SharedPtr<BaseDetector>(chain));
    const auto expectFound = [&](const View& view, float zoom, const KZ::Size& size,
                                 const KZ::Point& offset) {
        SCOPED_TRACE(testing::Message() << view.what << " " << zoom << " " << size << offset);
        view.turnCamera();
        detector.setHandSizes(15 * zoom, 60 * zoom);
        detector.setAngle(cameraAngle);
        const KZ::PointF down = view.down(), right(down.y, -down.x);
        chain->act = [&](DetectorData& frame, const KZ::DetectRegion&, DetectorResult& result) {
            const KZ::PointF found = spotIn(frame.mono);
            const float x = (offset.x * right.x + offset.y * right.y) / zoom;
            const float y = (offset.x * down.x + offset.y * down.y) / zoom;
            EXPECT_NEAR(frame.mono.width() / 2 + x, found.x, 1.2);
            EXPECT_NEAR(frame.mono.height() / 2 + y, found.y, 1.2);
            testing_support::setHit(
                result, KZ::ObjectLocation(found, KZ::SizeF(20, 30), 10, KZ::Side::RIGHT));
        };
        const KZ::Point spot(size.width / 2 + offset.x, size.height / 2 + offset.y);
        DetectorData data;
        data.inputImage = spotImage(size, spot, 3 * zoom);
        DetectorResult result;
        detector.detect(data, KZ::DetectRegion(), result);
        EXPECT_NEAR(spot.x, result.location.center.x, zoom);
        EXPECT_NEAR(spot.y, result.location.center.y, zoom);
        EXPECT_FLOAT_EQ(20 * zoom, result.location.size.width);
        EXPECT_FLOAT_EQ(30 * zoom, result.location.size.height);
        const float degrees = (cameraAngle + (cameraAngle < 0 ? 6.2831855f : 0)) * 57.29578f;
        EXPECT_NEAR(degrees + 10, result.location.angle, 1e-3);
        EXPECT_EQ("palm", result.name);
    };
    for (const View& view : VIEWS)
        for (const float zoom : {1.0f, 1.7f, 3.0f})
            for (const KZ::Size& size : {KZ::Size(320, 240), KZ::Size(161, 223)})
                for (const KZ::Point& offset : {KZ::Point(-55, -60), KZ::Point(45, 70)})
                    expectFound(view, zoom, size, offset);
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
