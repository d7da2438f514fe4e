#include "KZ_Color.h"

#include <algorithm>
#include <cmath>

#include "KZ_ColorConversion.h"
#include "KZ_IntegralImage.h"
#include "KZ_MonoRow.h"
#include "KZ_RmctTransform.h"
#include "LogCapture.h"
#include "TestImages.h"

using namespace KZ;
using testing_support::assertionOf;
using testing_support::conditionOf;

namespace {

using Bytes = std::vector<unsigned char>;

struct Rgb8 {
    int r, g, b;
};

double floor256(double sum) {
    return std::floor(sum / 256);
}
unsigned char limited(double v) {
    return static_cast<unsigned char>(std::min(std::max(v, 0.0), 255.0));
}

int lumaOf(Rgb8 p, int rounding) {
    return 16 + int(floor256(66 * p.r + 129 * p.g + 25 * p.b + rounding));
}

Bytes yuvOf(Rgb8 p) {
    return {static_cast<unsigned char>(lumaOf(p, 128)),
            static_cast<unsigned char>(128 + floor256(112 * p.b - 38 * p.r - 74 * p.g + 128)),
            static_cast<unsigned char>(128 + floor256(112 * p.r - 94 * p.g - 18 * p.b + 128))};
}

Rgb8 rgbOf(const unsigned char* yuv) {
    const double c = 298.0 * (yuv[0] - 16), d = yuv[1] - 128.0, e = yuv[2] - 128.0;
    return {limited(floor256(c + 409 * e + 128)), limited(floor256(c - 100 * d - 210 * e + 128)),
            limited(floor256(c + 519 * d + 128))};
}

// A pixel of one mode as colours, and colours as a pixel of another.
Rgb8 read(ColorMode mode, const unsigned char* p) {
    switch (mode) {
        case COLOR_MODE_MONO:
            return {p[0], p[0], p[0]};
        case COLOR_MODE_BGR:
            return {p[2], p[1], p[0]};
        case COLOR_MODE_YUV:
            return rgbOf(p);
        default:
            return {p[0], p[1], p[2]};
    }
}

Bytes expectedPixel(ColorMode from, ColorMode to, const unsigned char* p) {
    const Rgb8 c = read(from, p);
    const unsigned char r = limited(c.r), g = limited(c.g), b = limited(c.b);
    if (from == COLOR_MODE_YUV && to == COLOR_MODE_MONO) return {p[0]};
    if (from == COLOR_MODE_MONO && to == COLOR_MODE_YUV)
        return {static_cast<unsigned char>(16 + floor256(p[0] * 220)), 128, 128};
    switch (to) {
        case COLOR_MODE_MONO:
            return {static_cast<unsigned char>(lumaOf(c, 0))};
        case COLOR_MODE_BGR:
            return {b, g, r};
        case COLOR_MODE_RGB:
            return {r, g, b};
        case COLOR_MODE_RGBA:
            return {r, g, b, 255};
        default:
            return yuvOf(c);
    }
}

const struct {
    ColorMode from, to;
    void (*run)(const Image&, Image&, const Rect&);
} CONVERSIONS[] = {
    {COLOR_MODE_BGR, COLOR_MODE_MONO, bgrToMono},   {COLOR_MODE_RGB, COLOR_MODE_MONO, rgbToMono},
    {COLOR_MODE_RGBA, COLOR_MODE_MONO, rgbaToMono}, {COLOR_MODE_YUV, COLOR_MODE_MONO, yuvToMono},
    {COLOR_MODE_BGR, COLOR_MODE_YUV, bgrToYuv},     {COLOR_MODE_RGB, COLOR_MODE_YUV, rgbToYuv},
    {COLOR_MODE_RGBA, COLOR_MODE_YUV, rgbaToYuv},   {COLOR_MODE_MONO, COLOR_MODE_YUV, monoToYuv},
    {COLOR_MODE_YUV, COLOR_MODE_BGR, yuvToBgr},     {COLOR_MODE_YUV, COLOR_MODE_RGB, yuvToRgb},
    {COLOR_MODE_YUV, COLOR_MODE_RGBA, yuvToRgba},   {COLOR_MODE_BGR, COLOR_MODE_RGB, bgrToRgb},
    {COLOR_MODE_RGB, COLOR_MODE_BGR, rgbToBgr},     {COLOR_MODE_RGBA, COLOR_MODE_BGR, rgbaToBgr},
    {COLOR_MODE_BGR, COLOR_MODE_RGBA, bgrToRgba},   {COLOR_MODE_RGB, COLOR_MODE_RGBA, rgbToRgba},
    {COLOR_MODE_MONO, COLOR_MODE_BGR, monoToBgr},   {COLOR_MODE_MONO, COLOR_MODE_RGB, monoToRgb},
    {COLOR_MODE_MONO, COLOR_MODE_RGBA, monoToRgba},
};

}  // namespace

