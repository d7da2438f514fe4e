#include <cmath>
#include <vector>

#include "GreFixture.h"
#include "KZ_Limits.h"
#include "LogCapture.h"

using testing_support::assertionOf;
using testing_support::conditionOf;
using testing_support::square;

namespace {

class GreFrameLoop : public GreFixture {
protected:
    /// Frames of 200 by 160, of which the chain's picture is 280 by 160: 40 more on either side.
    void SetUp() override {
        GreFixture::SetUp();
        startUnzoomed(200, 160);
        pixels.assign(200 * 160, 77);
    }
    bool process() { return GRE_ProcessFrame(pixels.data()); }
    /// A hit around frame point (x, y).
    void findAt(float x, float y, float width) { find(square(x + 40, y, width)); }

    std::vector<unsigned char> pixels;
};

}  // namespace

TEST_F(GreFrameLoop, GateFollowsTheSmoothedSpeed) {
    const float toLimit = 0.66666669f;  // one still frame brings it to the limit
    for (const float speed : {toLimit, std::nextafter(toLimit, 1.0f)}) {
        averageSpeed = speed;
        process();
        EXPECT_EQ(speed == toLimit, averageSpeed == 0.6f);
        EXPECT_EQ(speed == toLimit ? "" : "MOVING", gesture()) << "the limit itself is open";
    }

    averageSpeed = 0;
    GRE_SetCameraAcceleration(2, 3, 6);  // 7 away
    const float expected[] = {0.70000017f, 0.63f, 0.567f};
    for (const float speed : expected) {
        framesToSkip = 2;
        EXPECT_TRUE(process());
        EXPECT_FLOAT_EQ(speed, averageSpeed);
        EXPECT_EQ(speed > 0.6f ? "MOVING" : "", gesture());
        EXPECT_EQ(speed > 0.6f ? 2 : 1, framesToSkip) << "no rest is used up while it moves";
    }
}

TEST_F(GreFrameLoop, MovingNeedsNoFrameAndRunsNoDetector) {
    findAt(50, 50, 20);
    process();
    EXPECT_EQ(1, GRE_GetGestureInt());
    EXPECT_FALSE(GRE_ProcessFrame(nullptr));
    EXPECT_EQ(1, GetGesture()) << "a null frame changes nothing";
    averageSpeed = 10;
    EXPECT_TRUE(GRE_ProcessFrame(nullptr));
    EXPECT_EQ("MOVING", gesture());
    EXPECT_EQ(0, GRE_GetGestureInt());
    EXPECT_EQ(KZ::Rect(), box());
    EXPECT_EQ(1, chain->detects);
}

TEST_F(GreFrameLoop, RestsFiveFramesAfterAHit) {
    findAt(50, 50, 20);
    std::string log;
    for (int i = 0; i < 14; ++i) {
        process();
        log += gesture() == "palm" ? 'P' : '.';
    }
    EXPECT_EQ("P.....P.....P.", log);
    EXPECT_EQ(3, chain->detects);
}

TEST_F(GreFrameLoop, ScoreIsStoredWithAndWithoutAHit) {
    const float rows[][2] = {{0.25f, 0.25f}, {1.0f, 1.0f}, {1.0000001f, 0}, {3.4e38f, 0}};
    for (const bool hit : {true, false}) {
        for (const float(&row)[2] : rows) {
            framesToSkip = 0;
            find(hit ? square(90, 50, 20) : KZ::ObjectLocation(), row[0]);
            process();
            EXPECT_EQ(hit ? "palm" : "", gesture());
            EXPECT_EQ(row[1], score()) << hit;
        }
    }
}

TEST_F(GreFrameLoop, BoxGoesToFrameCoordinates) {
    struct Row {
        const char* what;
        bool flip;
        KZ::Rect region;
        KZ::Rect expected;
    };
    const Row rows[] = {
        {"mirrored", true, KZ::Rect(0, 0, 200, 160), KZ::Rect(185, 5, 195, 15)},
        {"region", false, KZ::Rect(10, 20, 110, 120), KZ::Rect(15, 25, 25, 35)},
        {"mirrored within the region", true, KZ::Rect(10, 20, 110, 120), KZ::Rect(95, 25, 105, 35)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        isFlip = row.flip;
        GRE_SetRoi(row.region.left, row.region.top, row.region.right, row.region.bottom);
        framesToSkip = 0;
        // The chain's picture is 1.4 times as wide as the region, which is in its middle.
        find(square(10 + row.region.width() * 0.2f, 10, 10));
        process();
        EXPECT_EQ(row.expected, box());

        find(KZ::ObjectLocation());
        process();
        const int side = row.region.left + (row.flip ? row.region.width() : 0);
        EXPECT_EQ(KZ::Rect(side, row.region.top, side, row.region.top), box())
            << "a cleared box is mapped as any other";
    }
}

// Width 20: up to 2 pixels and 3 in width count as unmoved. A larger step gives the mean of the
// boxes. The rest frames between two hits forget the place.
TEST_F(GreFrameLoop, SmoothsTheBoxOnRequest) {
    struct Row {
        const char* what;
        float x, width;
        bool rest;
        KZ::Rect expected;
    };
    const Row rows[] = {
        {"first", 50, 20, false, KZ::Rect(40, 40, 60, 60)},
        {"hardly moved", 51.5f, 20, false, KZ::Rect(40, 40, 60, 60)},
        {"hardly grown", 50, 22.5f, false, KZ::Rect(40, 40, 60, 60)},
        {"moved", 56, 20, false, KZ::Rect(43, 40, 63, 60)},
        {"grown", 56, 30, false, KZ::Rect(43, 37, 68, 62)},
        {"after a rest", 80, 30, true, KZ::Rect(65, 35, 95, 65)},
    };
    useSmoothing = true;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        framesToSkip = row.rest ? 1 : 0;
        findAt(row.x, 50, row.width);
        process();
        if (row.rest) process();
        EXPECT_EQ(row.expected, box());
    }
    find(KZ::ObjectLocation());
    framesToSkip = 0;
    process();  // leaves no place for the next test
}

