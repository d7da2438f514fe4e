#include <gtest/gtest.h>

#include "AdaSupport.h"
#include "ClassifierRing.h"
#include "DetectorData.h"
#include "DetectorResult.h"
#include "PatternDetector.h"

using namespace ada_test;

namespace {

const KZ::Size FRAME(160, 120);

// Finds a bright rectangle, of the middle 12 by 8 pixels of the window, on dark ground: the
// rectangle against its surroundings, and each of its quarters against the whole window.
CascadedClassifier brightRectangle() {
    const signed char* votes = votesOf([](int i) { return i >= 127 + 80 ? 1 : -1; });
    StrongClassifier stage;
    stage.addHaarClassifier(haarOf(KZ::Rect(1, 1, 19, 15), KZ::Rect(4, 4, 16, 12), votes));
    for (const KZ::Rect& part : {KZ::Rect(4, 4, 10, 8), KZ::Rect(10, 4, 16, 8),
                                 KZ::Rect(4, 8, 10, 12), KZ::Rect(10, 8, 16, 12)})
        stage.addHaarClassifier(haarOf(part, KZ::Rect(), votes));
    stage.setThreshold(5);
    CascadedClassifier cascade = cascadeOf(KZ::Size(20, 16), {stage});
    cascade.setBaseSize(KZ::Size(12, 8));
    cascade.setObjectCenter(KZ::Point(10, 8));
    return cascade;
}

KZ::Image frameWith(const KZ::Rect& bright) {
    return imageOf(FRAME, [&](int x, int y) {
        return bright.contains(KZ::Rect(x, y, x + 1, y + 1)) ? 250 : 10;
    });
}

const KZ::Rect PLACE(60, 40, 84, 56);

class PatternDetectorTest : public testing::Test {
protected:
    PatternDetectorTest() : pointers_{&pattern_}, ring_(pointers_) {
        ring_.setName("rectangle");
        ring_.generatePossibilities();
        data_.setPyramidParameters(1, 10);
        region_.rect = KZ::Rect(FRAME);
    }
    PatternDetector detector(int step, const KZ::RangeF& widths = KZ::RangeF()) {
        return PatternDetector(&ring_, KZ::AngleRange(0), KZ::Side::RIGHT,
                               PatternDetector::Parameters(step, 1, 0.2f, widths));
    }
    DetectorResult detect(PatternDetector& detector, const KZ::Image& frame) {
        data_.compute(frame, frame.rect());
        DetectorResult result("before");
        detector.detect(data_, region_, result);
        return result;
    }

    CascadedClassifier pattern_ = brightRectangle();
    std::vector<CascadedClassifier*> pointers_;
    ClassifierRing ring_;
    DetectorData data_;
    KZ::DetectRegion region_;
};

}  // namespace

TEST_F(PatternDetectorTest, FindsThePatternAtItsScale) {
    PatternDetector scan = detector(1);
    for (const KZ::Rect& bright : {KZ::Rect(40, 30, 52, 38), PLACE, KZ::Rect(100, 60, 142, 88)}) {
        const DetectorResult result = detect(scan, frameWith(bright));
        ASSERT_TRUE(result.found) << bright;
        EXPECT_EQ("rectangle", result.name);
        EXPECT_NEAR((bright.left + bright.right) / 2.0f, result.location.center.x, 3) << bright;
        EXPECT_NEAR((bright.top + bright.bottom) / 2.0f, result.location.center.y, 3) << bright;
        EXPECT_NEAR(bright.width(), result.location.size.width, 0.2f * bright.width());
    }
    const DetectorResult nothing = detect(scan, frameWith(KZ::Rect()));
    EXPECT_FALSE(nothing.found);
    EXPECT_EQ("", nothing.name);
    EXPECT_EQ(KZ::maxValue<float>(), nothing.score);
}

TEST_F(PatternDetectorTest, ScoreGrowsWithSupport) {
    PatternDetector scan = detector(1);
    std::vector<AdaObject> objects, raw;
    for (const int step : {1, 2, 3}) {
        scan.parameters().scanStep = step;
        scan.parameters().minNeighbors = 1;
        const DetectorResult result = detect(scan, frameWith(PLACE));
        scan.detect(objects, region_);
        ASSERT_EQ(1u, objects.size());
        EXPECT_EQ(1 - 0.5f / static_cast<float>(objects[0].weight), result.score);
        // Without grouping all windows come back, layer by layer.
        scan.parameters().minNeighbors = 0;
        scan.detect(raw, region_);
        EXPECT_EQ(static_cast<size_t>(objects[0].weight), raw.size());
        for (size_t i = 1; i < raw.size(); ++i) EXPECT_LE(raw[i - 1].zoom, raw[i].zoom);
    }
    EXPECT_EQ(0.5f, detect(scan, frameWith(PLACE)).score);
}

