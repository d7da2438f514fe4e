#include "KZ_ResampleImage.h"

#include <algorithm>

#include "KZ_IntegralImage.h"
#include "KZ_Vectorize.h"
#include "TestImages.h"

using namespace KZ;

namespace {

// Mean over the part of `block` that lies in the image.
int mean(const Image& image, const Rect& block, int c) {
    const Rect inside = block.intersection(image.rect());
    int64_t sum = 0;
    for (int y = inside.top; y < inside.bottom; ++y)
        for (int x = inside.left; x < inside.right; ++x) sum += valueAt(image, x, y, c);
    return int(sum / inside.area());
}

const ColorMode MODES[] = {COLOR_MODE_MONO, COLOR_MODE_DEPTH, COLOR_MODE_BGR, COLOR_MODE_RGBA};

TEST(ZoomImageAverage, MeansOfFootprints) {
    for (const ColorMode mode : MODES)
        for (const float zoom : {1.1f, 2.0f, 3.3f, 9.0f})
            for (const Rect rect : {Rect(), Rect(1, 0, 3, 2)}) {
                const GuardedImage source(Size(37, 26), mode, 2);
                Image target(Size(int(37 / zoom), int(26 / zoom)), mode);
                zero(target);
                zoomImageAverage(source.image, target, zoom, rect);
                expectValues(target, [&](int x, int y, int c) {
                    const Rect block(int(float(x) * zoom), int(float(y) * zoom),
                                     int(float(x + 1) * zoom), int(float(y + 1) * zoom));
                    return isIn(rect, x, y) ? mean(source.image, block, c) : 0;
                });
                if (mode != COLOR_MODE_MONO || rect.area()) continue;
                Image integral, fromIntegral;
                computeIntegral(source.image, integral);
                zoomImageIntegral(integral, fromIntegral, zoom);
                EXPECT_EQ(target, fromIntegral);
            }
}

// On a slope the bilinear value at (x, y) is that of the slope; edge pixels are repeated.
double slope(double x, double y, int c) {
    return 10 + 5 * std::clamp(x, 0.0, 20.0) + 3 * std::clamp(y, 0.0, 12.0) + 20 * c;
}
Image slopeOf(ColorMode mode) {
    Image image(Size(21, 13), mode);
    for (int y = 0; y < 13; ++y)
        for (int x = 0; x < 21; ++x)
            for (int c = 0; c < channelsOf(image); ++c)
                if (mode == COLOR_MODE_DEPTH)
                    image.row<uint16_t>(y)[x] = static_cast<uint16_t>(slope(x, y, c));
                else
                    image.data(x, y)[c] = static_cast<unsigned char>(slope(x, y, c));
    return image;
}

// `at(i, side)` is the source position of target index i; `side` counts as x (0) or y (1).
template <typename At>
void expectSampled(const Image& target, const Rect& rect, At at) {
    for (int y = 0; y < target.height(); ++y)
        for (int x = 0; x < target.width(); ++x)
            for (int c = 0; c < channelsOf(target); ++c)
                ASSERT_NEAR(isIn(rect, x, y) ? slope(at(x, 0), at(y, 1), c) - .5 : 0,
                            valueAt(target, x, y, c), .6)
                    << target.size() << " " << x << " " << y;
}

// MONO and DEPTH sample at x / scale; colours by whole steps of 1/256, half a step further.
TEST(ResizeImageBilinear, SamplesBetweenPixels) {
    for (const ColorMode mode : MODES)
        for (const float scale : {0.5f, 0.8f, 1.0f, 2.0f, 2.7f})
            for (const Rect rect : {Rect(), Rect(2, 1, 5, 4)}) {
                Image target(Size(int(21 * scale), int(13 * scale)), mode);
                zero(target);
                resizeImageBilinear(slopeOf(mode), target, scale, rect);
                expectSampled(target, rect, [&](int i, int) {
                    const int start = int(128 / scale), step = int(256 / scale);
                    return isColor(mode) ? (start + i * step) / 256.0 : i / double(scale);
                });
            }
}

// The outer edges coincide: pixel middles at (x + .5) * W / w - .5.
TEST(BilinearScale, OuterEdgesCoincide) {
    for (const ColorMode mode : {COLOR_MODE_MONO, COLOR_MODE_RGB, COLOR_MODE_RGBA})
        for (const Size size : {Size(7, 5), Size(21, 13), Size(40, 33), Size(1, 1)}) {
            GuardedImage target(size, mode, 2);
            Vectorize::bilinearScale(slopeOf(mode), target.image);
            EXPECT_TRUE(target.paddingKept());
            expectSampled(target.image, Rect(), [&](int i, int side) {
                return side ? (i + .5) * 13 / size.height - .5 : (i + .5) * 21 / size.width - .5;
            });
        }
}

TEST(ResizeImageNn, TakesTheNearestPixel) {
    const GuardedImage source(Size(12, 6), COLOR_MODE_BGR, 1);
    GuardedImage target(Size(30, 15), COLOR_MODE_BGR, 2);
    const Rect rect(3, 2, 20, 7);
    resizeImageNn(source.image, target.image, 2.5f, rect);
    expectValues(target.image, [&](int x, int y, int c) {
        return isIn(rect, x, y) ? byteAt(source.image, x * 2 / 5, y * 2 / 5, c)
                                : byteAt(target.before, x, y, c);
    });
}

TEST(IntegralSmooth, BoxMeansCutOffAtTheBorder) {
    const GuardedImage source(Size(17, 9), COLOR_MODE_MONO);
    Image integral, target;
    computeIntegral(source.image, integral);
    for (const int block : {1, 2, 5, 40}) {
        integralSmooth(integral, target, block);
        expectValues(target, [&](int x, int y, int c) {
            const int left = x - block / 2, top = y - block / 2;
            return mean(source.image, Rect(left, top, left + block, top + block), c);
        });
    }
}

// Shrunk by whole factors, pixels are means of blocks; smoothing widens the blocks.
TEST(IntegralZoom, MeansOfBlocks) {
    const GuardedImage source(Size(24, 18), COLOR_MODE_RGBA);
    Image whole(Size(8, 9), COLOR_MODE_RGBA), part = whole;
    integralZoom(source.image, whole);
    zero(part);
    integralZoomAndSmooth(source.image, part, Rect(4, 2, 20, 14), Rect(1, 3, 5, 6), 2);
    expectValues(whole, [&](int x, int y, int c) {
        return mean(source.image, Rect(3 * x, 2 * y, 3 * x + 3, 2 * y + 2), c);
    });
    // Steps of 4, blocks of 8 around their middles.
    expectValues(part, [&](int x, int y, int c) {
        if (!isIn(Rect(1, 3, 5, 6), x, y)) return 0;
        const int left = 4 * x - 2, top = 4 * y - 12;
        return mean(source.image, Rect(left, top, left + 8, top + 8), c);
    });
}

}  // namespace
