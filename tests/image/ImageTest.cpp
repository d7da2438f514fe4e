#include "KZ_Image.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "KZ_Check.h"
#include "LogCapture.h"
#include "TestImages.h"

using namespace KZ;
using testing_support::assertionOf;
using testing_support::conditionOf;
using testing_support::failureOf;

namespace {

Image counting(const Size& size) {
    Image image(size, COLOR_MODE_MONO);
    for (int i = 0; i < size.area(); ++i) image.data()[i] = static_cast<unsigned char>(i);
    return image;
}

}  // namespace

TEST(Image, ViewSharesPixelsAndOutlivesItsParent) {
    Image view, narrower;
    {
        const Image parent = counting(Size(6, 5));
        view.createRef(parent, Rect(1, 2, 6, 5));
        EXPECT_EQ(parent.data(1, 2), view.data());
    }
    EXPECT_EQ(6, view.stripLength());
    EXPECT_EQ(Size(5, 3), view.size());
    EXPECT_EQ(6 * 4 + 5, *view.data(4, 2));
    view.createRef(view, Rect(1, 1, 3, 3));  // of itself
    EXPECT_EQ((std::vector<unsigned char>{20, 21, 26, 27}), cellsOf<unsigned char>(view));
    narrower.createRef(view);
    view.reset();
    EXPECT_FALSE(view.isCreated());
    EXPECT_EQ(20, *narrower.data());
}

TEST(Image, RefusedViews) {
    const Image image(Size(4, 3), COLOR_MODE_BGR);
    struct Row {
        Rect rect;
        const char *condition, *detail;
    };
    const Row rows[] = {
        {Rect(0, 0, 4, 3), "no failure", "no failure"},
        {Rect(0, 0, 5, 3), "(image.rect()).contains(rect)",
         "Rect(0, 0, 5, 3) is out of Rect(0, 0, 4, 3)\n"},
        {Rect(0, -1, 4, 3), "(image.rect()).contains(rect)",
         "Rect(0, -1, 4, 3) is out of Rect(0, 0, 4, 3)\n"},
        {Rect(2, 1, 2, 3), "rect.area()", "empty rect: Rect(2, 1, 2, 3)\n"},
    };
    for (const Row& row : rows) {
        Image view;
        const auto failure = failureOf([&] { view.createRef(image, row.rect); });
        EXPECT_EQ(row.condition, failure.condition);
        EXPECT_EQ(row.detail, failure.detail);
    }
    Image view;
    EXPECT_EQ("createRef: source image not created\n",
              assertionOf([&] { view.createRef(Image()); }));
}

TEST(Image, AssignmentCopiesIntoTheMemoryAtHand) {
    GuardedImage foreign(Size(3, 4), COLOR_MODE_MONO, 5, 1);
    const Image source = counting(Size(3, 4));
    const unsigned char* memory = foreign.image.data();
    foreign.image = source;
    EXPECT_EQ(memory, foreign.image.data());
    EXPECT_EQ(8, foreign.image.stripLength());
    EXPECT_TRUE(foreign.image == source);
    EXPECT_TRUE(foreign.paddingKept());
    foreign.image.create(Size(3, 4), COLOR_MODE_MONO);
    EXPECT_EQ(memory, foreign.image.data());

    Image copy(foreign.image);
    EXPECT_EQ(3, copy.stripLength());
    foreign.image = counting(Size(4, 3));  // another geometry leaves the foreign memory
    EXPECT_NE(memory, foreign.image.data());
    EXPECT_TRUE(copy == source);
    foreign.image = Image();
    EXPECT_TRUE(foreign.image == Image(Image()));
}

TEST(Image, RefusesSizesBeyondThirtyOneBits) {
    const Size sizes[] = {{65536, 65536}, {1 << 30, 4}, {-1, 5}, {40000, 60000}};
    for (const Size& size : sizes) {
        Image image(Size(2, 2), COLOR_MODE_MONO);
        for (int i = 0; i < 2; ++i)  // what the first attempt left is no image of that size
            EXPECT_THROW(image.create(size, COLOR_MODE_MONO), std::bad_alloc) << size;
        EXPECT_EQ(size, image.size());
        EXPECT_EQ(nullptr, image.data());
        EXPECT_FALSE(Image(image).isCreated());
    }
}

