#include <gtest/gtest.h>

#include "AdaSupport.h"
#include "ClassifierRing.h"
#include "DetectorData.h"
#include "DetectorResult.h"
#include "LogCapture.h"
#include "PatternDetector.h"

using namespace ada_test;
using testing_support::assertionOf;
using testing_support::conditionOf;

namespace {

const KZ::Size FRAME(160, 120);
const KZ::Size WINDOW(20, 16);

// Votes for an index of at least `from`.
std::vector<signed char> votesFrom(size_t from) {
    std::vector<signed char> votes(256, -1);
    for (size_t i = from; i < votes.size(); ++i) votes[i] = 1;
    return votes;
}

// Finds a bright rectangle, of the middle 12 by 8 pixels of the window, on dark ground: the
// rectangle against its surroundings, and each of its quarters against the whole window.
struct BrightRectangle {
    std::vector<signed char> contrast = votesFrom(127 + 80);
    CascadedClassifier cascade;
    std::vector<CascadedClassifier*> pointers;

    BrightRectangle() {
        const KZ::Rect inner(4, 4, 16, 12);
        cascade.setMonoSize(WINDOW);
        cascade.setBaseSize(KZ::Size(12, 8));
        cascade.setObjectCenter(KZ::Point(10, 8));
        StrongClassifier stage;
        for (const KZ::Rect& part : {inner, KZ::Rect(4, 4, 10, 8), KZ::Rect(10, 4, 16, 8),
                                     KZ::Rect(4, 8, 10, 12), KZ::Rect(10, 8, 16, 12)}) {
            WeakClassifierHaar weak;
            weak.set(part == inner ? KZ::Rect(1, 1, 19, 15) : part, inner, 0);
            if (!(part == inner)) weak.set(part, KZ::Rect(), 0);
            weak.setData(contrast.data());
            stage.addHaarClassifier(weak);
        }
        stage.setThreshold(5);
        cascade.addStrongClassifier(stage);
        pointers.push_back(&cascade);
    }
};

KZ::Image frameWith(const KZ::Rect& bright) {
    KZ::Image frame(FRAME, KZ::COLOR_MODE_MONO);
    for (int y = 0; y < FRAME.height; ++y)
        for (int x = 0; x < FRAME.width; ++x) {
            const bool inside = bright.contains(KZ::Rect(x, y, x + 1, y + 1));
            *frame.data(x, y) = inside ? 250 : 10;
        }
    return frame;
}

class PatternDetectorTest : public testing::Test {
protected:
    PatternDetectorTest() : ring_(pattern_.pointers) {
        ring_.setName("rectangle");
        ring_.generatePossibilities();
        data_.setPyramidParameters(1, 10);
        region_.rect = KZ::Rect(FRAME);
    }
    PatternDetector detector(const PatternDetector::Parameters& parameters) {
        return PatternDetector(&ring_, KZ::AngleRange(0), KZ::Side::RIGHT, parameters);
    }
    DetectorResult detect(PatternDetector& detector, const KZ::Image& frame) {
        data_.compute(frame, frame.rect());
        DetectorResult result("before");
        detector.detect(data_, region_, result);
        return result;
    }

    BrightRectangle pattern_;
    ClassifierRing ring_;
    DetectorData data_;
    KZ::DetectRegion region_;
};

}  // namespace

TEST_F(PatternDetectorTest, FindsThePatternAtItsScale) {
    PatternDetector scan = detector(PatternDetector::Parameters(1, 1, 0.2f, KZ::RangeF()));
    EXPECT_EQ("PatternDetector rectangle", scan.name());
    for (const KZ::Rect& bright :
         {KZ::Rect(40, 30, 52, 38), KZ::Rect(60, 40, 84, 56), KZ::Rect(100, 60, 142, 88)}) {
        const DetectorResult result = detect(scan, frameWith(bright));
        ASSERT_TRUE(result.found) << bright;
        EXPECT_EQ("rectangle", result.name);
        EXPECT_NEAR((bright.left + bright.right) / 2.0f, result.location.center.x, 3) << bright;
        EXPECT_NEAR((bright.top + bright.bottom) / 2.0f, result.location.center.y, 3) << bright;
        EXPECT_NEAR(bright.width(), result.location.size.width, 0.2f * bright.width());
        EXPECT_EQ(KZ::Side::RIGHT, result.location.side);
        EXPECT_GT(result.score, 0.49f);
        EXPECT_LT(result.score, 1);
    }
    const DetectorResult nothing = detect(scan, frameWith(KZ::Rect()));
    EXPECT_FALSE(nothing.found);
    EXPECT_EQ("", nothing.name);
    EXPECT_EQ(KZ::maxValue<float>(), nothing.score);
}

