#include "KZ_PixelArithmetic.h"

#include <gtest/gtest.h>

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

// One operation on cells of type T, and its rule worked in double.
template <typename T>
struct Operation {
    const char* name;
    ColorMode mode;
    std::function<void(const Image&, const Image&, Image&, const Rect&)> run;
    std::function<double(double, double)> rule;
    int targetMode;  // as the source's when 0
};

double clampTo(double v, double high) {
    return std::min(std::max(std::trunc(v), 0.0), high);
}
double byteOf(double v) {
    return clampTo(v, 255);
}

template <typename S, typename T>
void expectRule(const Operation<S>& operation, const Size& size, const Rect& rect, bool inPlace) {
    GuardedImage a(size, operation.mode, 8, 1);
    const GuardedImage b(size, operation.mode, 4, 2);
    if (std::is_same<S, float>::value)  // random bits are no random numbers
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) {
                a.image.row<float>(y)[x] = float(x * 3 - y) / 8;
                const_cast<Image&>(b.image).row<float>(y)[x] = float(y - 2 * x) / 4;
            }
    const Image before(a.image);
    GuardedImage other(
        size, ColorMode(operation.targetMode ? operation.targetMode : operation.mode), 12, 3);
    Image& target = inPlace ? a.image : other.image;
    const Image kept(target);
    operation.run(a.image, b.image, target, rect);
    const std::vector<S> s1 = cellsOf<S>(before), s2 = cellsOf<S>(b.image);
    const std::vector<T> t = cellsOf<T>(target), old = cellsOf<T>(kept);
    const int rowCells = int(t.size()) / size.height, perPixel = rowCells / size.width;
    const Rect area = rect == Rect() ? Rect(size) : rect;
    for (int i = 0; i < int(t.size()); ++i) {
        const int x = i % rowCells / perPixel, y = i / rowCells;
        const bool inside = x >= area.left && x < area.right && y >= area.top && y < area.bottom;
        const double expected = inside
                                    ? operation.rule(double(s1[size_t(i)]), double(s2[size_t(i)]))
                                    : double(old[size_t(i)]);
        ASSERT_EQ(expected, double(t[size_t(i)])) << size << rect << " " << x << ", " << y;
    }
    EXPECT_TRUE(other.paddingKept() && a.paddingKept());
}

template <typename S, typename T>
void expectRules(const std::vector<Operation<S>>& operations) {
    for (const Operation<S>& operation : operations) {
        SCOPED_TRACE(operation.name);
        for (const Size& size : oddSizes())
            for (const Rect& rect : rectsIn(size)) {
                expectRule<S, T>(operation, size, rect, false);
                if (operation.targetMode == 0) expectRule<S, T>(operation, size, rect, true);
            }
        const Image source(Size(3, 3), operation.mode);
        Image target;
        EXPECT_EQ("Rect(0, 0, 3, 4) is out of Rect(0, 0, 3, 3)\n",
                  assertionOf([&] { operation.run(source, source, target, Rect(0, 0, 3, 4)); }));
        const Image foreign(Size(3, 3), COLOR_MODE_YUV);
        EXPECT_NE("no failure",
                  assertionOf([&] { operation.run(foreign, foreign, target, Rect()); }));
        EXPECT_FALSE(target.isCreated());
    }
}

}  // namespace

#define RULE(expression) [](double s, double) -> double { return expression; }
#define PAIR_RULE(expression) [](double s, double s2) -> double { return expression; }
#define RUN(call) [](const Image& a, const Image&, Image& t, const Rect& r) { call; }
#define RUN_PAIR(function) \
    [](const Image& a, const Image& b, Image& t, const Rect& r) { function(a, b, t, r); }

