#include <gtest/gtest.h>

#include "AdaSupport.h"

using namespace ada_test;

namespace {

const KZ::Size SIZE(19, 14);

// The score of a stage on the window at the layer's corner.
int scoreOf(const StrongClassifier& stage, const Planes& planes) {
    KZ::Image hog;
    const KZ::Rect roi = stage.calculateHogRoi();
    if (roi.area() > 0) {
        stage.moveHogRoi(roi);
        KZ::computeIntegralHog(planes.mono, hog, roi, KZ::COLOR_MODE_INTEGRAL_HOG_UNSIGNED6);
    }
    stage.activate(planes.rmct.stripLength(), planes.integral.stripLength(), planes.zoom);
    return stage.scoreRmct(planes.rmct.data()) +
           stage.scoreHaar(planes.integral.row<unsigned int>(0)) + stage.scoreHog(hog);
}

// A wave of one direction whose gradients have no two parts of equal size, where a turned
// direction falls between two sectors.
KZ::Image wave(double degrees) {
    const double dx = std::cos(degrees * 3.14159265 / 180),
                 dy = std::sin(degrees * 3.14159265 / 180);
    const KZ::Image image =
        imageOf(SIZE, [&](int x, int y) { return 127 + 120 * std::sin((x * dx + y * dy) / 4); });
    for (int y = 1; y < SIZE.height - 1; ++y)
        for (int x = 1; x < SIZE.width - 1; ++x) {
            const KZ::Point g = gradient(image, x, y);
            EXPECT_TRUE(g == KZ::Point() || std::abs(g.x) != std::abs(g.y)) << degrees;
        }
    return image;
}

}  // namespace

// The transformed classifier sees on the transformed picture what the original sees on the
// original, and that is what the pixels say.
TEST(WeakClassifier, VotesMoveWithThePicture) {
    Random random(20260301);
    for (int i = 0; i < 240; ++i) {
        const int kind = i % 4;
        SCOPED_TRACE(kind);
        const StrongClassifier stage = randomStage(random, SIZE, kind == 0, kind == 1, kind >= 2);
        const KZ::Image image = kind == 3 ? wave(i % 8 == 3 ? 17 : 68) : randomImage(random, SIZE);
        StrongClassifier turnedStage = stage, mirroredStage = stage;
        turnedStage.rotate(SIZE);
        mirroredStage.flip(SIZE);
        const int expected = referenceScore(stage, Planes(image), 0, 0);
        EXPECT_EQ(expected, scoreOf(stage, Planes(image)));
        EXPECT_EQ(expected, scoreOf(mirroredStage, Planes(mirrored(image))));
        const int afterTurn = scoreOf(turnedStage, Planes(turned(image)));
        EXPECT_EQ(expected, kind == 2 ? expected : afterTurn);
    }
}

// A picture so bright and large that products leave 32 bits, as on the pyramid's upper layers.
TEST(WeakClassifier, HaarOfLargeRectangles) {
    Random random(20260303);
    const Planes planes(randomImage(random, KZ::Size(420, 300)), 10);
    for (int i = 0; i < 100; ++i) {
        const StrongClassifier stage = randomStage(random, planes.mono.size(), 0, 1, 0);
        EXPECT_EQ(referenceScore(stage, planes, 0, 0), scoreOf(stage, planes));
    }
}

// On white: the sums that the corners stand for leave 31 bits.
TEST(WeakClassifier, HaarBeyondTheRangeOfSums) {
    const KZ::Rect all(0, 0, 4096, 4096), upper(0, 0, 4096, 2048);
    for (const KZ::Rect& inner : {upper, KZ::Rect()}) {
        WeakClassifierHaar weak = haarOf(all, inner, nullptr);
        weak.setStrip(1);
        std::vector<unsigned int> integral(4096 + 4096 + 1, 0u);
        integral.back() = 255u * 4096 * 4096;
        integral[2048 + 4096] = 255u * 4096 * 2048;
        EXPECT_LT(static_cast<unsigned int>(weak.index(integral.data())), 255u);
    }
}

// The scaled features of a layer serve every zoom of its key.
TEST(StrongClassifier, ZoomsOfOneKeyShareFeatures) {
    Random random(20260315);
    const KZ::Image image = randomImage(random, KZ::Size(60, 50));
    const StrongClassifier first = randomStage(random, KZ::Size(12, 10), 0, 8, 0), second = first;
    const int sum = scoreOf(first, Planes(image, 2.0f));
    EXPECT_EQ(sum, scoreOf(first, Planes(image, 2.1f)));
    EXPECT_NE(sum, scoreOf(second, Planes(image, 2.1f)));
    struct Row {
        float zoom;
        int key;
    };
    const Row keys[] = {{1, 0}, {1.2f, 1}, {1.21f, 1}, {1.0953f, 0}, {1.0956f, 1}, {31.948f, 19}};
    for (const Row& row : keys) EXPECT_EQ(row.key, zoomKey(row.zoom)) << row.zoom;
}

// The classifiers keep 16 bits of a strip: rows of 100 sums after rows of 16484 look the same
// there.
TEST(StrongClassifier, MovesToALayerWithAnyStrip) {
    Random random(20260316);
    const Planes planes(randomImage(random, KZ::Size(99, 40)));
    const int strip = planes.integral.stripLength();
    const StrongClassifier fresh = randomStage(random, SIZE, 0, 9, 0), used = fresh;
    for (const int before : {strip + (1 << 16), strip + 4, strip}) {
        used.activate(36, before, 1);
        used.activate(36, strip, 1);
        EXPECT_EQ(scoreOf(fresh, planes), scoreOf(used, planes)) << before;
    }
}
