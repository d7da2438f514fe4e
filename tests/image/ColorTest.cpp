#include "KZ_Color.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "KZ_ColorConversion.h"
#include "KZ_IntegralImage.h"
#include "KZ_MonoRow.h"
#include "KZ_RmctTransform.h"
#include "KZ_Sobel.h"
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

struct Conversion {
    const char* name;
    ColorMode from, to;
    void (*run)(const Image&, Image&, const Rect&);
};

const Conversion CONVERSIONS[] = {
    {"bgrToMono", COLOR_MODE_BGR, COLOR_MODE_MONO, bgrToMono},
    {"rgbToMono", COLOR_MODE_RGB, COLOR_MODE_MONO, rgbToMono},
    {"rgbaToMono", COLOR_MODE_RGBA, COLOR_MODE_MONO, rgbaToMono},
    {"yuvToMono", COLOR_MODE_YUV, COLOR_MODE_MONO, yuvToMono},
    {"bgrToYuv", COLOR_MODE_BGR, COLOR_MODE_YUV, bgrToYuv},
    {"rgbToYuv", COLOR_MODE_RGB, COLOR_MODE_YUV, rgbToYuv},
    {"rgbaToYuv", COLOR_MODE_RGBA, COLOR_MODE_YUV, rgbaToYuv},
    {"monoToYuv", COLOR_MODE_MONO, COLOR_MODE_YUV, monoToYuv},
    {"yuvToBgr", COLOR_MODE_YUV, COLOR_MODE_BGR, yuvToBgr},
    {"yuvToRgb", COLOR_MODE_YUV, COLOR_MODE_RGB, yuvToRgb},
    {"yuvToRgba", COLOR_MODE_YUV, COLOR_MODE_RGBA, yuvToRgba},
    {"bgrToRgb", COLOR_MODE_BGR, COLOR_MODE_RGB, bgrToRgb},
    {"rgbToBgr", COLOR_MODE_RGB, COLOR_MODE_BGR, rgbToBgr},
    {"rgbaToBgr", COLOR_MODE_RGBA, COLOR_MODE_BGR, rgbaToBgr},
    {"bgrToRgba", COLOR_MODE_BGR, COLOR_MODE_RGBA, bgrToRgba},
    {"rgbToRgba", COLOR_MODE_RGB, COLOR_MODE_RGBA, rgbToRgba},
    {"monoToBgr", COLOR_MODE_MONO, COLOR_MODE_BGR, monoToBgr},
    {"monoToRgb", COLOR_MODE_MONO, COLOR_MODE_RGB, monoToRgb},
    {"monoToRgba", COLOR_MODE_MONO, COLOR_MODE_RGBA, monoToRgba},
};

bool inside(const Rect& rect, int x, int y) {
    return rect == Rect() || (x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom);
}

void expectConverted(const Conversion& conversion, const Size& size, const Rect& rect) {
    const GuardedImage source(size, conversion.from, 5, 17);
    GuardedImage target(size, conversion.to, 2, 18);
    conversion.run(source.image, target.image, rect);
    EXPECT_TRUE(target.paddingKept());
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const Bytes expected =
                expectedPixel(conversion.from, conversion.to, source.image.data(x, y));
            for (int c = 0; c < target.image.depth(); ++c)
                ASSERT_EQ(inside(rect, x, y) ? expected[size_t(c)] : target.before(x, y, c),
                          target.image.data(x, y)[c])
                    << size << rect << " at " << x << ", " << y << ", " << c;
        }
}

}  // namespace

