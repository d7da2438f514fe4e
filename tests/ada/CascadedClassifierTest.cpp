#include <gtest/gtest.h>

#include "AbsFeature.h"
#include "AdaSupport.h"
#include "LogCapture.h"

using namespace ada_test;
using testing_support::assertionOf;

namespace {

const KZ::Size SIZE(12, 10);

using Texts = std::vector<std::string>;

std::string textOf(const AdaObject& object) {
    return KZ::joined(object.center, " ", object.score, " ", object.size, " ", object.side, " ",
                      object.zoom, " ", object.angle, " ", object.weight, " ", object.name);
}

// All windows of the layer with corners in `range`, both ends included, judged pixel by pixel.
Texts referenceMatches(const CascadedClassifier& cascade, const Planes& planes,
                       const KZ::Rect& range, int step = 1) {
    Texts matches;
    for (int y = range.top; y <= range.bottom; y += step)
        for (int x = range.left; x <= range.right; x += step) {
            int score = 0;
            bool passed = true;
            for (const StrongClassifier& stage : cascade.strongClassifiers) {
                score = referenceScore(stage, planes, x, y);
                passed = passed && score >= stage.threshold;
            }
            const KZ::Point center(x + cascade.objectCenter.x, y + cascade.objectCenter.y);
            if (passed)
                matches.push_back(textOf(AdaObject(cascade.name.c_str(), cascade.baseSize_, center,
                                                   100, 1, cascade.angle, 1, score)));
        }
    return matches;
}

Texts scan(CascadedClassifier& cascade, const Planes& planes, const KZ::Rect& rect, int step = 1) {
    std::vector<AdaObject> out;
    cascade.addMatches(planes.rmct, planes.mono, planes.integral, out, rect, planes.zoom, step);
    Texts texts;
    for (const AdaObject& object : out) texts.push_back(textOf(object));
    return texts;
}

Texts freshScan(CascadedClassifier cascade, const Planes& planes, int step = 1) {
    return scan(cascade, planes, planes.mono.rect(), step);
}

KZ::Rect allCorners(const Planes& planes) {
    return KZ::Rect(0, 0, planes.mono.width() - SIZE.width, planes.mono.height() - SIZE.height);
}

}  // namespace

TEST(CascadedClassifier, ScansLikeTheReference) {
    Random random(20260310);
    size_t total = 0;
    for (const float zoom : {1.0f, 1.2f, 2.0f, 3.583181f})
        for (int step = 1; step <= 3; ++step)
            for (const bool rmctFirst : {true, false}) {
                const Planes planes(randomImage(random, KZ::Size(112, 91)), zoom);
                CascadedClassifier cascade = randomCascade(random, SIZE);
                if (!rmctFirst) cascade.strongClassifiers.erase(cascade.strongClassifiers.begin());
                cascade.setAngle(-30);
                const Texts expected = referenceMatches(cascade, planes, allCorners(planes), step);
                EXPECT_EQ(expected, freshScan(cascade, planes, step)) << zoom << " " << step;
                total += expected.size();
            }
    EXPECT_GT(total, 1000u);
}

// Rectangles of objects become corners of windows that stay inside the layer.
TEST(CascadedClassifier, RectangleLimitsTheScan) {
    Random random(20260311);
    const Planes planes(randomImage(random, KZ::Size(40, 30)));
    CascadedClassifier cascade = randomCascade(random, SIZE);
    cascade.setBaseSize(KZ::Size(6, 4));
    cascade.setObjectCenter(KZ::Point(6, 5));
    ASSERT_EQ(KZ::Rect(3, 3, 9, 7), cascade.objectRect);
    const auto expect = [&](const KZ::Rect& corners, const KZ::Rect& rect) {
        CascadedClassifier copy = cascade;
        EXPECT_EQ(referenceMatches(cascade, planes, corners), scan(copy, planes, rect)) << rect;
    };
    const KZ::Rect none(0, 0, -1, -1);
    expect(KZ::Rect(12, 9, 15, 13), KZ::Rect(15, 12, 24, 20));
    expect(KZ::Rect(0, 0, 1, 2), KZ::Rect(-20, -20, 10, 9));
    expect(KZ::Rect(27, 17, 28, 20), KZ::Rect(30, 20, 90, 90));
    expect(none, KZ::Rect(60, 60, 90, 90));
    expect(none, KZ::Rect(15, 12, 20, 20));
    const Planes narrow(randomImage(random, KZ::Size(SIZE.width - 1, 30)));
    EXPECT_TRUE(freshScan(cascade, narrow).empty());
}