TEST_F(PatternDetectorTest, RegionKeepsLayersOut) {
    const KZ::Image frame = frameWith(PLACE);
    const float second = data_.rmctPyramid.zoomAtLayer(1);
    PatternDetector scan = detector(1);
    const auto expectRoi = [&](const KZ::RangeF& zooms, const KZ::RangeF& widths,
                               const KZ::Rect& roi) {
        region_.zoomRange = zooms;
        region_.widthRange = widths;
        region_.rect = KZ::Rect(20, 20, 60, 60);
        EXPECT_EQ(roi, scan.getDataRoi(data_, region_)) << zooms << widths;
    };
    const KZ::RangeF all;
    expectRoi(KZ::RangeF(1, second), all, KZ::Rect(16, 16, 64, 64));
    expectRoi(KZ::RangeF(second, 1.44f), all, KZ::Rect(16, 16, 64, 64));
    expectRoi(KZ::RangeF(1.01f, second), all, KZ::Rect());
    expectRoi(all, KZ::RangeF(17, 18), KZ::Rect(15, 15, 65, 65));
    expectRoi(all, KZ::RangeF(15, 17), KZ::Rect());
    region_ = KZ::DetectRegion(frame.rect(), KZ::RangeF(20, 30), KZ::AngleRange(), KZ::Side::BOTH);
    EXPECT_TRUE(detect(scan, frame).found);
    region_.rect = KZ::Rect(90, 0, 160, 120);
    EXPECT_FALSE(detect(scan, frame).found);
    region_.rect = frame.rect();
    region_.side = KZ::Side::LEFT;
    EXPECT_FALSE(detect(scan, frame).found);
    EXPECT_EQ(KZ::Rect(), scan.getDataRoi(data_, region_));
    region_.side = KZ::Side::BOTH;
    for (const KZ::RangeF& widths : {KZ::RangeF(30, 60), KZ::RangeF(1, 20)}) {
        scan.parameters().widthRange = widths;
        EXPECT_FALSE(detect(scan, frame).found);
    }
}

// The gate by change between frames: a new object is found, and is gone once it rests.
TEST_F(PatternDetectorTest, ScansWhereTheFrameChanged) {
    PatternDetector scan = detector(2);
    scan.parameters().useMotion = true;
    EXPECT_FALSE(detect(scan, frameWith(KZ::Rect())).found);
    EXPECT_TRUE(detect(scan, frameWith(PLACE)).found);
    EXPECT_FALSE(detect(scan, frameWith(PLACE)).found);
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
    const KZ::Size size(12, 10);
    CascadedClassifier cascade = randomCascade(random, size);
    StrongClassifier stage;
    stage.addHaarClassifier(
        haarOf(KZ::Rect(size), KZ::Rect(), votesOf([](int i) { return i >= 128 ? 1 : -1; })));
    stage.setThreshold(1);
    CascadedClassifier motion = cascadeOf(size, {stage});
    const KZ::Image change = imageOf(
        planes.frame.size(), [](int x, int y) { return x >= 30 && y >= 20 && y < 40 ? 200 : 0; });
    KZ::Image changeIntegral;
    KZ::computeIntegral(change, changeIntegral);
    KZ::RmctPyramid pyramid;
    pyramid.init(1, 1, 1.2f);
    pyramid.setMono(planes.frame);
    pyramid.compute();

    LayerPatternDetector layer;
    layer.setClassifiers({&cascade});
    layer.setData(&planes.integral, &pyramid, 0, &changeIntegral, &pyramid);
    layer.setMotionClassifier(&motion);
    layer.activateMotionStatic();
    KZ::DetectRegion region;
    region.rect = planes.mono.rect();
    std::vector<AdaObject> gated, all;
    const LayerPatternDetector copy = layer;
    LayerPatternDetector(copy).detectMotionStatic(gated, region);
    layer.detectStatic(all, region, 2);
    size_t found = 0;
    for (const AdaObject& object : all) {
        const int x = object.center.x - 6, y = object.center.y - 5;
        if (pixelSum(change, KZ::Rect(size), x, y) < 2 * 120) continue;
        ASSERT_LT(found, gated.size());
        EXPECT_EQ(object.center, gated[found].center);
        EXPECT_EQ(object.score, gated[found++].score);
    }
    EXPECT_EQ(found, gated.size());
    EXPECT_GT(found, 5u);
    EXPECT_LT(found, all.size());
}
