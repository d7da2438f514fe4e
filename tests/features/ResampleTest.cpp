#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "KZ_IntegralImage.h"
#include "KZ_ResampleImage.h"
#include "KZ_Vectorize.h"
#include "LogCapture.h"
#include "TestImages.h"

using KZ::Image;
using KZ::Rect;
using KZ::Size;
using testing_support::assertionOf;
using testing_support::conditionOf;

namespace {

bool isIn(const Rect& rect, int x, int y) {
    return rect.area() == 0 || rect.contains(Rect(x, y, x + 1, y + 1));
}

// Channel or 16-bit cell of a pixel.
int valueAt(const Image& image, int x, int y, int c) {
    return image.colorMode() == KZ::COLOR_MODE_DEPTH ? cellAt(image, x, y) : byteAt(image, x, y, c);
}

int channelsOf(const Image& image) {
    return image.colorMode() == KZ::COLOR_MODE_DEPTH ? 1 : image.depth();
}

int mean(const Image& image, const Rect& block, int c) {
    int64_t sum = 0;
    for (int y = block.top; y < block.bottom; ++y)
        for (int x = block.left; x < block.right; ++x) sum += valueAt(image, x, y, c);
    return int(sum / block.area());
}

const KZ::ColorMode SAMPLED_MODES[] = {KZ::COLOR_MODE_MONO, KZ::COLOR_MODE_DEPTH,
                                       KZ::COLOR_MODE_BGR, KZ::COLOR_MODE_RGBA};

TEST(ZoomImageAverage, MeansOfFootprints) {
    std::mt19937 random(81);
    for (const KZ::ColorMode mode : SAMPLED_MODES)
        for (const float zoom : {1.1f, 2.0f, 3.3f, 9.0f})
            for (const Rect rect : {Rect(), Rect(1, 0, 3, 2)}) {
                GuardedImage source(37, 26, mode, 2);
                source.randomize(random);
                Image target(Size(int(37 / zoom), int(26 / zoom)), mode);
                KZ::zero(target);
                KZ::zoomImageAverage(source.image, target, zoom, rect);
                for (int y = 0; y < target.height(); ++y)
                    for (int x = 0; x < target.width(); ++x)
                        for (int c = 0; c < channelsOf(target); ++c) {
                            const Rect block(int(float(x) * zoom), int(float(y) * zoom),
                                             std::min(int(float(x + 1) * zoom), 37),
                                             std::min(int(float(y + 1) * zoom), 26));
                            ASSERT_EQ(isIn(rect, x, y) ? mean(source.image, block, c) : 0,
                                      valueAt(target, x, y, c))
                                << zoom << " " << x << " " << y;
                        }
                if (mode != KZ::COLOR_MODE_MONO || rect.area()) continue;
                Image integral, fromIntegral;
                KZ::computeIntegral(source.image, integral);
                KZ::zoomImageIntegral(integral, fromIntegral, zoom);
                EXPECT_EQ(target, fromIntegral);
            }
}

// Bilinear value at a real position, the edge pixels repeated.
double bilinear(const Image& image, double x, double y, int c) {
    x = std::clamp(x, 0.0, double(image.width() - 1));
    y = std::clamp(y, 0.0, double(image.height() - 1));
    const int left = int(x), top = int(y);
    const int right = std::min(left + 1, image.width() - 1);
    const int bottom = std::min(top + 1, image.height() - 1);
    const double fx = x - left, fy = y - top;
    const auto between = [&](int row) {
        return (1 - fx) * valueAt(image, left, row, c) + fx * valueAt(image, right, row, c);
    };
    return (1 - fy) * between(top) + fy * between(bottom);
}

// A smooth picture, so that a position off by 1/256 pixel moves values by a fraction.
void fillSmooth(Image& image) {
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            for (int c = 0; c < channelsOf(image); ++c) {
                const int value = 10 + 5 * x + 3 * y + 20 * c;
                if (image.colorMode() == KZ::COLOR_MODE_DEPTH)
                    setCell(image, x, y, unsigned(value));
                else
                    image.data(x, y)[c] = static_cast<unsigned char>(value);
            }
}

// MONO and DEPTH sample at x / scale; colours by whole steps of 1/256, half a step further.
TEST(ResizeImageBilinear, SamplesBetweenPixels) {
    for (const KZ::ColorMode mode : SAMPLED_MODES)
        for (const float scale : {0.5f, 0.8f, 1.0f, 2.0f, 2.7f})
            for (const Rect rect : {Rect(), Rect(2, 1, 5, 4)}) {
                GuardedImage source(21, 13, mode, 4);
                fillSmooth(source.image);
                Image target(Size(int(21 * scale), int(13 * scale)), mode);
                KZ::zero(target);
                KZ::resizeImageBilinear(source.image, target, scale, rect);
                const auto position = [&](int i) {
                    const int start = int(128 / scale), step = int(256 / scale);
                    return KZ::isColor(mode) ? (start + i * step) / 256.0 : i / double(scale);
                };
                for (int y = 0; y < target.height(); ++y)
                    for (int x = 0; x < target.width(); ++x)
                        for (int c = 0; c < channelsOf(target); ++c) {
                            const double sample =
                                bilinear(source.image, position(x), position(y), c);
                            const double expected = isIn(rect, x, y) ? sample - .5 : 0;
                            ASSERT_NEAR(expected, valueAt(target, x, y, c), .6)
                                << scale << " " << x << " " << y;
                        }
            }
}

TEST(ResizeImageNn, TakesTheNearestPixel) {
    std::mt19937 random(83);
    for (const KZ::ColorMode mode : {KZ::COLOR_MODE_MONO, KZ::COLOR_MODE_BGR})
        for (const Rect rect : {Rect(), Rect(3, 2, 20, 7)}) {
            GuardedImage source(12, 6, mode, 1);
            source.randomize(random);
            Image target(Size(30, 15), mode);
            KZ::zero(target);
            KZ::resizeImageNn(source.image, target, 2.5f, rect);
            for (int y = 0; y < 15; ++y)
                for (int x = 0; x < 30; ++x)
                    ASSERT_EQ(isIn(rect, x, y) ? byteAt(source.image, x * 2 / 5, y * 2 / 5) : 0,
                              byteAt(target, x, y));
        }
    GuardedImage src(12, 6, KZ::COLOR_MODE_MONO, 3), dst(5, 4, KZ::COLOR_MODE_MONO, 2);
    src.randomize(random);
    KZ::scale_some_cpp_usage_sl(12, 6, 15, 5, 4, 7, src.image.data(), dst.image.data());
    EXPECT_TRUE(dst.gapsAreUntouched());
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x)
            ASSERT_EQ(byteAt(src.image, x * 12 / 5, y * 3 / 2), byteAt(dst.image, x, y));
}