TEST(Image, EqualityOfBytesIgnoresPadding) {
    GuardedImage a(Size(7, 3), COLOR_MODE_BGR, 4, 1);
    Image b(a.image);
    EXPECT_TRUE(a.image == b);
    b.data(6, 2)[2] ^= 1;
    EXPECT_TRUE(a.image != b);
    EXPECT_TRUE(counting(Size(2, 3)) != counting(Size(3, 2)));
    EXPECT_TRUE(Image(Size(0, 3), COLOR_MODE_MONO) == Image(Size(0, 3), COLOR_MODE_MONO));
}

TEST(Image, EqualityOfFloatsIsRelative) {
    struct Row {
        float a, b;
        bool equal;
    };
    const Row rows[] = {
        {100, 100.00001f, true}, {100, 100.001f, false}, {0, 1e-30f, false},         {-5, 5, false},
        {0, -0.0f, true},        {NAN, NAN, false},      {INFINITY, INFINITY, false}};
    for (const Row& row : rows)
        for (ColorMode mode : {COLOR_MODE_FLOAT, COLOR_MODE_FLOAT2}) {
            const size_t cells = mode == COLOR_MODE_FLOAT ? 2 : 4;
            std::vector<float> a(cells, 1.0f), b(cells, 1.0f);
            a.back() = row.a;
            b.back() = row.b;
            const Size size(1, 2);
            EXPECT_EQ(row.equal, imageOf(size, mode, a) == imageOf(size, mode, b))
                << row.a << " " << row.b;
        }
}

TEST(Image, ZeroLeavesPaddingAlone) {
    GuardedImage guarded(Size(5, 3), COLOR_MODE_MONO16, 6, 3);
    zero(guarded.image);
    EXPECT_EQ(std::vector<unsigned char>(30, 0), cellsOf<unsigned char>(guarded.image));
    EXPECT_TRUE(guarded.paddingKept());
    Image none;
    EXPECT_EQ("image.isCreated()", conditionOf([&] { zero(none); }));
}

TEST(Image, TextForm) {
    const auto text = [](const Image& image) {
        std::ostringstream stream;
        stream << image;
        return stream.str();
    };
    EXPECT_EQ("Image(Size(0, 0), COLOR_MODE_UNDEFINED)", text(Image()));
    struct Row {
        Image image;
        const char* expected;
    };
    const Size size(1, 2);
    const Row rows[] = {
        {imageOf<unsigned char>(size, COLOR_MODE_BGR, {1, 20, 255, 0, 7, 8}),
         "Image(Size(1, 2), COLOR_MODE_BGR, \ndata =\n  1 20255\n  0  7  8\n"},
        {imageOf<uint16_t>(size, COLOR_MODE_DEPTH, {65535, 3}),
         "Image(Size(1, 2), COLOR_MODE_DEPTH, \ndata =\n65535\n    3\n"},
        {imageOf<uint16_t>(size, COLOR_MODE_USHORT2, {1, 2, 3, 4}),
         "Image(Size(1, 2), COLOR_MODE_USHORT2, \ndata =\n    1    2\n    3    4\n"},
        {imageOf<uint32_t>(size, COLOR_MODE_INTEGRAL, {4000000000u, 7}),
         "Image(Size(1, 2), COLOR_MODE_INTEGRAL, \ndata =\n4000000000, \n         7, \n"},
        {imageOf<float>(size, COLOR_MODE_FLOAT, {1.2345678f, -2}),
         "Image(Size(1, 2), COLOR_MODE_FLOAT, \ndata =\n1.2345678\n-2\n"},
        {imageOf<float>(size, COLOR_MODE_FLOAT2, {1.5f, 2, 3, -4}),
         "Image(Size(1, 2), COLOR_MODE_FLOAT2, \ndata =\n  1.5    2\n    3   -4\n"},
    };
    for (const Row& row : rows) EXPECT_EQ(row.expected, text(row.image));
    std::istringstream stream(rows[0].expected);
    Image image;
    EXPECT_EQ("loading images from stream is not implemented\n",
              assertionOf([&] { stream >> image; }));
}