// Views with gaps, odd widths, last pixels before an unreadable page, parts of the image.
TEST(ColorConversion, EveryPairOfByteModes) {
    for (const auto& conversion : CONVERSIONS) {
        SCOPED_TRACE(testing::Message() << conversion.from << " to " << conversion.to);
        expectOnViews(
            conversion.from, conversion.to,
            [&](const Image& source, const Image&, Image& target, const Rect& rect) {
                conversion.run(source, target, rect);
            },
            [&](const Image& source, const Image&, int x, int y, int c) {
                return expectedPixel(conversion.from, conversion.to, source.data(x, y))[size_t(c)];
            });
        Image target;
        EXPECT_EQ("(source).colorMode() == (" + std::string(colorModeName(conversion.from)) + ")",
                  conditionOf([&] { conversion.run(Image(), target, Rect()); }));
        EXPECT_EQ("(source.rect()).contains(rect)", conditionOf([&] {
                      conversion.run(Image(Size(4, 4), conversion.from), target, Rect(0, 0, 4, 5));
                  }));
        EXPECT_FALSE(target.isCreated());
    }
}

class MonoRows : public testing::TestWithParam<MonoRowVariant> {};

TEST_P(MonoRows, AgreeWithTheDefinition) {
    for (int count = 1; count <= 67; ++count) {
        const GuardedImage pixels(Size(count, 1), COLOR_MODE_RGB, 0, unsigned(count));
        GuardedImage bgr(Size(count, 1), COLOR_MODE_MONO, 0, 1),
            rgb(bgr.image.size(), COLOR_MODE_MONO, 0, 1);
        GetParam().bgr(pixels.image.data(), bgr.image.data(), count);
        GetParam().rgb(pixels.image.data(), rgb.image.data(), count);
        for (int x = 0; x < count; ++x) {
            const unsigned char* p = pixels.image.data(x, 0);
            ASSERT_EQ(lumaOf({p[2], p[1], p[0]}, 0), *bgr.image.data(x, 0)) << count << " " << x;
            ASSERT_EQ(lumaOf({p[0], p[1], p[2]}, 0), *rgb.image.data(x, 0)) << count << " " << x;
        }
    }
}
INSTANTIATE_TEST_SUITE_P(Variants, MonoRows, testing::ValuesIn(monoRowVariants()),
                         [](const auto& variant) { return variant.param.name; });

TEST(ColorConversion, SixteenBitAndFloat) {
    const Image shades = imageOf<uint16_t>(Size(4, 1), COLOR_MODE_MONO16, {0, 3, 300, 65535});
    const Image floats = imageOf<float>(Size(7, 1), COLOR_MODE_FLOAT,
                                        {-1, 0.9f, 254.99f, 1e30f, -INFINITY, INFINITY, NAN});
    Image target;
    mono16ToMono(shades, target, 1.0f);
    EXPECT_EQ((Bytes{0, 3, 255, 255}), cellsOf<unsigned char>(target));
    mono16ToRgba(shades, target, 0.5f);
    EXPECT_EQ((Bytes{0, 0, 0, 255, 1, 1, 1, 255, 150, 150, 150, 255, 255, 255, 255, 255}),
              cellsOf<unsigned char>(target));
    mono16ToFloat(shades, target, 0.5f);
    EXPECT_EQ((std::vector<float>{0, 1.5f, 150, 32767.5f}), cellsOf<float>(target));
    monoToFloat(imageOf<unsigned char>(Size(2, 1), COLOR_MODE_MONO, {1, 255}), target, 0.25f);
    EXPECT_EQ((std::vector<float>{0.25f, 63.75f}), cellsOf<float>(target));

    floatToMono(floats, target, 0, 1);
    EXPECT_EQ((Bytes{0, 0, 254, 255, 0, 255, 0}), cellsOf<unsigned char>(target));
    floatToMono(floats, target, 100, 10, Rect(0, 0, 2, 1));
    EXPECT_EQ((Bytes{90, 109, 254, 255, 0, 255, 0}), cellsOf<unsigned char>(target));
    floatToFloat2(imageOf<float>(Size(1, 2), COLOR_MODE_FLOAT, {7.5f, -1}), target);
    EXPECT_EQ((std::vector<float>{7.5f, 0, -1, 0}), cellsOf<float>(target));
}

