#include "KZ_ResizeImage.h"

#include "LogCapture.h"
#include "TestImages.h"

using namespace KZ;
using testing_support::assertionOf;

namespace {

// Sum over a block of `zoom` by `zoom` source pixels.
int blockSum(const Image& source, int x, int y, int c, int zoom) {
    int sum = 0;
    for (int i = 0; i < zoom * zoom; ++i)
        sum += valueAt(source, x * zoom + i % zoom, y * zoom + i / zoom, c);
    return sum;
}

// Pixel x of a row of `width` source pixels, by divisions.
int halved(const Image& source, int x, int y, int width) {
    const int a = byteAt(source, 2 * x, 2 * y), b = byteAt(source, 2 * x + 1, 2 * y);
    const int c = byteAt(source, 2 * x, 2 * y + 1), d = byteAt(source, 2 * x + 1, 2 * y + 1);
    return x < width / 32 * 16 ? ((a + b) / 2 + (c + d) / 2) / 2 : (a + b + c + d) / 4;
}

class MonoTwice : public testing::TestWithParam<MonoTwiceVariant> {};

TEST_P(MonoTwice, HalvesRowsOfAnyWidth) {
    for (const int width : {0, 1, 2, 3, 30, 31, 32, 33, 34, 62, 63, 64, 65, 97, 128, 131, 320}) {
        GuardedImage source(Size(width, 2), COLOR_MODE_MONO, 3, unsigned(width));
        GuardedImage target(Size(width / 2, 1), COLOR_MODE_MONO);
        GetParam().run(source.image.data(0, 0), source.image.data(0, 1), target.image.data(),
                       width);
        for (int x = 0; x < width / 2; ++x)
            ASSERT_EQ(halved(source.image, x, 0, width), byteAt(target.image, x, 0))
                << "width " << width << ", x " << x;
    }
}
INSTANTIATE_TEST_SUITE_P(Variants, MonoTwice, testing::ValuesIn(zoomMonoTwiceVariants()),
                         [](const auto& variant) { return variant.param.name; });

// In a part of a mono image the blocks of 16 count from the part's edge.
TEST(ZoomImageTwice, WritesTheRectangleAlone) {
    const struct {
        ColorMode mode;
        Size size;
        Rect rect;
    } rows[] = {
        {COLOR_MODE_MONO, Size(71, 9), Rect()},
        {COLOR_MODE_MONO, Size(71, 9), Rect(3, 1, 35, 3)},
        {COLOR_MODE_BGR, Size(7, 5), Rect()},
        {COLOR_MODE_RGBA, Size(9, 8), Rect(1, 2, 4, 3)},
    };
    for (const auto& row : rows) {
        const GuardedImage source(row.size, row.mode, 4);
        GuardedImage target(Size(row.size.width / 2, row.size.height / 2), row.mode, 8, 2);
        zoomImageTwice(source.image, target.image, row.rect);
        EXPECT_TRUE(target.paddingKept());
        const Rect written = row.rect == Rect() ? target.image.rect() : row.rect;
        expectValues(target.image, [&](int x, int y, int c) {
            if (!isIn(written, x, y)) return byteAt(target.before, x, y, c);
            if (row.mode == COLOR_MODE_MONO && x - written.left < written.width() / 16 * 16)
                return halved(source.image, x, y, 1000);
            return blockSum(source.image, x, y, c, 2) / 4;
        });
    }
}

TEST(ZoomDepthTwice, MeanOfValidCells) {
    std::mt19937 random(3);
    const int values[] = {0, 1, 2, 4998, 4999, 5000, 65535, 1000, 3001};
    for (const int width : {1, 2, 5, 40}) {
        GuardedImage source(Size(width, 7), COLOR_MODE_DEPTH, 2);
        for (int i = 0; i < width * 7; ++i)
            source.image.row<uint16_t>(i / width)[i % width] = uint16_t(values[random() % 9]);
        GuardedImage target(Size(width < 2 ? 1 : width / 2, 3), COLOR_MODE_DEPTH, 6);
        zoomDepthTwice(width, 7, source.image.data(), target.image.data(),
                       source.image.stripLength(), target.image.stripLength());
        expectValues(target.image, [&](int x, int y, int) {
            int sum = 0, count = 0;
            for (int i = 0; i < 4; ++i) {
                if (2 * x + i % 2 >= width) continue;
                const int cell = valueAt(source.image, 2 * x + i % 2, 2 * y + i / 2);
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
    const struct {
        const char* what;
        Rect rect, written;
    } rows[] = {
        {"whole", Rect(), Rect(0, 0, 5, 4)},
        {"odd sides", Rect(3, 1, 8, 7), Rect(1, 0, 4, 3)},
        {"last column takes no part", Rect(8, 6, 11, 9), Rect(4, 3, 5, 4)},
        {"too narrow for a pixel", Rect(4, 2, 5, 8), Rect()},
        {"no area means whole", Rect(4, 2, 4, 8), Rect(0, 0, 5, 4)},
    };
    for (const auto& row : rows)
        for (const ColorMode mode : {COLOR_MODE_MONO, COLOR_MODE_DEPTH}) {
            SCOPED_TRACE(row.what);
            GuardedImage source(Size(11, 9), mode, 6), target(Size(5, 4), mode, 2);
            for (int i = 0; mode == COLOR_MODE_DEPTH && i < 99; ++i)  // most cells are valid
                source.image.row<uint16_t>(i / 11)[i % 11] &= 4095;
            zero(target.image);
            scaleHalfImage(source.image, target.image, row.rect);
            EXPECT_TRUE(target.paddingKept());
            Image whole;
            zoomImageTwice(source.image, whole);
            expectValues(target.image, [&](int x, int y, int c) {
                const bool isWritten = row.written.area() && isIn(row.written, x, y);
                return isWritten ? valueAt(whole, x, y, c) : 0;
            });
        }
    Image rgb(Size(8, 8), COLOR_MODE_RGB), target;
    EXPECT_EQ("have COLOR_MODE_RGB, but need COLOR_MODE_MONO or COLOR_MODE_DEPTH\n",
              assertionOf([&] { scaleHalfImage(rgb, target); }));
}

// All of the target is computed, whatever the rectangle, and with the source's last pixel.
TEST(ZoomSkipImage, AnyModeSizeAndZoom) {
    for (const ColorMode mode : {COLOR_MODE_MONO, COLOR_MODE_DEPTH, COLOR_MODE_RGB})
        for (const float zoom : {0.5f, 1.0f, 1.2f, 1.44f, 1.7279999f, 3.7f})
            for (const Size size : {Size(2, 2), Size(33, 17), Size(80, 61)}) {
                const GuardedImage source(size, mode, 2);
                Image target;
                if (mode == COLOR_MODE_RGB)
                    zoomSkipImageColor(source.image, target, zoom);
                else
                    zoomSkipImage(source.image, target, zoom, Rect(0, 0, 1, 1));
                ASSERT_EQ(Size(int(float(size.width) / zoom), int(float(size.height) / zoom)),
                          target.size());
                expectValues(target, [&](int x, int y, int c) {
                    return valueAt(source.image, int(float(x) * zoom), int(float(y) * zoom), c);
                });
            }
    Image source(Size(8, 6), COLOR_MODE_MONO), target;
    EXPECT_EQ("Zoom value must be positive\n",
              assertionOf([&] { zoomSkipImage(source, target, 0); }));
    EXPECT_EQ("source.rect() = Rect(0, 0, 8, 6), roi = Rect(0, 0, 8, 7)\n",
              assertionOf([&] { zoomSkipImage(source, target, 1, Rect(0, 0, 8, 7)); }));
}

TEST(ZoomImage, BoxMeansAndCopiesOfPixels) {
    for (const ColorMode mode :
         {COLOR_MODE_MONO, COLOR_MODE_BGR, COLOR_MODE_RGBA, COLOR_MODE_DEPTH})
        for (const int zoom : {1, 2, 3, 4, 5, 13}) {
            const GuardedImage source(Size(43, 27), mode, 6);
            Image target;
            zoomImage(source.image, target, unsigned(zoom));
            ASSERT_EQ(Size(43 / zoom, 27 / zoom), target.size());
            expectValues(target, [&](int x, int y, int c) {
                return blockSum(source.image, x, y, c, zoom) / (zoom * zoom);
            });
            expandImage(source.image, target, unsigned(zoom));
            ASSERT_EQ(Size(43 * zoom, 27 * zoom), target.size());
            expectValues(target, [&](int x, int y, int c) {
                return valueAt(source.image, x / zoom, y / zoom, c);
            });
        }
    const GuardedImage source(Size(7, 5), COLOR_MODE_BGR, 8);
    Image target;
    expandImage(source.image, target, 2.5f);
    ASSERT_EQ(Size(17, 12), target.size());
    expectValues(
        target, [&](int x, int y, int c) { return byteAt(source.image, x * 2 / 5, y * 2 / 5, c); });
}

}  // namespace
