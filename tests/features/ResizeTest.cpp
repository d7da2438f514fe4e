#include <gtest/gtest.h>

#include "KZ_ResizeImage.h"
#include "LogCapture.h"
#include "TestImages.h"

using KZ::Image;
using KZ::Rect;
using KZ::Size;
using testing_support::assertionOf;
using testing_support::conditionOf;

namespace {

// All of the target is computed, whatever the rectangle, and with the source's last pixel.
TEST(ZoomSkipImage, AnyModeSizeAndZoom) {
    std::mt19937 random(11);
    for (const KZ::ColorMode mode : {KZ::COLOR_MODE_MONO, KZ::COLOR_MODE_DEPTH, KZ::COLOR_MODE_RGB})
        for (const float zoom : {0.5f, 1.0f, 1.2f, 1.44f, 1.7279999f, 3.7f})
            for (const Size size : {Size(2, 2), Size(33, 17), Size(80, 61)}) {
                GuardedImage source(size.width, size.height, mode, 2);
                source.randomize(random);
                Image target;
                if (mode == KZ::COLOR_MODE_RGB)
                    KZ::zoomSkipImageColor(source.image, target, zoom);
                else
                    KZ::zoomSkipImage(source.image, target, zoom, Rect(0, 0, 1, 1));
                ASSERT_EQ(Size(int(float(size.width) / zoom), int(float(size.height) / zoom)),
                          target.size());
                expectValues(target, [&](int x, int y, int c) {
                    return valueAt(source.image, int(float(x) * zoom), int(float(y) * zoom), c);
                });
            }
}

TEST(ZoomSkipImage, Refusals) {
    Image source(Size(8, 6), KZ::COLOR_MODE_MONO), bgr(Size(8, 6), KZ::COLOR_MODE_BGR), target;
    Image large(Size(5, 3), KZ::COLOR_MODE_MONO);
    KZ::zero(source);
    EXPECT_EQ("Zoom value must be positive\n",
              assertionOf([&] { KZ::zoomSkipImage(source, target, 0); }));
    EXPECT_EQ("source.rect() = Rect(0, 0, 8, 6), roi = Rect(0, 0, 8, 7)\n",
              assertionOf([&] { KZ::zoomSkipImage(source, target, 1, Rect(0, 0, 8, 7)); }));
    EXPECT_EQ("have COLOR_MODE_BGR, but need COLOR_MODE_MONO or COLOR_MODE_DEPTH\n",
              assertionOf([&] { KZ::zoomSkipImage(bgr, target, 2); }));
    const auto skipTooFar = [&] { KZ::zoom_skip<unsigned char>(source, large, 2); };
    EXPECT_EQ("8 >= 8\n", assertionOf(skipTooFar));
    EXPECT_EQ("shifts[targetWidth - 1] < (int)source.size().width", conditionOf(skipTooFar));
}

TEST(ZoomImage, BoxMeans) {
    std::mt19937 random(12);
    for (const KZ::ColorMode mode :
         {KZ::COLOR_MODE_MONO, KZ::COLOR_MODE_BGR, KZ::COLOR_MODE_RGBA, KZ::COLOR_MODE_DEPTH})
        for (const int zoom : {1, 2, 3, 4, 5, 13}) {
            GuardedImage source(43, 27, mode, 6);
            source.randomize(random);
            Image target;
            KZ::zoomImage(source.image, target, unsigned(zoom));
            ASSERT_EQ(Size(43 / zoom, 27 / zoom), target.size());
            expectValues(target, [&](int x, int y, int c) {
                int sum = 0;
                for (int i = 0; i < zoom * zoom; ++i)
                    sum += valueAt(source.image, x * zoom + i % zoom, y * zoom + i / zoom, c);
                return sum / (zoom * zoom);
            });
        }
}

// The block may stick out of a view, as long as the memory is there.
TEST(ZoomImage, AtLeastOnePixel) {
    Image picture(Size(4, 4), KZ::COLOR_MODE_MONO), view, target;
    for (int i = 0; i < 16; ++i) *picture.data(i % 4, i / 4) = static_cast<unsigned char>(i);
    view.createRef(picture, Rect(0, 0, 2, 3));
    KZ::zoomImage(view, target, 4);
    ASSERT_EQ(Size(1, 1), target.size());
    EXPECT_EQ(7, byteAt(target, 0, 0));
    EXPECT_EQ("image is not created\n", assertionOf([&] { KZ::zoomImage(Image(), target, 2); }));
    EXPECT_EQ("zoom > 0", conditionOf([&] { KZ::zoomImage(view, target, 0); }));
}

TEST(ExpandImage, ReplicatesPixels) {
    std::mt19937 random(13);
    for (const KZ::ColorMode mode :
         {KZ::COLOR_MODE_MONO, KZ::COLOR_MODE_BGR, KZ::COLOR_MODE_FLOAT2}) {
        GuardedImage source(7, 5, mode, 8);
        source.randomize(random);
        Image whole, fractional;
        KZ::expandImage(source.image, whole, 3u);
        KZ::expandImage(source.image, fractional, 2.5f);
        ASSERT_EQ(Size(21, 15), whole.size());
        ASSERT_EQ(Size(17, 12), fractional.size());
        expectValues(whole,
                     [&](int x, int y, int c) { return byteAt(source.image, x / 3, y / 3, c); });
        expectValues(fractional, [&](int x, int y, int c) {
            return byteAt(source.image, x * 2 / 5, y * 2 / 5, c);
        });
    }
}

}  // namespace
