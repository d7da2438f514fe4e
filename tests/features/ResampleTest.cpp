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

namespace {

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
                expectValues(target, [&](int x, int y, int c) {
                    const Rect block(int(float(x) * zoom), int(float(y) * zoom),
                                     std::min(int(float(x + 1) * zoom), 37),
                                     std::min(int(float(y + 1) * zoom), 26));
                    return isIn(rect, x, y) ? mean(source.image, block, c) : 0;
                });
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
            expectValues(target, [&](int x, int y, int c) {
                return isIn(rect, x, y) ? byteAt(source.image, x * 2 / 5, y * 2 / 5, c) : 0;
            });
        }
    GuardedImage src(12, 6, KZ::COLOR_MODE_MONO, 3), dst(5, 4, KZ::COLOR_MODE_MONO, 2);
    src.randomize(random);
    KZ::scale_some_cpp_usage_sl(12, 6, 15, 5, 4, 7, src.image.data(), dst.image.data());
    EXPECT_TRUE(dst.paddingKept());
    expectValues(dst.image,
                 [&](int x, int y, int) { return byteAt(src.image, x * 12 / 5, y * 3 / 2); });
}

// The outer edges coincide: pixel middles at (x + .5) * W / w - .5.
TEST(BilinearScale, OuterEdgesCoincide) {
    const KZ::ColorMode modes[] = {KZ::COLOR_MODE_MONO, KZ::COLOR_MODE_RGB, KZ::COLOR_MODE_RGBA};
    for (const KZ::ColorMode mode : modes)
        for (const Size size : {Size(7, 5), Size(21, 13), Size(40, 33), Size(1, 1)}) {
            GuardedImage source(21, 13, mode, 1), target(size.width, size.height, mode, 2);
            fillSmooth(source.image);
            KZ::Vectorize::bilinearScale(source.image, target.image);
            EXPECT_TRUE(target.paddingKept());
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
        expectValues(target, [&](int x, int y, int c) {
            const int left = x - block / 2, top = y - block / 2;
            const Rect box(left, top, left + block, top + block);
            return mean(source.image, box.intersection(source.image.rect()), c);
        });
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
        expectValues(whole, [&](int x, int y, int c) {
            return mean(picture.image, Rect(3 * x, 2 * y, 3 * x + 3, 2 * y + 2), c);
        });
        // Steps of 4, blocks of 8 around their middles.
        expectValues(part, [&](int x, int y, int c) {
            if (!isIn(Rect(1, 3, 5, 6), x, y)) return 0;
            const int left = 4 * x - 2, top = 4 * y - 12;
            const Rect block(left, top, left + 8, top + 8);
            return mean(picture.image, block.intersection(picture.image.rect()), c);
        });
    }
}

TEST(Resamplers, Refusals) {
    Image rmct(Size(8, 6), KZ::COLOR_MODE_RMCT), target;
    EXPECT_EQ("1 <= 1\n", assertionOf([&] { KZ::zoomImageAverage(rmct, target, 1); }));
    EXPECT_EQ("color mode is not supported: COLOR_MODE_RMCT\n",
              assertionOf([&] { KZ::zoomImageAverage(rmct, target, 2); }));
    EXPECT_EQ("Unknown colorMode of bilinearScale: COLOR_MODE_RMCT\n",
              assertionOf([&] { KZ::Vectorize::bilinearScale(rmct, rmct); }));
}

}  // namespace