TEST_F(PatternDetectorTest, ScoreGrowsWithSupport) {
    PatternDetector scan = detector(PatternDetector::Parameters(1, 1, 0.2f, KZ::RangeF()));
    std::vector<AdaObject> objects, raw;
    for (const int step : {1, 2, 3}) {
        scan.parameters().scanStep = step;
        scan.parameters().minNeighbors = 1;
        const DetectorResult result = detect(scan, frameWith(KZ::Rect(60, 40, 84, 56)));
        scan.detect(objects, region_);
        ASSERT_EQ(1u, objects.size());
        EXPECT_EQ(1 - 0.5f / static_cast<float>(objects[0].weight), result.score);
        // Without grouping all windows come back, layer by layer.
        scan.parameters().minNeighbors = 0;
        scan.detect(raw, region_);
        EXPECT_EQ(static_cast<size_t>(objects[0].weight), raw.size());
        for (size_t i = 0; i < raw.size(); ++i) {
            EXPECT_EQ(1, raw[i].weight);
            EXPECT_LE(raw[i ? i - 1 : 0].zoom, raw[i].zoom);
        }
    }
    EXPECT_EQ(0.5f, detect(scan, frameWith(KZ::Rect(60, 40, 84, 56))).score);
}

TEST_F(PatternDetectorTest, RegionKeepsLayersOut) {
    const KZ::Image frame = frameWith(KZ::Rect(60, 40, 84, 56));
    const float second = data_.rmctPyramid.zoomAtLayer(1);
    struct Row {
        const char* what;
        KZ::RangeF zooms, widths;
        KZ::Rect rect, roi;
    };
    const KZ::Rect rect(20, 20, 60, 60);
    const Row rows[] = {
        {"first layer", KZ::RangeF(1, second), KZ::RangeF(), rect, KZ::Rect(16, 16, 64, 64)},
        {"second layer", KZ::RangeF(second, 1.44f), KZ::RangeF(), rect, KZ::Rect(16, 16, 64, 64)},
        {"no layer", KZ::RangeF(1.01f, second), KZ::RangeF(), rect, KZ::Rect()},
        {"third layer by width", KZ::RangeF(), KZ::RangeF(17, 18), rect, KZ::Rect(15, 15, 65, 65)},
        {"width of the third layer not reached", KZ::RangeF(), KZ::RangeF(15, 17), rect,
         KZ::Rect()},
    };
    for (const Row& row : rows) {
        region_.zoomRange = row.zooms;
        region_.widthRange = row.widths;
        region_.rect = row.rect;
        PatternDetector scan = detector(PatternDetector::Parameters(1, 1, 0.2f, KZ::RangeF()));
        EXPECT_EQ(row.roi, scan.getDataRoi(data_, region_)) << row.what;
    }
    region_ = KZ::DetectRegion(frame.rect(), KZ::RangeF(20, 30), KZ::AngleRange(), KZ::Side::BOTH);
    PatternDetector scan = detector(PatternDetector::Parameters(1, 1, 0.2f, KZ::RangeF()));
    EXPECT_TRUE(detect(scan, frame).found);
    region_.rect = KZ::Rect(90, 0, 160, 120);
    EXPECT_FALSE(detect(scan, frame).found);
    region_.rect = frame.rect();
    region_.side = KZ::Side::LEFT;
    EXPECT_FALSE(detect(scan, frame).found);
    EXPECT_EQ(KZ::Rect(), scan.getDataRoi(data_, region_));
    region_.side = KZ::Side::BOTH;
    scan.parameters().widthRange = KZ::RangeF(30, 60);
    EXPECT_FALSE(detect(scan, frame).found);
}