TEST(ResizeImageAccurate, ChoosesByScale) {
    std::mt19937 random(84);
    GuardedImage source(40, 30, KZ::COLOR_MODE_MONO);
    source.randomize(random);
    Image accurate, other;
    KZ::resizeImageAccurate(source.image, accurate, .5f);
    KZ::resizeImageBilinear(source.image, other, .5f);
    EXPECT_EQ(other, accurate);
    KZ::resizeImageAccurate(source.image, accurate, .25f);
    KZ::zoomImageAverage(source.image, other, 4);
    EXPECT_EQ(other, accurate);
}

// The outer edges coincide: pixel middles at (x + .5) * W / w - .5.
TEST(BilinearScale, OuterEdgesCoincide) {
    const KZ::ColorMode modes[] = {KZ::COLOR_MODE_MONO, KZ::COLOR_MODE_RGB, KZ::COLOR_MODE_RGBA};
    for (const KZ::ColorMode mode : modes)
        for (const Size size : {Size(7, 5), Size(21, 13), Size(40, 33), Size(1, 1)}) {
            GuardedImage source(21, 13, mode, 1), target(size.width, size.height, mode, 2);
            fillSmooth(source.image);
            KZ::Vectorize::bilinearScale(source.image, target.image);
            EXPECT_TRUE(target.gapsAreUntouched());
            for (int y = 0; y < size.height; ++y)
                for (int x = 0; x < size.width; ++x)
                    for (int c = 0; c < source.image.depth(); ++c)
                        ASSERT_NEAR(bilinear(source.image, (x + .5) * 21 / size.width - .5,
                                             (y + .5) * 13 / size.height - .5, c) -
                                        .5,
                                    byteAt(target.image, x, y, c), .6)
                            << size << " " << x << " " << y;
            if (mode != KZ::COLOR_MODE_MONO) continue;
            Image gray(size, mode);
            KZ::resizeBilinearGray(source.image, gray);
            EXPECT_EQ(target.image, gray);
        }
}