TEST(Check, Messages) {
    const Image source(Size(2, 3), COLOR_MODE_MONO), other(Size(3, 2), COLOR_MODE_MONO);
    EXPECT_EQ("have COLOR_MODE_MONO, but need COLOR_MODE_BGR\n",
              assertionOf([&] { checkImage(source, Size(9, 9), COLOR_MODE_BGR); }));
    EXPECT_EQ("image.size() == size", conditionOf([&] { checkImages(source, other); }));
    EXPECT_EQ("have Size(2, 3), but need Size(3, 2)\n",
              assertionOf([&] { checkImages(source, other); }));
    EXPECT_EQ("(source).colorMode() == (COLOR_MODE_BGR)",
              conditionOf([&] { KZ_CHECK_COLOR_MODE(source, COLOR_MODE_BGR); }));
}

// The eight fractional bits against the textbook formula, exact in double.
TEST(FractionalPixel, BilinearOfEveryByteMode) {
    std::mt19937 random(11);
    for (ColorMode mode : {COLOR_MODE_MONO, COLOR_MODE_BGR, COLOR_MODE_RGB, COLOR_MODE_YUV}) {
        GuardedImage guarded(Size(9, 7), mode, 3, random());
        const Image& image = guarded.image;
        for (int i = 0; i < 500; ++i) {
            const int x = int(random() % (8 * 256)), y = int(random() % (6 * 256));
            const double u = x / 256.0 - x / 256, v = y / 256.0 - y / 256;
            unsigned char out[3] = {};
            image.fractionalPixel256(x, y, out);
            for (int c = 0; c < image.depth(); ++c) {
                const auto at = [&](int dx, int dy) {
                    return double(image.data(x / 256 + dx, y / 256 + dy)[c]);
                };
                const double mean = (at(0, 0) * (1 - u) + at(1, 0) * u) * (1 - v) +
                                    (at(0, 1) * (1 - u) + at(1, 1) * u) * v;
                ASSERT_EQ(int(std::floor(mean)), out[c]) << x << " " << y << " " << c;
                if (mode != COLOR_MODE_MONO) continue;
                ASSERT_EQ(mean * 65536, image.fractionalValue256(x, y));
                ASSERT_EQ(out[0], image.fractionalPixel(float(x) / 256, float(y) / 256));
                ASSERT_FLOAT_EQ(float(mean),
                                image.fractionalPixelFloat(float(x) / 256, float(y) / 256));
            }
        }
    }
}

TEST(FractionalPixel, DepthLeavesInvalidCellsOut) {
    struct Row {
        const char* what;
        std::vector<uint16_t> cells;
        int x, y;
        unsigned int expected;  // 16.16
    };
    const Row rows[] = {
        {"mean of four", {100, 200, 300, 400}, 128, 128, 250 << 16},
        {"one cell, exactly half the weight", {1000, 0, 0, 0}, 0, 128, 1000 << 16},
        {"one cell, just below half", {1000, 0, 0, 0}, 1, 128, 0},
        {"5000 is invalid", {5000, 4999, 5000, 4999}, 128, 0, 4999 << 16},
        {"nothing valid", {0, 5000, 65535, 0}, 128, 128, 0},
        {"weights of the valid ones", {10, 20, 0, 40}, 64, 64, 957834},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const Image image = imageOf(Size(2, 2), COLOR_MODE_DEPTH, row.cells);
        EXPECT_NEAR(double(row.expected), image.fractionalValue256(row.x, row.y), 2.0);
        uint16_t out = 0xFFFF;
        image.fractionalPixel256(row.x, row.y, reinterpret_cast<unsigned char*>(&out));
        EXPECT_EQ(image.fractionalPixel256(row.x, row.y), out);
    }
}

TEST(FractionalPixel, RefusedModes) {
    const Image image(Size(2, 2), COLOR_MODE_RGBA);
    unsigned char out[4];
    EXPECT_EQ("only COLOR_MODE_MONO, COLOR_MODE_DEPTH are implemented.Got COLOR_MODE_RGBA\n",
              assertionOf([&] { image.fractionalValue256(0, 0); }));
    EXPECT_EQ(
        "only COLOR_MODE_MONO, COLOR_MODE_BGR, COLOR_MODE_RGB, COLOR_MODE_YUV, COLOR_MODE_DEPTH "
        "are implemented.Got COLOR_MODE_RGBA\n",
        assertionOf([&] { image.fractionalPixel256(0, 0, out); }));
}
