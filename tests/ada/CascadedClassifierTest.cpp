#include <gtest/gtest.h>

#include "AbsFeature.h"
#include "AdaSupport.h"
#include "LogCapture.h"

using namespace ada_test;
using testing_support::assertionOf;
using testing_support::conditionOf;

namespace {

const KZ::Size SIZE(12, 10);

std::string textOf(const AdaObject& object) {
    return KZ::joined(object.center, " ", object.score, " ", object.size, " ", object.side, " ",
                      object.zoom, " ", object.angle, " ", object.weight, " ", object.name);
}

std::vector<std::string> textsOf(const std::vector<AdaObject>& objects) {
    std::vector<std::string> texts;
    for (const AdaObject& object : objects) texts.push_back(textOf(object));
    return texts;
}

// All windows of the layer on a grid from (xs, ys) on, judged pixel by pixel.
std::vector<std::string> referenceMatches(const CascadedClassifier& cascade, const Planes& planes,
                                          int xs, int ys, int xe, int ye, int step) {
    std::vector<std::string> matches;
    for (int y = ys; y <= ye; y += step)
        for (int x = xs; x <= xe; x += step) {
            int score = 0;
            bool passed = true;
            for (const StrongClassifier& stage : cascade.strongClassifiers) {
                score = referenceScore(stage, planes, x, y);
                passed = passed && score >= stage.threshold;
            }
            if (!passed) continue;
            matches.push_back(
                textOf(AdaObject(cascade.name.c_str(), cascade.baseSize_,
                                 KZ::Point(x + cascade.objectCenter.x, y + cascade.objectCenter.y),
                                 100, 1, cascade.angle, 1, score)));
        }
    return matches;
}

std::vector<std::string> matches(CascadedClassifier cascade, const Planes& planes,
                                 const KZ::Rect& rect, int step) {
    std::vector<AdaObject> out;
    cascade.addMatches(planes.rmct, planes.mono, planes.integral, out, rect, planes.zoom, step);
    return textsOf(out);
}

StrongClassifier oneRmct(Random& random, int threshold) {
    return randomStage(random, SIZE, 1, 0, 0, threshold);
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
                // Goes on with the gradients that the stage before it has summed.
                cascade.addStrongClassifier(randomStage(random, SIZE, 1, 1, 2, -100));
                cascade.setAngle(-30);
                const auto expected =
                    referenceMatches(cascade, planes, 0, 0, planes.mono.width() - SIZE.width,
                                     planes.mono.height() - SIZE.height, step);
                EXPECT_EQ(expected, matches(cascade, planes, planes.mono.rect(), step))
                    << zoom << " " << step;
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
    struct Row {
        const char* what;
        KZ::Rect rect;
        int step, xs, ys, xe, ye;
    };
    const Row rows[] = {
        {"inside", KZ::Rect(15, 12, 24, 20), 1, 12, 9, 15, 13},
        {"grid starts at the first corner", KZ::Rect(15, 12, 25, 20), 2, 12, 9, 16, 13},
        {"beyond the left and top", KZ::Rect(-20, -20, 10, 9), 1, 0, 0, 1, 2},
        {"beyond the right and bottom", KZ::Rect(30, 20, 90, 90), 1, 27, 17, 28, 20},
        {"outside", KZ::Rect(60, 60, 90, 90), 1, 0, 0, -1, -1},
        {"too narrow", KZ::Rect(15, 12, 20, 20), 1, 0, 0, -1, -1},
    };
    for (const Row& row : rows)
        EXPECT_EQ(referenceMatches(cascade, planes, row.xs, row.ys, row.xe, row.ye, row.step),
                  matches(cascade, planes, row.rect, row.step))
            << row.what;
    const Planes small(randomImage(random, KZ::Size(SIZE.width - 1, 30)));
    EXPECT_TRUE(matches(cascade, small, small.mono.rect(), 1).empty());
}

// Where and how often the cascade is scanned before does not show.
TEST(CascadedClassifier, ReusedOnOtherLayersAndPitches) {
    Random random(20260312);
    const CascadedClassifier fresh = randomCascade(random, SIZE);
    CascadedClassifier used = fresh;
    for (const int width : {60, 47, 60}) {
        for (const float zoom : {1.0f, 1.44f}) {
            const Planes planes(randomImage(random, KZ::Size(width, 50)), zoom);
            std::vector<AdaObject> out;
            used.addMatches(planes.rmct, planes.mono, planes.integral, out, zoom, 1);
            EXPECT_EQ(matches(fresh, planes, planes.mono.rect(), 1), textsOf(out));
            // A copy does not lean on what the original has settled.
            const CascadedClassifier copy = used;
            EXPECT_EQ(textsOf(out), matches(copy, planes, planes.mono.rect(), 1));
        }
    }
}

TEST(CascadedClassifier, OneBrightnessFeatureFirst) {
    Random random(20260313);
    const Planes planes(randomImage(random, KZ::Size(50, 40)));
    std::vector<signed char> votes(256, -1);
    for (size_t i = 185; i <= 192; ++i) votes[i] = static_cast<signed char>(i - 180);
    WeakClassifierHaar haar;
    haar.set(KZ::Rect(2, 3, 7, 8), KZ::Rect(), 0);
    haar.setData(votes.data());
    StrongClassifier brightness;
    brightness.addHaarClassifier(haar);
    brightness.setThreshold(7);
    CascadedClassifier cascade;
    cascade.setMonoSize(SIZE);
    cascade.addStrongClassifier(brightness);
    const auto alone = referenceMatches(cascade, planes, 0, 0, 38, 30, 1);
    EXPECT_GT(alone.size(), 100u);
    EXPECT_EQ(alone, matches(cascade, planes, planes.mono.rect(), 1));
    cascade.addStrongClassifier(randomStage(random, SIZE, 2, 1, 2, 0));
    EXPECT_EQ(referenceMatches(cascade, planes, 0, 0, 38, 30, 1),
              matches(cascade, planes, planes.mono.rect(), 1));

    const AbsFeature feature(haar, 7);
    EXPECT_EQ(2 * 25 * (187 - 127), feature.minValue);
    EXPECT_EQ(2 * 25 * (192 - 127 + 1) - 1, feature.maxValue);
    const AbsFeature never(haar, 100);
    EXPECT_GT(never.minValue, never.maxValue);
}

TEST(CascadedClassifier, Refusals) {
    Random random(20260314);
    const Planes planes(randomImage(random, KZ::Size(30, 20)));
    const auto scan = [&](CascadedClassifier& cascade) {
        return assertionOf([&] { matches(cascade, planes, planes.mono.rect(), 1); });
    };
    CascadedClassifier cascade;
    cascade.setMonoSize(SIZE);
    cascade.setName("none");
    EXPECT_EQ("Activating empty cascade Classifier none\n", scan(cascade));

    StrongClassifier voteless;
    voteless.addRmctClassifier(WeakClassifierRmct(KZ::BasePoint<signed char>(1, 1)));
    cascade.addStrongClassifier(voteless);
    EXPECT_EQ(" == NULL\n", scan(cascade));
    EXPECT_EQ("(pClassifiers->getData())",
              conditionOf([&] { matches(cascade, planes, planes.mono.rect(), 1); }));

    cascade.strongClassifiers.clear();
    WeakClassifierHog hog = randomHog(random, SIZE);
    hog.setBlock(KZ::Rect(2, 3, 12, 8));
    StrongClassifier stage;
    stage.addHogClassifier(hog);
    EXPECT_EQ(KZ::Rect(1, 2, 13, 9), stage.calculateHogRoi());
    cascade.addStrongClassifier(stage);
    EXPECT_EQ("image Size Size(12, 10) to small for Hog Rect(1, 2, 13, 9)\n", scan(cascade));
    hog.setBlock(KZ::Rect(2, 3, 13, 8));
    stage.addHogClassifier(hog);
    cascade.strongClassifiers[0] = stage;
    EXPECT_EQ("Computed hogRoi Rect(1, 2, 14, 9) is out of monoSize + 1 Rect(0, 0, 13, 11)\n",
              scan(cascade));

    CascadedClassifier good;
    good.setMonoSize(SIZE);
    good.addStrongClassifier(oneRmct(random, 0));
    good.activate(30, 30, 124, 1, SIZE);
    int score = 7;
    const auto conditions = [&](const unsigned char* rmct, const unsigned char* mono) {
        return conditionOf([&] { good.detect(rmct, mono, nullptr, 0, score); });
    };
    EXPECT_EQ("(pMono)", conditions(nullptr, nullptr));
    EXPECT_EQ("(pRmctTransform)", conditions(nullptr, planes.mono.data()));
    EXPECT_EQ("(pIntegralImage)", conditions(planes.rmct.data(), planes.mono.data()));
    EXPECT_TRUE(good.detect(planes.rmct.data(), planes.mono.data(),
                            planes.integral.row<unsigned int>(0), 1, score));
    EXPECT_EQ(7, score);

    KZ::Image narrow;
    KZ::computeIntegral(randomImage(random, KZ::Size(17, 20)), narrow);
    std::vector<AdaObject> out;
    EXPECT_EQ("ShiftX 18 not compatible with integral image Size(18, 21)\n",
              assertionOf([&] { good.addMatches(planes.rmct, planes.mono, narrow, out, 1, 1); }));
}

TEST(StrongClassifier, ZoomsOfOneKeyShareFeatures) {
    Random random(20260315);
    const Planes planes(randomImage(random, KZ::Size(60, 50)));
    const unsigned int* integral = planes.integral.row<unsigned int>(0);
    const int strip = planes.integral.stripLength();
    const StrongClassifier fresh = randomStage(random, SIZE, 0, 8, 0, 0);
    const auto score = [&](const StrongClassifier& stage, float zoom) {
        stage.activate(0, strip, zoom);
        return stage.scoreHaar(integral);
    };
    const StrongClassifier first = fresh, second = fresh;
    const int sum = score(first, 2.0f);
    EXPECT_EQ(sum, score(first, 2.1f));
    EXPECT_NE(sum, score(second, 2.1f));
    struct Row {
        float zoom;
        int key;
    };
    const Row keys[] = {{1, 0}, {1.2f, 1}, {1.21f, 1}, {1.0953f, 0}, {1.0956f, 1}, {31.948f, 19}};
    for (const Row& row : keys) EXPECT_EQ(row.key, zoomKey(row.zoom)) << row.zoom;

    const StrongClassifier nothing;
    nothing.activate(30, 124, 1);
    EXPECT_EQ(
        0, nothing.scoreRmct(nullptr) + nothing.scoreHaar(nullptr) + nothing.scoreHog(KZ::Image()));
}