TEST(IntegralSmooth, BoxMeansCutOffAtTheBorder) {
    std::mt19937 random(86);
    GuardedImage source(17, 9, KZ::COLOR_MODE_MONO);
    source.randomize(random);
    Image integral, target;
    KZ::computeIntegral(source.image, integral);
    for (const int block : {1, 2, 5, 40}) {
        KZ::integralSmooth(integral, target, block);
        for (int y = 0; y < 9; ++y)
            for (int x = 0; x < 17; ++x) {
                const Rect box = Rect(0, 0, block, block);
                const int left = x - block / 2, top = y - block / 2;
                const Rect inside = Rect(left, top, left + box.right, top + box.bottom)
                                        .intersection(source.image.rect());
                ASSERT_EQ(mean(source.image, inside, 0), byteAt(target, x, y)) << block;
            }
    }
}

// Shrunk by whole factors, pixels are means of blocks; smoothing widens the blocks.
TEST(IntegralZoom, MeansOfBlocks) {
    std::mt19937 random(87);
    for (const KZ::ColorMode mode :
         {KZ::COLOR_MODE_INTEGRAL, KZ::COLOR_MODE_MONO, KZ::COLOR_MODE_RGBA}) {
        const bool isIntegral = mode == KZ::COLOR_MODE_INTEGRAL;
        GuardedImage picture(24, 18, isIntegral ? KZ::COLOR_MODE_MONO : mode);
        picture.randomize(random);
        Image integral;
        if (isIntegral) KZ::computeIntegral(picture.image, integral);
        const Image& source = isIntegral ? integral : picture.image;
        Image whole(Size(8, 9), picture.image.colorMode()), part = whole;
        KZ::integralZoom(source, whole);
        KZ::zero(part);
        KZ::integralZoomAndSmooth(source, part, Rect(4, 2, 20, 14), Rect(1, 3, 5, 6), 2);
        for (int y = 0; y < 9; ++y)
            for (int x = 0; x < 8; ++x)
                for (int c = 0; c < whole.depth(); ++c) {
                    const Rect block(3 * x, 2 * y, 3 * x + 3, 2 * y + 2);
                    ASSERT_EQ(mean(picture.image, block, c), byteAt(whole, x, y, c));
                    // Steps of 4, blocks of 8 around their middles.
                    const int left = 4 + 4 * (x - 1) - 2, top = 2 + 4 * (y - 3) - 2;
                    const Rect smooth = Rect(left, top, left + 8, top + 8);
                    ASSERT_EQ(
                        isIn(Rect(1, 3, 5, 6), x, y)
                            ? mean(picture.image, smooth.intersection(picture.image.rect()), c)
                            : 0,
                        byteAt(part, x, y, c))
                        << x << " " << y;
                }
    }
}

TEST(Resamplers, Refusals) {
    Image mono(Size(8, 6), KZ::COLOR_MODE_MONO), rmct(Size(8, 6), KZ::COLOR_MODE_RMCT), target;
    Image bgr(Size(8, 6), KZ::COLOR_MODE_BGR), integral;
    KZ::zero(mono);
    KZ::computeIntegral(mono, integral);
    const Rect large(0, 0, 9, 6);
    EXPECT_EQ("(zoom) > (1.f)", conditionOf([&] { KZ::zoomImageAverage(mono, target, 1); }));
    EXPECT_EQ("1 <= 1\n", assertionOf([&] { KZ::zoomImageAverage(mono, target, 1); }));
    EXPECT_EQ("color mode is not supported: COLOR_MODE_RMCT\n",
              assertionOf([&] { KZ::zoomImageAverage(rmct, target, 2); }));
    EXPECT_EQ("(integralRect(integral)).contains(targetRect)",
              conditionOf([&] { KZ::zoomImageIntegral(integral, target, 2, large); }));
    EXPECT_NE("no failure",
              conditionOf([&] { KZ::zoomImageIntegral(integral, target, 2, Rect(0, 0, 5, 3)); }));
    EXPECT_EQ("(target.rect()).contains(targetRect)",
              conditionOf([&] { KZ::resizeImageNn(mono, target, 1, large); }));
    EXPECT_EQ("Block size value must be positive\n",
              assertionOf([&] { KZ::integralSmooth(integral, target, 0); }));
    EXPECT_EQ("(source.depth()) == (target.depth())",
              conditionOf([&] { KZ::Vectorize::bilinearScale(mono, bgr); }));
    EXPECT_EQ("Unknown colorMode of bilinearScale: COLOR_MODE_RMCT\n",
              assertionOf([&] { KZ::Vectorize::bilinearScale(rmct, rmct); }));
}

}  // namespace
