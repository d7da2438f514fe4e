#include <gtest/gtest.h>

#include "KZ_ResizeImage.h"
#include "LogCapture.h"
#include "TestImages.h"

using KZ::Image;
using KZ::Rect;
using KZ::Size;
using testing_support::assertionOf;

namespace {

const int WIDTHS[] = {0, 1, 2, 3, 30, 31, 32, 33, 34, 62, 63, 64, 65, 97, 128, 131, 320};

// Pixel x of a row of `width` source pixels, by divisions.
int halved(const Image& source, int x, int y, int width) {
    const int a = byteAt(source, 2 * x, 2 * y), b = byteAt(source, 2 * x + 1, 2 * y);
    const int c = byteAt(source, 2 * x, 2 * y + 1), d = byteAt(source, 2 * x + 1, 2 * y + 1);
    return x < width / 32 * 16 ? ((a + b) / 2 + (c + d) / 2) / 2 : (a + b + c + d) / 4;
}

class MonoTwice : public testing::TestWithParam<KZ::MonoTwiceVariant> {};

TEST_P(MonoTwice, HalvesRowsOfAnyWidth) {
    std::mt19937 random(1);
    for (const int width : WIDTHS) {
        GuardedImage source(width, 2, KZ::COLOR_MODE_MONO, 3);
        GuardedImage target(width / 2, 1, KZ::COLOR_MODE_MONO);
        source.randomize(random);
        GetParam().run(source.image.data(0, 0), source.image.data(0, 1), target.image.data(),
                       width);
        for (int x = 0; x < width / 2; ++x)
            ASSERT_EQ(halved(source.image, x, 0, width), byteAt(target.image, x, 0))
                << "width " << width << ", x " << x;
    }
}
INSTANTIATE_TEST_SUITE_P(Variants, MonoTwice, testing::ValuesIn(KZ::zoomMonoTwiceVariants()),
                         [](const auto& variant) { return variant.param.name; });

TEST(ZoomImageTwice, WritesTheRectangleAlone) {
    std::mt19937 random(2);
    struct Row {
        const char* what;
        KZ::ColorMode mode;
        Size size;
        Rect rect;
    };
    const Row rows[] = {
        {"whole mono", KZ::COLOR_MODE_MONO, Size(71, 9), Rect()},
        {"part of mono: blocks count from its edge", KZ::COLOR_MODE_MONO, Size(71, 9),
         Rect(3, 1, 35, 3)},
        {"whole bgr", KZ::COLOR_MODE_BGR, Size(7, 5), Rect()},
        {"part of rgba", KZ::COLOR_MODE_RGBA, Size(9, 8), Rect(1, 2, 4, 3)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        GuardedImage source(row.size.width, row.size.height, row.mode, 4);
        source.randomize(random);
        GuardedImage target(row.size.width / 2, row.size.height / 2, row.mode, 8);
        KZ::zero(target.image);
        KZ::zoomImageTwice(source.image, target.image, row.rect);
        EXPECT_TRUE(target.paddingKept());
        const Rect written = row.rect == Rect() ? target.image.rect() : row.rect;
        const bool isMono = row.mode == KZ::COLOR_MODE_MONO;
        expectValues(target.image, [&](int x, int y, int c) {
            if (!isIn(written, x, y)) return 0;
            if (isMono && x - written.left < written.width() / 16 * 16)
                return halved(source.image, x, y, 1000);
            int sum = 0;
            for (int i = 0; i < 4; ++i)
                sum += byteAt(source.image, 2 * x + i % 2, 2 * y + i / 2, c);
            return sum / 4;
        });
    }
}

TEST(ZoomDepthTwice, MeanOfValidCells) {
    std::mt19937 random(3);
    const unsigned int values[] = {0, 1, 2, 4998, 4999, 5000, 65535, 1000, 3001};
    for (const int width : {1, 2, 5, 40}) {
        GuardedImage source(width, 7, KZ::COLOR_MODE_DEPTH, 2);
        for (int y = 0; y < 7; ++y)
            for (int x = 0; x < width; ++x) setCell(source.image, x, y, values[random() % 9]);
        const int targetWidth = width < 2 ? 1 : width / 2;
        GuardedImage target(targetWidth, 3, KZ::COLOR_MODE_DEPTH, 6);
        KZ::zoomDepthTwice(width, 7, source.image.data(), target.image.data(),
                           source.image.stripLength(), target.image.stripLength());
        expectValues(target.image, [&](int x, int y, int) {
            int sum = 0, count = 0;
            for (int i = 0; i < 4; ++i) {
                if (2 * x + i % 2 >= width) continue;
                const int cell = cellAt(source.image, 2 * x + i % 2, 2 * y + i / 2);
                if (cell < 1 || cell > 4999) continue;
                sum += cell;
                ++count;
            }
            return count ? sum / count : 0;
        });
    }
}

// The rectangle in source pixels, taken down to even sides, becomes the written part.
TEST(ScaleHalfImage, HalvesTheRectangle) {
    std::mt19937 random(4);
    struct Row {
        const char* what;
        Rect rect, written;
    };
    const Row rows[] = {
        {"whole", Rect(), Rect(0, 0, 5, 4)},
        {"odd sides", Rect(3, 1, 8, 7), Rect(1, 0, 4, 3)},
        {"last column takes no part", Rect(8, 6, 11, 9), Rect(4, 3, 5, 4)},
        {"too narrow for a pixel", Rect(4, 2, 5, 8), Rect()},
        {"no area means whole", Rect(4, 2, 4, 8), Rect(0, 0, 5, 4)},
    };
    for (const Row& row : rows)
        for (const KZ::ColorMode mode : {KZ::COLOR_MODE_MONO, KZ::COLOR_MODE_DEPTH}) {
            SCOPED_TRACE(row.what);
            GuardedImage source(11, 9, mode, 6);
            source.randomize(random, 15);
            GuardedImage target(5, 4, mode, 2);
            KZ::zero(target.image);
            KZ::scaleHalfImage(source.image, target.image, row.rect);
            EXPECT_TRUE(target.paddingKept());
            Image whole;
            KZ::zoomImageTwice(source.image, whole);
            expectValues(target.image, [&](int x, int y, int c) {
                const bool isWritten = row.written.area() && isIn(row.written, x, y);
                return isWritten ? valueAt(whole, x, y, c) : 0;
            });
        }
    Image rgb(Size(8, 8), KZ::COLOR_MODE_RGB), target;
    EXPECT_EQ("have COLOR_MODE_RGB, but need COLOR_MODE_MONO or COLOR_MODE_DEPTH\n",
              assertionOf([&] { KZ::scaleHalfImage(rgb, target); }));
}

}  // namespace