TEST(PixelArithmetic, BytesByRule) {
    using Byte = unsigned char;
    const ColorMode mono = COLOR_MODE_MONO, bgr = COLOR_MODE_BGR;
    expectRules<Byte, Byte>({
        {"addValue", mono, RUN(addValue(a, t, Byte(100), r)), RULE(byteOf(s + 100)), 0},
        {"addValue int", mono, RUN(addValue(a, t, -100, r)), RULE(byteOf(s - 100)), 0},
        {"addValue huge", mono, RUN(addValue(a, t, 2147483647, r)), RULE(0 * s + 255), 0},
        {"subtractValue", mono, RUN(subtractValue(a, t, 20, r)), RULE(byteOf(s - 20)), 0},
        {"multiplyValue", mono, RUN(multiplyValue(a, t, 1.3f, r)), RULE(byteOf(float(s) * 1.3f)),
         0},
        {"multiplyValue negative", mono, RUN(multiplyValue(a, t, -1e30f, r)), RULE(0 * s), 0},
        {"multiplyValueColor", bgr, RUN(multiplyValueColor(a, t, 0.7f, r)),
         RULE(byteOf(float(s) * 0.7f)), 0},
        {"linearTransform", mono, RUN(linearTransform(a, t, -2, 300, r)), RULE(byteOf(300 - 2 * s)),
         0},
        {"minImage", mono, RUN(minImage(a, t, 90, r)), RULE(std::min(s, 90.0)), 0},
        {"invertMono", mono, RUN(invertMono(a, t, r)), RULE(255 - s), 0},
        {"threshold", mono, RUN(threshold(a, t, 77u, r)), RULE(s < 77 ? 0 : 255), 0},
        {"threshold of two", mono, RUN(threshold(a, t, 50u, 150u, r)),
         RULE(s >= 50 && s < 150 ? 255 : 0), 0},
        {"addImagesMono", mono, RUN_PAIR(addImagesMono), PAIR_RULE(byteOf(s + s2)), 0},
        {"addImages", mono, RUN_PAIR(addImages), PAIR_RULE(byteOf(s + s2)), 0},
        {"subtractImages", mono, RUN_PAIR(subtractImages), PAIR_RULE(byteOf(s - s2)), 0},
        {"multiplyImages", mono, RUN_PAIR(multiplyImages), PAIR_RULE(byteOf(s * s2 / 255)), 0},
        {"minImage of two", mono, RUN_PAIR(minImage), PAIR_RULE(std::min(s, s2)), 0},
        {"absDiff", mono, RUN_PAIR(absDiff), PAIR_RULE(std::fabs(s - s2)), 0},
        {"interpolateImages", mono,
         [](const Image& a, const Image& b, Image& t, const Rect& r) {
             interpolateImages(a, b, t, 0.25f, r);
         },
         PAIR_RULE(byteOf(s * 0.75 + s2 * 0.25)), 0},
        {"interpolateImagesBgr", bgr,
         [](const Image& a, const Image& b, Image& t, const Rect& r) {
             interpolateImagesBgr(a, b, t, 1, r);
         },
         PAIR_RULE(s2 + 0 * s), 0},
    });
}

TEST(PixelArithmetic, SixteenBitByRule) {
    const ColorMode mono16 = COLOR_MODE_MONO16;
    expectRules<uint16_t, uint16_t>({
        {"multiplyValueS", mono16, RUN(multiplyValueS(a, t, 2.5f, r)),
         RULE(clampTo(s * 2.5, 65535)), 0},
        {"addImagesMono16", mono16, RUN_PAIR(addImagesMono16), PAIR_RULE(clampTo(s + s2, 65535)),
         0},
        {"addImages", mono16, RUN_PAIR(addImages), PAIR_RULE(clampTo(s + s2, 65535)), 0},
    });
    expectRules<uint16_t, unsigned char>({
        {"depthThreshold", COLOR_MODE_DEPTH, RUN(depthThreshold(a, t, 20000, 50000, r)),
         RULE(s >= 20000 && s < 50000 ? 255 : 0), COLOR_MODE_MONO},
    });
}

TEST(PixelArithmetic, FloatsByRule) {
    const ColorMode mode = COLOR_MODE_FLOAT;
    expectRules<float, float>({
        {"addValueF", mode, RUN(addValueF(a, t, 2.5f, r)), RULE(s + 2.5), 0},
        {"multiplyValueF", mode, RUN(multiplyValueF(a, t, -0.5f, r)), RULE(s * -0.5), 0},
        {"addImagesF", mode, RUN_PAIR(addImagesF), PAIR_RULE(s + s2), 0},
        {"addImages", mode, RUN_PAIR(addImages), PAIR_RULE(s + s2), 0},
        {"subtractImagesF", mode, RUN_PAIR(subtractImagesF), PAIR_RULE(s - s2), 0},
        {"multiplyImages", mode, RUN_PAIR(multiplyImages), PAIR_RULE(s * s2), 0},
    });
}

TEST(PixelArithmetic, AbsDiffOfColours) {
    const GuardedImage a(Size(17, 3), COLOR_MODE_BGR, 1, 1), b(Size(17, 3), COLOR_MODE_BGR, 2, 2);
    GuardedImage target(Size(17, 3), COLOR_MODE_MONO, 3, 3);
    absDiff(a.image, b.image, target.image, Rect(1, 1, 17, 3));
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 17; ++x) {
            double sum = 0;
            for (int c = 0; c < 3; ++c)
                sum += std::fabs(double(a.image.data(x, y)[c]) - b.image.data(x, y)[c]);
            EXPECT_EQ(x > 0 && y > 0 ? int(sum / 3) : target.before(x, y, 0),
                      *target.image.data(x, y));
        }
    const Image smaller(Size(16, 3), COLOR_MODE_BGR), rgb(Size(17, 3), COLOR_MODE_RGB);
    EXPECT_EQ("(source1).size() == (source2.size())",
              conditionOf([&] { absDiff(a.image, smaller, target.image); }));
    EXPECT_EQ("(source1.rect()).contains(rect)",
              conditionOf([&] { absDiff(a.image, b.image, target.image, Rect(0, 0, 1, 4)); }));
    EXPECT_EQ("have COLOR_MODE_BGR, but need COLOR_MODE_RGB\n",
              assertionOf([&] { absDiff(a.image, rgb, target.image); }));
    EXPECT_EQ("absDiff: unsupported color mode: COLOR_MODE_RGB\n",
              assertionOf([&] { absDiff(rgb, rgb, target.image); }));
}