// Where a palm was confirmed in a frame that was far larger than this one.
TEST_F(GreFrameLoop, PlacesBeyondNumbersStopAtTheLastNumber) {
    const int lowest = KZ::minValue<int>(), highest = KZ::maxValue<int>();
    for (const bool flip : {false, true}) {
        startUnzoomed(200, 160);
        GRE_SetRoi(1, 1, 200, 160);
        isFlip = flip;
        framesToSkip = 0;
        find(KZ::ObjectLocation(KZ::PointF(3e9f, -3e9f), KZ::SizeF(20, 20), 0, KZ::Side::RIGHT));
        process();
        const int x = flip ? lowest + 201 : highest;
        EXPECT_EQ(KZ::Rect(x, lowest + 1, x, lowest + 1), box());
    }
}

TEST_F(GreFrameLoop, MisuseIsAnAssertionAndLeavesTheEngineUsable) {
    struct Row {
        const char* what;
        int width, height;
        KZ::Rect region;
        const char* condition;
    };
    const Row rows[] = {
        {"no frame size", 0, 0, KZ::Rect(), "rect.area()"},
        {"beyond the right edge", 200, 160, KZ::Rect(0, 0, 201, 160),
         "(image.rect()).contains(rect)"},
        {"inverted", 200, 160, KZ::Rect(90, 90, 10, 10),
         "roi.left <= roi.right && roi.top <= roi.bottom"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        GRE_Init(row.width, row.height);
        GRE_SetRoi(row.region.left, row.region.top, row.region.right, row.region.bottom);
        EXPECT_EQ(row.condition, conditionOf([&] { process(); }));
    }
    EXPECT_EQ("(width) >= (0)", conditionOf([] { GRE_Init(-1, 5); }));
    EXPECT_EQ("wrong frame size Size(65536, 65536)\n",
              assertionOf([] { GRE_Init(1 << 16, 1 << 16); }));
    EXPECT_EQ("(pointNumber) >= (0)", conditionOf([] { GRE_GetPoint(-1, 0, 0, 0); }));
    EXPECT_EQ("(pointNumber) < ((int)greResultData.points.size())",
              conditionOf([] { GRE_GetPoint(0, 0, 0, 0); }));

    startUnzoomed(200, 160);
    findAt(50, 50, 20);
    process();
    EXPECT_EQ(KZ::Rect(40, 40, 60, 60), box());
    chain->act = [](DetectorData&, const KZ::DetectRegion&, DetectorResult&) {
        KZ_ASSERT(0, "from the chain");
    };
    framesToSkip = 0;
    EXPECT_EQ("from the chain\n", assertionOf([&] { process(); }));
    EXPECT_EQ(KZ::Rect(40, 40, 60, 60), box()) << "the result before stays";
}

// Regions down to a pixel, at every camera angle and with every reduction: no answer, or an
// assertion where the picture is smaller than the reduction's block.
TEST_F(GreFrameLoop, TinyRegionsAreDefined) {
    for (const float zoom : {1.0f, 1.9f, 3.5f}) {
        raisedHandDetector.setHandSizes(15 * zoom, 60 * zoom);
        for (int size = 1; size < 6; ++size) {
            for (int angle = 0; angle < 360; angle += 45) {
                SCOPED_TRACE(testing::Message() << zoom << " " << size << " " << angle);
                GRE_SetRoi(200 - size, 160 - size, 200, 160);
                GRE_SetCameraAngle(angle);
                const std::string refused = assertionOf([&] { process(); });
                EXPECT_EQ(size < int(zoom) ? testing::PrintToString(size) + " < 3\n" : "no failure",
                          refused);
            }
        }
    }
}