// Views with gaps, odd widths, last pixels before an unreadable page, parts of the image.
TEST(ColorConversion, EveryPairOfByteModes) {
    for (const Conversion& conversion : CONVERSIONS) {
        SCOPED_TRACE(conversion.name);
        for (const Size& size : oddSizes())
            for (const Rect& rect : rectsIn(size)) expectConverted(conversion, size, rect);
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

TEST(ColorConversion, KnownPixels) {
    struct Row {
        const char* what;
        ColorMode mode;
        Bytes pixel;
        void (*run)(const Image&, Image&, const Rect&);
        Bytes expected;
    };
    const Row rows[] = {
        {"white luma", COLOR_MODE_BGR, {255, 255, 255}, bgrToMono, {235}},
        {"rounding parts mono from Y", COLOR_MODE_RGB, {2, 0, 0}, rgbToMono, {16}},
        {"rounding parts Y from mono", COLOR_MODE_RGB, {2, 0, 0}, rgbToYuv, {17, 128, 129}},
        {"lightest Y", COLOR_MODE_YUV, {235, 128, 128}, yuvToBgr, {255, 255, 255}},
        {"519, not 516", COLOR_MODE_YUV, {100, 171, 128}, yuvToRgba, {98, 81, 185, 255}},
        {"-210, not -208", COLOR_MODE_YUV, {100, 128, 192}, yuvToRgb, {200, 45, 98}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        Image target;
        row.run(imageOf(Size(1, 1), row.mode, row.pixel), target, Rect());
        EXPECT_EQ(row.expected, cellsOf<unsigned char>(target));
    }
}

TEST(ColorConversion, SixteenBitAndFloat) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const Image shades = imageOf<uint16_t>(Size(4, 1), COLOR_MODE_MONO16, {0, 3, 300, 65535});
    const Image floats =
        imageOf<float>(Size(7, 1), COLOR_MODE_FLOAT, {-1, 0.9f, 254.99f, 1e30f, -inf, inf, nan});
    Image target;
    mono16ToMono(shades, target, 1.0f);
    EXPECT_EQ((Bytes{0, 3, 255, 255}), cellsOf<unsigned char>(target));
    mono16ToMono(shades, target, -0.5f);
    EXPECT_EQ((Bytes{0, 0, 0, 0}), cellsOf<unsigned char>(target));
    mono16ToRgba(shades, target, 0.5f);
    EXPECT_EQ((Bytes{0, 0, 0, 255, 1, 1, 1, 255, 150, 150, 150, 255, 255, 255, 255, 255}),
              cellsOf<unsigned char>(target));
    mono16ToRgb(shades, target, 2.0f, Rect(1, 0, 2, 1));
    EXPECT_EQ(6, target.data(1, 0)[2]);
    mono16ToFloat(shades, target, 0.5f);
    EXPECT_EQ((std::vector<float>{0, 1.5f, 150, 32767.5f}), cellsOf<float>(target));
    monoToFloat(imageOf<unsigned char>(Size(2, 1), COLOR_MODE_MONO, {1, 255}), target, 0.25f);
    EXPECT_EQ((std::vector<float>{0.25f, 63.75f}), cellsOf<float>(target));

    floatToMono(floats, target, 0, 1);
    EXPECT_EQ((Bytes{0, 0, 254, 255, 0, 255, 0}), cellsOf<unsigned char>(target));
    floatToMono(floats, target, 100, 10, Rect(0, 0, 2, 1));
    EXPECT_EQ((Bytes{90, 109, 254, 255, 0, 255, 0}), cellsOf<unsigned char>(target));
    floatToBgr(imageOf<float>(Size(1, 1), COLOR_MODE_FLOAT, {7.5f}), target, 1, 2);
    EXPECT_EQ((Bytes{16, 16, 16}), cellsOf<unsigned char>(target));
    floatToFloat2(imageOf<float>(Size(1, 2), COLOR_MODE_FLOAT, {7.5f, -1}), target);
    EXPECT_EQ((std::vector<float>{7.5f, 0, -1, 0}), cellsOf<float>(target));
}

TEST(ColorConversion, Depth) {
    const Image depths =
        imageOf<uint16_t>(Size(7, 1), COLOR_MODE_DEPTH, {0, 499, 500, 2750, 4999, 5000, 6000});
    Image target;
    depthToMono(depths, target, 500, 5000);
    EXPECT_EQ((Bytes{0, 0, 0, 127, 254, 255, 311 - 256}), cellsOf<unsigned char>(target));
    EXPECT_EQ("(maxDepth) > (minDepth)",
              conditionOf([&] { depthToMono(depths, target, 500, 500); }));
    EXPECT_EQ("7 <= 9\n", assertionOf([&] { depthToBgr(depths, target, 9, 7); }));

    Image rgb, bgr;
    depthToRgb(depths, rgb, 500, 5000);
    depthToBgr(depths, bgr, 500, 5000);
    EXPECT_EQ((Bytes{255, 0, 0}), Bytes(rgb.data(2, 0), rgb.data(3, 0)));
    EXPECT_EQ((Bytes{0, 0, 255}), Bytes(rgb.data(5, 0), rgb.data(6, 0)));
    EXPECT_EQ((Bytes{255, 0, 0}), Bytes(bgr.data(6, 0), bgr.data(6, 0) + 3));
}

// A dispatcher takes exactly the listed modes; a mode's own kind is copied into any view.
TEST(ColorConversion, DispatchersRefuseOtherModes) {
    struct Row {
        const char* name;
        void (*run)(const Image&, Image&, const Rect&);
        ColorMode target;
        std::vector<int> modes;
    };
    const Row rows[] = {{"toMono", toMono, COLOR_MODE_MONO, {1, 3, 6, 7, 8, 9, 11}},
                        {"toBgr", toBgr, COLOR_MODE_BGR, {1, 2, 3, 6, 7, 8, 9, 11}},
                        {"toRgb", toRgb, COLOR_MODE_RGB, {1, 2, 3, 6, 7, 8}},
                        {"toRgba", toRgba, COLOR_MODE_RGBA, {1, 2, 6, 7, 8, 9}},
                        {"toYuv", toYuv, COLOR_MODE_YUV, {1, 6, 7, 8, 9}}};
    for (const Row& row : rows)
        for (int mode = 0; mode < COLOR_MODE_END; ++mode) {
            SCOPED_TRACE(std::string(row.name) + " " + colorModeName(ColorMode(mode)));
            const GuardedImage source(Size(5, 3), ColorMode(mode), 8, 4);
            Image target;
            const bool handled =
                std::find(row.modes.begin(), row.modes.end(), mode) != row.modes.end();
            EXPECT_EQ(handled ? "no failure"
                              : "color mode not handled: " +
                                    std::string(colorModeName(ColorMode(mode))) + "\n",
                      assertionOf([&] { row.run(source.image, target, Rect()); }));
            EXPECT_EQ(handled ? row.target : COLOR_MODE_UNDEFINED, target.colorMode());
            EXPECT_EQ(mode == row.target, source.image == target);
        }
}

TEST(ColorConversion, DispatchersScale) {
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
    const GuardedImage mono(Size(9, 6), COLOR_MODE_MONO, 3, 5);
    Image rmct, integral, gradient, target;
    computeRmct(mono.image, rmct);
    computeIntegral(mono.image, integral);
    SobelGradient(mono.image, gradient);
    for (const Image* expected : {&rmct, &integral, &gradient}) {
        toColorMode(mono.image, target, expected->colorMode());
        EXPECT_TRUE(*expected == target) << colorModeName(expected->colorMode());
    }
    toColorMode(mono.image, target, COLOR_MODE_RGBA);
    EXPECT_EQ(COLOR_MODE_RGBA, target.colorMode());
    EXPECT_EQ("color mode not handled: COLOR_MODE_FLOAT\n",
              assertionOf([&] { toColorMode(mono.image, target, COLOR_MODE_FLOAT); }));
}

TEST(ColorMode, RefusesTheEndMark) {
    EXPECT_STREQ("COLOR_MODE_END", colorModeName(COLOR_MODE_END));
    EXPECT_EQ("false", conditionOf([] { depth(COLOR_MODE_END); }));
    EXPECT_EQ("16\n", assertionOf([] { depth(COLOR_MODE_END); }));
}

TEST(Color, PreparedWords) {
    struct Row {
        Color color;
        ColorMode mode;
        uint32_t expected;
    };
    const Row rows[] = {
        {Color::WHITE, COLOR_MODE_MONO, 0xFFFFFFFF},
        {Color(10, 20, 30, 40), COLOR_MODE_MONO, 0x28121212},
        {Color(10, 20, 30, 40), COLOR_MODE_BGR, 0x280A141E},
        {Color(10, 20, 30, 40), COLOR_MODE_RGB, 0x281E140A},
        {Color::ORANGE, COLOR_MODE_RGBA, 0xFF00A5FF},
        {Color::WHITE, COLOR_MODE_YUV, 0xFF8080EB},
        {Color::RED, COLOR_MODE_YUV, 0xFFEF5A51},
        {Color::BLUE, COLOR_MODE_YUV, 0xFF6EEF28},
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.expected, row.color.prepareColor(row.mode)) << row.mode;
    for (ColorMode mode :
         {COLOR_MODE_MONO16, COLOR_MODE_DEPTH, COLOR_MODE_GRADIENT, COLOR_MODE_RMCT})
        EXPECT_EQ("wrong color mode: " + std::string(colorModeName(mode)) + "\n",
                  assertionOf([&] { Color::RED.prepareColor(mode); }));
}
