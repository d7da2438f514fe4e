#include "KZ_PixelArithmetic.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "KZ_ImageHistogram.h"
#include "LogCapture.h"
#include "TestImages.h"

using namespace KZ;
using testing_support::assertionOf;
using testing_support::conditionOf;

namespace {

using Bytes = std::vector<unsigned char>;
using Rule = double (*)(double s, double s2);  // of one cell, in double

double clampTo(double v, double high) {
    return std::min(std::max(std::trunc(v), 0.0), high);
}
double byteOf(double v) {
    return clampTo(v, 255);
}

// One operation on two images; one on a single image ignores the second.
struct Operation {
    const char* name;
    std::function<void(const Image&, const Image&, Image&, const Rect&)> run;
    Rule rule;
};

void expectRules(ColorMode mode, ColorMode targetMode, const std::vector<Operation>& operations) {
    for (const Operation& operation : operations) {
        SCOPED_TRACE(operation.name);
        const auto rule = [&](const Image& a, const Image& b, int x, int y, int c) {
            return operation.rule(valueAt(a, x, y, c), valueAt(b, x, y, c));
        };
        expectOnViews(mode, targetMode, operation.run, rule);
        const GuardedImage a(Size(5, 3), mode, 8), b(Size(5, 3), mode, 4, 2);
        if (mode == targetMode) {
            Image inPlace(a.image);
            operation.run(inPlace, b.image, inPlace, Rect());
            expectValues(inPlace,
                         [&](int x, int y, int c) { return rule(a.image, b.image, x, y, c); });
        }
        const Image foreign(Size(3, 3), COLOR_MODE_YUV);
        Image target;
        EXPECT_NE("no failure",
                  assertionOf([&] { operation.run(foreign, foreign, target, Rect()); }));
        EXPECT_EQ("Rect(0, 0, 5, 4) is out of Rect(0, 0, 5, 3)\n",
                  assertionOf([&] { operation.run(a.image, b.image, target, Rect(0, 0, 5, 4)); }));
        EXPECT_FALSE(target.isCreated());
    }
}

}  // namespace

#define RULE(expression) [](double s, double) -> double { return expression; }
#define PAIR_RULE(expression) [](double s, double s2) -> double { return expression; }
#define RUN(call) [](const Image& a, const Image&, Image& t, const Rect& r) { call; }
#define RUN_PAIR(call) [](const Image& a, const Image& b, Image& t, const Rect& r) { call; }