// The gate by change between frames: a new object is found, and is gone once it rests.
TEST_F(PatternDetectorTest, ScansWhereTheFrameChanged) {
    PatternDetector scan = detector(PatternDetector::Parameters(2, 1, 0.2f, KZ::RangeF()));
    scan.parameters().useMotion = true;
    const KZ::Image frame = frameWith(KZ::Rect(60, 40, 84, 56));
    EXPECT_FALSE(detect(scan, frameWith(KZ::Rect())).found);
    EXPECT_TRUE(detect(scan, frame).found);
    EXPECT_FALSE(detect(scan, frame).found);
    // A row of blocks with change is scanned as one.
    KZ::Image wide = frameWith(KZ::Rect(72, 60, 84, 68));
    for (int x = 0; x < 60; ++x) *wide.data(x, 63) = *wide.data(x, 64) = 250;
    EXPECT_FALSE(detect(scan, frameWith(KZ::Rect())).found);
    EXPECT_TRUE(detect(scan, wide).found);
}

// The second gate: the cascades run where a feature on the difference of frames has its way.
TEST(LayerPatternDetector, RunsWhereTheMotionFeatureAllows) {
    Random random(20260340);
    const Planes planes(randomImage(random, KZ::Size(80, 60)));
    CascadedClassifier cascade = randomCascade(random, KZ::Size(12, 10));
    std::vector<signed char> votes = votesFrom(128);
    WeakClassifierHaar haar;
    haar.set(KZ::Rect(0, 0, 12, 10), KZ::Rect(), 0);
    haar.setData(votes.data());
    StrongClassifier stage;
    stage.addHaarClassifier(haar);
    stage.setThreshold(1);
    CascadedClassifier motion;
    motion.setMonoSize(KZ::Size(12, 10));
    motion.addStrongClassifier(stage);

    KZ::Image change(planes.frame.size(), KZ::COLOR_MODE_MONO), changeIntegral;
    KZ::zero(change);
    for (int y = 20; y < 40; ++y)
        for (int x = 30; x < 60; ++x) *change.data(x, y) = 200;
    KZ::computeIntegral(change, changeIntegral);
    KZ::RmctPyramid pyramid;
    pyramid.init(1, 1, 1.2f);
    pyramid.setMono(planes.frame);
    pyramid.compute();

    LayerPatternDetector layer;
    layer.setClassifiers({&cascade});
    layer.setData(&planes.integral, &pyramid, 0, &changeIntegral, &pyramid);
    EXPECT_EQ("MotionClassifier were not set.\n",
              assertionOf([&] { layer.activateMotionStatic(); }));
    layer.setMotionClassifier(&motion);
    layer.activateMotionStatic();
    KZ::DetectRegion region;
    region.rect = planes.mono.rect();
    std::vector<AdaObject> gated, all, expected;
    const LayerPatternDetector copy = layer;
    LayerPatternDetector(copy).detectMotionStatic(gated, region);
    layer.detectStatic(all, region, 2);
    for (const AdaObject& object : all) {
        const int x = object.center.x - 6, y = object.center.y - 5;
        if (pixelSum(change, KZ::Rect(0, 0, 12, 10), x, y) >= 2 * 120) expected.push_back(object);
    }
    ASSERT_GT(expected.size(), 5u);
    ASSERT_EQ(expected.size(), gated.size());
    EXPECT_LT(gated.size(), all.size());
    for (size_t i = 0; i < gated.size(); ++i) {
        EXPECT_EQ(expected[i].center, gated[i].center);
        EXPECT_EQ(expected[i].score, gated[i].score);
    }
}

TEST_F(PatternDetectorTest, Refusals) {
    PatternDetector scan = detector(PatternDetector::Parameters(2, 1, 0.2f, KZ::RangeF(1, 100)));
    DetectorResult result("before");
    scan.detect(data_, region_, result);
    EXPECT_EQ("before", result.name);

    data_.compute(frameWith(KZ::Rect()), KZ::Rect(FRAME));
    region_.zoomRange = KZ::RangeF(1, 2);
    EXPECT_EQ("detectRegion.zoomRange == KZ::RangeF() || parameters_.widthRange == KZ::RangeF()",
              conditionOf([&] { scan.detect(data_, region_, result); }));
    DetectorData other;
    other.setPyramidParameters(1.5f, 10);
    EXPECT_EQ("your can't change start zoom, possible hash colizion for haar\n",
              assertionOf([&] { scan.setPyramid(other.rmctPyramid, nullptr); }));
    scan.reset();
    scan.setPyramid(other.rmctPyramid, nullptr);

    PatternDetector empty;
    EXPECT_EQ("no static classifiers\n", assertionOf([&] { empty.getDataRoi(data_, region_); }));
    EXPECT_EQ("PatternDetector::Parameters(2, 1, 0.2, RangeF(1, 100))",
              KZ::joined(scan.parameters()));
}