TEST(PixelArithmetic, MeansAndSums) {
    const GuardedImage mono(Size(9, 5), COLOR_MODE_MONO, 3, 1),
        rgba(Size(9, 5), COLOR_MODE_RGBA, 3, 2);
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
    EXPECT_NE("no failure",
              assertionOf([&] { imageMean(Image(Size(2, 2), COLOR_MODE_FLOAT), means); }));
}

TEST(PixelArithmetic, Extrema) {
    const Image mono =
        imageOf<unsigned char>(Size(4, 3), COLOR_MODE_MONO, {5, 1, 9, 2, 3, 9, 4, 1, 7, 7, 7, 7});
    EXPECT_EQ(Point(2, 0), findGlobalMaximum(mono));
    EXPECT_EQ(Point(1, 0), findGlobalMinimum(mono));
    EXPECT_EQ(Point(3, 1), findGlobalMinimum(mono, Rect(2, 1, 4, 3)));
    EXPECT_EQ(7, imageMax(mono, Rect(0, 2, 4, 3)));
    EXPECT_EQ(Point(1, 0),
              findGlobalMinimum(imageOf<float>(Size(2, 1), COLOR_MODE_FLOAT, {1, -2})));

    // A parabola with its vertex at (2.3, 1.8).
    Image hill(Size(5, 4), COLOR_MODE_FLOAT);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x)
            hill.row<float>(y)[x] =
                10 - std::pow(float(x) - 2.3f, 2.0f) - 2 * std::pow(float(y) - 1.8f, 2.0f);
    const PointF top = findPreciseLocalExtremum(hill, findGlobalMaximum(hill));
    EXPECT_NEAR(2.3f, top.x, 1e-5f);
    EXPECT_NEAR(1.8f, top.y, 1e-5f);
    EXPECT_EQ(PointF(0, 0), findPreciseLocalExtremum(hill, Point(0, 0)));
    EXPECT_NE("no failure", assertionOf([&] { findPreciseLocalExtremum(hill, Point(5, 0)); }));
}

TEST(PixelArithmetic, ChannelsComeApartAndTogether) {
    const GuardedImage rgba(Size(7, 3), COLOR_MODE_RGBA, 3, 1);
    std::vector<Image> channels;
    splitChannels(rgba.image, channels);
    ASSERT_EQ(4u, channels.size());
    EXPECT_EQ(rgba.image.data(6, 2)[3], *channels[3].data(6, 2));
    Image merged;
    mergeChannels(channels, merged, COLOR_MODE_RGBA);
    EXPECT_TRUE(merged == rgba.image);
    EXPECT_EQ("4 != 3\n", assertionOf([&] { mergeChannels(channels, merged, COLOR_MODE_BGR); }));
    EXPECT_NE("no failure",
              assertionOf([&] { splitChannels(Image(Size(1, 1), COLOR_MODE_FLOAT), channels); }));
}

TEST(PixelArithmetic, AdaptiveImageComparesWithTheMeanAround) {
    const GuardedImage mono(Size(11, 7), COLOR_MODE_MONO, 2, 6);
    Image target;
    for (int radius : {0, 1, 3, 100}) {
        adaptiveImage(mono.image, target, radius, -8);
        for (int y = 0; y < 7; ++y)
            for (int x = 0; x < 11; ++x) {
                double sum = 0, count = 0;
                for (int v = 0; v < 7; ++v)
                    for (int u = 0; u < 11; ++u)
                        if (std::abs(u - x) <= radius && std::abs(v - y) <= radius) {
                            sum += *mono.image.data(u, v);
                            ++count;
                        }
                const bool light = *mono.image.data(x, y) > sum / count - 8;
                ASSERT_EQ(light ? 255 : 0, *target.data(x, y)) << radius << " " << x << " " << y;
            }
    }
}

TEST(ImageHistogram, CountsAndPercentiles) {
    const Image mono =
        imageOf<unsigned char>(Size(5, 2), COLOR_MODE_MONO, {3, 3, 3, 200, 200, 9, 9, 9, 9, 255});
    const ImageHistogram whole(mono), part(mono, Rect(3, 0, 5, 2));
    EXPECT_EQ(10u, whole.total());
    EXPECT_EQ(1u, part.count(9));
    EXPECT_EQ(9, part.minValue());
    EXPECT_EQ(255, part.maxValue());
    EXPECT_EQ(3, whole.percentile(0.3f));
    EXPECT_EQ(255, whole.percentile(1));
    Image equalized;
    equalizeHistogram(mono, equalized);  // 3: nothing below, 9: 4 of 7, 200: 6 of 7
    EXPECT_EQ((Bytes{0, 0, 0, 218, 218, 145, 145, 145, 145, 255}),
              cellsOf<unsigned char>(equalized));
    equalizeHistogram(mono, equalized, Rect(0, 0, 2, 1));  // one value stays
    EXPECT_EQ(3, *equalized.data());
}