TEST(PixelArithmetic, CellsByRule) {
    const Rule sum = PAIR_RULE(byteOf(s + s2)), sum16 = PAIR_RULE(clampTo(s + s2, 65535));
    expectRules(
        COLOR_MODE_MONO, COLOR_MODE_MONO,
        {
            {"addValue", RUN(addValue(a, t, static_cast<unsigned char>(100), r)),
             RULE(byteOf(s + 100))},
            {"addValue int", RUN(addValue(a, t, -100, r)), RULE(byteOf(s - 100))},
            {"addValue huge", RUN(addValue(a, t, 2147483647, r)), RULE(0 * s + 255)},
            {"subtractValue", RUN(subtractValue(a, t, 20, r)), RULE(byteOf(s - 20))},
            {"multiplyValue", RUN(multiplyValue(a, t, 1.3f, r)), RULE(byteOf(float(s) * 1.3f))},
            {"multiplyValue negative", RUN(multiplyValue(a, t, -1e30f, r)), RULE(0 * s)},
            {"linearTransform", RUN(linearTransform(a, t, -2, 300, r)), RULE(byteOf(300 - 2 * s))},
            {"minImage", RUN(minImage(a, t, 90, r)), RULE(std::min(s, 90.0))},
            {"invertMono", RUN(invertMono(a, t, r)), RULE(255 - s)},
            {"threshold", RUN(threshold(a, t, 77u, r)), RULE(s < 77 ? 0 : 255)},
            {"thresholds", RUN(threshold(a, t, 50u, 150u, r)), RULE(s >= 50 && s < 150 ? 255 : 0)},
            {"addImages", RUN_PAIR(addImages(a, b, t, r)), sum},
            {"subtractImages", RUN_PAIR(subtractImages(a, b, t, r)), PAIR_RULE(byteOf(s - s2))},
            {"multiplyImages", RUN_PAIR(multiplyImages(a, b, t, r)),
             PAIR_RULE(byteOf(s * s2 / 255))},
            {"minImage of two", RUN_PAIR(minImage(a, b, t, r)), PAIR_RULE(std::min(s, s2))},
            {"absDiff", RUN_PAIR(absDiff(a, b, t, r)), PAIR_RULE(std::fabs(s - s2))},
            {"interpolateImages", RUN_PAIR(interpolateImages(a, b, t, 0.25f, r)),
             PAIR_RULE(byteOf(s * 0.75 + s2 * 0.25))},
        });
    expectRules(COLOR_MODE_BGR, COLOR_MODE_BGR,
                {
                    {"multiplyValueColor", RUN(multiplyValueColor(a, t, 0.7f, r)),
                     RULE(byteOf(float(s) * 0.7f))},
                    {"interpolateImagesBgr", RUN_PAIR(interpolateImagesBgr(a, b, t, 1, r)),
                     PAIR_RULE(s2 + 0 * s)},
                });
    expectRules(
        COLOR_MODE_MONO16, COLOR_MODE_MONO16,
        {
            {"multiplyValueS", RUN(multiplyValueS(a, t, 2.5f, r)), RULE(clampTo(s * 2.5, 65535))},
            {"addImages", RUN_PAIR(addImages(a, b, t, r)), sum16},
        });
    expectRules(COLOR_MODE_DEPTH, COLOR_MODE_MONO,
                {{"depthThreshold", RUN(depthThreshold(a, t, 20000, 50000, r)),
                  RULE(s >= 20000 && s < 50000 ? 255 : 0)}});
    expectRules(COLOR_MODE_FLOAT, COLOR_MODE_FLOAT,
                {
                    {"addValueF", RUN(addValueF(a, t, 2.5f, r)), RULE(s + 2.5)},
                    {"multiplyValueF", RUN(multiplyValueF(a, t, -0.5f, r)), RULE(s * -0.5)},
                    {"addImages", RUN_PAIR(addImages(a, b, t, r)), PAIR_RULE(s + s2)},
                    {"subtractImagesF", RUN_PAIR(subtractImagesF(a, b, t, r)), PAIR_RULE(s - s2)},
                    {"multiplyImages", RUN_PAIR(multiplyImages(a, b, t, r)), PAIR_RULE(s * s2)},
                });
}

TEST(PixelArithmetic, AbsDiffOfColours) {
    expectOnViews(COLOR_MODE_BGR, COLOR_MODE_MONO, RUN_PAIR(absDiff(a, b, t, r)),
                  [](auto& a, auto& b, int x, int y, int) {
                      int sum = 0;
                      for (int c = 0; c < 3; ++c)
                          sum += std::abs(byteAt(a, x, y, c) - byteAt(b, x, y, c));
                      return sum / 3;
                  });
    const Image a(Size(17, 3), COLOR_MODE_BGR);
    Image target;
    const Image smaller(Size(16, 3), COLOR_MODE_BGR), rgb(Size(17, 3), COLOR_MODE_RGB);
    EXPECT_EQ("(source1).size() == (source2.size())",
              conditionOf([&] { absDiff(a, smaller, target); }));
    EXPECT_EQ("have COLOR_MODE_BGR, but need COLOR_MODE_RGB\n",
              assertionOf([&] { absDiff(a, rgb, target); }));
}