// Where and how often the cascade is scanned before does not show, nor in its copies.
TEST(CascadedClassifier, ReusedOnOtherLayersAndPitches) {
    Random random(20260312);
    const CascadedClassifier fresh = randomCascade(random, SIZE);
    CascadedClassifier used = fresh;
    for (const int width : {60, 47, 60})
        for (const float zoom : {1.0f, 1.44f}) {
            const Planes planes(randomImage(random, KZ::Size(width, 50)), zoom);
            const Texts found = scan(used, planes, planes.mono.rect());
            EXPECT_EQ(freshScan(fresh, planes), found);
            EXPECT_EQ(found, freshScan(used, planes));
        }
}

// The brightness that passes becomes a range of sums: votes 7 to 12 for the indices 187 to 192.
TEST(CascadedClassifier, OneBrightnessFeatureFirst) {
    Random random(20260313);
    const Planes planes(randomImage(random, KZ::Size(50, 40)));
    const signed char* votes = votesOf([](int i) { return i >= 185 && i <= 192 ? i - 180 : -1; });
    const WeakClassifierHaar haar = haarOf(KZ::Rect(2, 3, 7, 8), KZ::Rect(), votes);
    StrongClassifier brightness;
    brightness.addHaarClassifier(haar);
    brightness.setThreshold(7);
    CascadedClassifier cascade = cascadeOf(SIZE, {brightness});
    for (int numStages = 1; numStages <= 2; ++numStages) {
        const Texts expected = referenceMatches(cascade, planes, allCorners(planes));
        EXPECT_GT(expected.size(), 20u);
        EXPECT_EQ(expected, freshScan(cascade, planes));
        cascade.addStrongClassifier(randomStage(random, SIZE, 2, 1, 2));
    }
    const AbsFeature feature(haar, 7), never(haar, 100);
    EXPECT_EQ(2 * 25 * (187 - 127), feature.minValue);
    EXPECT_EQ(2 * 25 * (192 - 127 + 1) - 1, feature.maxValue);
    EXPECT_GT(never.minValue, never.maxValue);
    const AbsFeature large(haarOf(KZ::Rect(0, 0, 4096, 4096), KZ::Rect(), votes), -1);
    EXPECT_LT(large.minValue, 0);
    EXPECT_GT(large.maxValue, 0);
}

// What would read outside the pictures, or through no pointer, is refused.
TEST(CascadedClassifier, RefusesWhatCannotBeScanned) {
    Random random(20260314);
    const Planes planes(randomImage(random, KZ::Size(30, 20)));
    const auto failure = [&](const std::vector<StrongClassifier>& stages) {
        return assertionOf([&] { freshScan(cascadeOf(SIZE, stages), planes); });
    };
    EXPECT_EQ("Activating empty cascade Classifier square\n", failure({}));
    StrongClassifier voteless, outside;
    voteless.addRmctClassifier(WeakClassifierRmct(KZ::BasePoint<signed char>(1, 1)));
    EXPECT_EQ(" == NULL\n", failure({voteless}));
    WeakClassifierHog hog = randomHog(random, SIZE);
    hog.setBlock(KZ::Rect(2, 3, 13, 8));
    outside.addHogClassifier(hog);
    EXPECT_EQ("Computed hogRoi Rect(1, 2, 14, 9) is out of monoSize + 1 Rect(0, 0, 13, 11)\n",
              failure({outside}));

    CascadedClassifier good = cascadeOf(SIZE, {randomStage(random, SIZE, 1, 0, 0)});
    Planes narrow = planes;
    KZ::computeIntegral(randomImage(random, KZ::Size(17, 20)), narrow.integral);
    EXPECT_EQ("ShiftX 18 not compatible with integral image Size(18, 21)\n",
              assertionOf([&] { freshScan(good, narrow); }));
}