TEST(ColorConversion, Depth) {
    const Image depths =
        imageOf<uint16_t>(Size(7, 1), COLOR_MODE_DEPTH, {0, 499, 500, 2750, 4999, 5000, 6000});
    Image target, bgr;
    depthToMono(depths, target, 500, 5000);
    EXPECT_EQ((Bytes{0, 0, 0, 127, 254, 255, 311 - 256}), cellsOf<unsigned char>(target));
    EXPECT_EQ("(maxDepth) > (minDepth)",
              conditionOf([&] { depthToMono(depths, target, 500, 500); }));
    depthToRgb(depths, target, 500, 5000);
    depthToBgr(depths, bgr, 500, 5000);
    EXPECT_EQ((Bytes{255, 0, 0}), Bytes(target.data(2, 0), target.data(3, 0)));
    EXPECT_EQ((Bytes{255, 0, 0}), Bytes(bgr.data(6, 0), bgr.data(6, 0) + 3));
}

// A dispatcher takes exactly the listed modes; a mode's own kind is copied into any view.
TEST(ColorConversion, DispatchersTakeTheirModes) {
    const struct {
        void (*run)(const Image&, Image&, const Rect&);
        ColorMode target;
        std::vector<int> modes;
    } rows[] = {{toMono, COLOR_MODE_MONO, {1, 3, 6, 7, 8, 9, 11}},
                {toBgr, COLOR_MODE_BGR, {1, 2, 3, 6, 7, 8, 9, 11}},
                {toRgb, COLOR_MODE_RGB, {1, 2, 3, 6, 7, 8}},
                {toRgba, COLOR_MODE_RGBA, {1, 2, 6, 7, 8, 9}},
                {toYuv, COLOR_MODE_YUV, {1, 6, 7, 8, 9}}};
    for (const auto& row : rows)
        for (int mode = 0; mode < COLOR_MODE_END; ++mode) {
            const std::string name = colorModeName(ColorMode(mode));
            SCOPED_TRACE(name + " to " + colorModeName(row.target));
            const GuardedImage source(Size(5, 3), ColorMode(mode), 8, 4);
            Image target;
            const bool handled = std::count(row.modes.begin(), row.modes.end(), mode) != 0;
            EXPECT_EQ(handled ? "no failure" : "color mode not handled: " + name + "\n",
                      assertionOf([&] { row.run(source.image, target, Rect()); }));
            EXPECT_EQ(handled ? row.target : COLOR_MODE_UNDEFINED, target.colorMode());
            EXPECT_EQ(mode == row.target, source.image == target);
        }
    // Each has its scale for numbers.
    Image target;
    const Image two = imageOf<uint16_t>(Size(1, 1), COLOR_MODE_MONO16, {2});
    const Image half = imageOf<float>(Size(1, 1), COLOR_MODE_FLOAT, {1.5f});
    toRgba(two, target);
    EXPECT_EQ((Bytes{200, 200, 200, 255}), cellsOf<unsigned char>(target));
    toRgb(two, target);
    EXPECT_EQ((Bytes{2, 2, 2}), cellsOf<unsigned char>(target));
    toBgr(half, target);
    EXPECT_EQ((Bytes{150, 150, 150}), cellsOf<unsigned char>(target));
    toMono(half, target);
    EXPECT_EQ((Bytes{1}), cellsOf<unsigned char>(target));
}

TEST(ColorConversion, FeaturePlanesByMode) {
    const GuardedImage mono(Size(9, 6), COLOR_MODE_MONO, 3);
    Image rmct, integral, target;
    computeRmct(mono.image, rmct);
    computeIntegral(mono.image, integral);
    for (const Image* expected : {&rmct, &integral}) {
        toColorMode(mono.image, target, expected->colorMode());
        EXPECT_TRUE(*expected == target) << colorModeName(expected->colorMode());
    }
}

TEST(Color, PreparedWords) {
    const struct {
        Color color;
        ColorMode mode;
        uint32_t expected;
    } rows[] = {
        {Color(10, 20, 30, 40), COLOR_MODE_MONO, 0x28121212},
        {Color(10, 20, 30, 40), COLOR_MODE_BGR, 0x280A141E},
        {Color(10, 20, 30, 40), COLOR_MODE_RGB, 0x281E140A},
        {Color::ORANGE, COLOR_MODE_RGBA, 0xFF00A5FF},
        {Color::RED, COLOR_MODE_YUV, 0xFFEF5A51},
        {Color::BLUE, COLOR_MODE_YUV, 0xFF6EEF28},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.expected, row.color.prepareColor(row.mode)) << row.mode;
    EXPECT_EQ("wrong color mode: COLOR_MODE_DEPTH\n",
              assertionOf([] { Color::RED.prepareColor(COLOR_MODE_DEPTH); }));
    EXPECT_EQ("16\n", assertionOf([] { depth(COLOR_MODE_END); }));
}