TEST(PixelArithmetic, MeansAndSums) {
    const GuardedImage mono(Size(9, 5), COLOR_MODE_MONO, 3), rgba(Size(9, 5), COLOR_MODE_RGBA, 3);
    const Rect rect(2, 1, 9, 5);
    uint64_t sums[5] = {};
    for (int y = 1; y < 5; ++y)
        for (int x = 2; x < 9; ++x) {
            sums[4] += *mono.image.data(x, y);
            for (int c = 0; c < 4; ++c) sums[c] += rgba.image.data(x, y)[c];
        }
    EXPECT_EQ(sums[4], imageSum(mono.image, rect));
    EXPECT_EQ(float(sums[4]) / 28.0f, imageMean(mono.image, rect));
    unsigned char means[4];
    imageMean(rgba.image, means, rect);
    for (int c = 0; c < 4; ++c) EXPECT_EQ(sums[c] / 28, means[c]);
    EXPECT_EQ("only mono is supported, but got COLOR_MODE_RGBA\n",
              assertionOf([&] { imageMean(rgba.image); }));
}

TEST(PixelArithmetic, ExtremaAndHistogram) {
    const Image mono =
        imageOf<unsigned char>(Size(5, 2), COLOR_MODE_MONO, {3, 3, 3, 200, 200, 9, 9, 9, 9, 255});
    EXPECT_EQ(Point(4, 1), findGlobalMaximum(mono));
    EXPECT_EQ(Point(3, 1), findGlobalMinimum(mono, Rect(3, 0, 5, 2)));
    EXPECT_EQ(200, imageMax(mono, Rect(0, 0, 5, 1)));
    const ImageHistogram whole(mono), part(mono, Rect(3, 0, 5, 2));
    EXPECT_EQ(10u, whole.total());
    EXPECT_EQ(1u, part.count(9));
    EXPECT_EQ(3, whole.percentile(0.3f));
    EXPECT_EQ(255, whole.percentile(1));
    Image equalized;
    equalizeHistogram(mono, equalized);  // 3: nothing below, 9: 4 of 7, 200: 6 of 7
    EXPECT_EQ((Bytes{0, 0, 0, 218, 218, 145, 145, 145, 145, 255}),
              cellsOf<unsigned char>(equalized));
}

// A parabola with its vertex at (2.3, 1.8).
TEST(PixelArithmetic, ExtremumBetweenPixels) {
    Image hill(Size(5, 4), COLOR_MODE_FLOAT);
    for (int i = 0; i < 20; ++i)
        hill.row<float>(0)[i] =
            10 - std::pow(float(i % 5) - 2.3f, 2.0f) - 2 * std::pow(float(i / 5) - 1.8f, 2.0f);
    const PointF top = findPreciseLocalExtremum(hill, findGlobalMaximum(hill));
    EXPECT_NEAR(2.3f, top.x, 1e-5f);
    EXPECT_NEAR(1.8f, top.y, 1e-5f);
    EXPECT_EQ(PointF(0, 0), findPreciseLocalExtremum(hill, Point(0, 0)));
}

TEST(PixelArithmetic, AdaptiveImageComparesWithTheMeanAround) {
    const GuardedImage mono(Size(11, 7), COLOR_MODE_MONO, 2);
    Image target;
    adaptiveImage(mono.image, target, 3, -8);
    expectValues(target, [&](int x, int y, int) {
        const Rect around = Rect(x - 3, y - 3, x + 4, y + 4).intersection(mono.image.rect());
        return byteAt(mono.image, x, y) > imageMean(mono.image, around) - 8 ? 255 : 0;
    });
}

TEST(PixelArithmetic, ChannelsComeApartAndTogether) {
    const GuardedImage rgba(Size(7, 3), COLOR_MODE_RGBA, 3);
    std::vector<Image> channels;
    splitChannels(rgba.image, channels);
    EXPECT_EQ(byteAt(rgba.image, 6, 2, 3), byteAt(channels.at(3), 6, 2));
    Image merged;
    mergeChannels(channels, merged, COLOR_MODE_RGBA);
    EXPECT_TRUE(merged == rgba.image);
}
