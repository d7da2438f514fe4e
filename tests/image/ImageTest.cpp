#include "KZ_Image.h"

#include <cmath>

#include "KZ_Utils.h"
#include "LogCapture.h"
#include "TestImages.h"

using namespace KZ;
using testing_support::assertionOf;
using testing_support::conditionOf;

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
    view.createRef(view, Rect(1, 1, 3, 3));  // of itself
    EXPECT_EQ((std::vector<unsigned char>{20, 21, 26, 27}), cellsOf<unsigned char>(view));
    narrower.createRef(view);
    view.reset();
    EXPECT_FALSE(view.isCreated());
    EXPECT_EQ(20, *narrower.data());

    EXPECT_EQ("Rect(0, -1, 2, 2) is out of Rect(0, 0, 2, 2)\n",
              assertionOf([&] { view.createRef(narrower, Rect(0, -1, 2, 2)); }));
    EXPECT_EQ("empty rect: Rect(2, 1, 2, 2)\n",
              assertionOf([&] { view.createRef(narrower, Rect(2, 1, 2, 2)); }));
    EXPECT_EQ("createRef: source image not created\n",
              assertionOf([&] { view.createRef(Image()); }));
}

TEST(Image, AssignmentCopiesIntoTheMemoryAtHand) {
    GuardedImage foreign(Size(3, 4), COLOR_MODE_MONO, 5);
    const Image source = counting(Size(3, 4));
    const unsigned char* memory = foreign.image.data();
    foreign.image = source;
    foreign.image.create(Size(3, 4), COLOR_MODE_MONO);
    EXPECT_EQ(memory, foreign.image.data());
    EXPECT_EQ(8, foreign.image.stripLength());
    EXPECT_TRUE(foreign.image == source);
    EXPECT_TRUE(foreign.paddingKept());

    Image copy(foreign.image);
    EXPECT_EQ(3, copy.stripLength());
    foreign.image = counting(Size(4, 3));  // another geometry leaves the foreign memory
    EXPECT_NE(memory, foreign.image.data());
    EXPECT_TRUE(copy == source);
    foreign.image = Image();
    EXPECT_TRUE(foreign.image == Image(Image()));
}

TEST(Image, RefusesSizesBeyondThirtyOneBits) {
    for (const Size& size : {Size(65536, 65536), Size(-1, 5), Size(40000, 60000)}) {
        Image image(Size(2, 2), COLOR_MODE_MONO);
        for (int i = 0; i < 2; ++i)  // what the first attempt left is no image of that size
            EXPECT_THROW(image.create(size, COLOR_MODE_MONO), std::bad_alloc) << size;
        EXPECT_EQ(nullptr, image.data());
        EXPECT_FALSE(Image(image).isCreated());
    }
}

// Bytes without the padding, floats relatively.
TEST(Image, EqualityAndZero) {
    GuardedImage a(Size(7, 3), COLOR_MODE_BGR, 4);
    Image b(a.image), none;
    EXPECT_TRUE(a.image == b);
    b.data(6, 2)[2] ^= 1;
    EXPECT_TRUE(a.image != b);
    zero(a.image);
    EXPECT_EQ(std::vector<unsigned char>(63, 0), cellsOf<unsigned char>(a.image));
    EXPECT_TRUE(a.paddingKept());
    EXPECT_EQ("image.isCreated()", conditionOf([&] { zero(none); }));
    EXPECT_TRUE(counting(Size(2, 3)) != counting(Size(3, 2)));
    const struct {
        float a, b;
        bool equal;
    } rows[] = {{100, 100.00001f, true}, {100, 100.001f, false}, {0, 1e-30f, false},
                {-5, 5, false},          {0, -0.0f, true},       {NAN, NAN, false}};
    for (const auto& row : rows)
        for (ColorMode mode : {COLOR_MODE_FLOAT, COLOR_MODE_FLOAT2}) {
            std::vector<float> left(mode == COLOR_MODE_FLOAT ? 2 : 4, 1.0f), right = left;
            left.back() = row.a;
            right.back() = row.b;
            const Size size(1, 2);
            EXPECT_EQ(row.equal, imageOf(size, mode, left) == imageOf(size, mode, right))
                << row.a << " " << row.b;
        }
}

TEST(Image, TextForm) {
    const Size size(1, 2);
    const std::pair<Image, const char*> rows[] = {
        {Image(), "Image(Size(0, 0), COLOR_MODE_UNDEFINED)"},
        {imageOf<unsigned char>(size, COLOR_MODE_BGR, {1, 20, 255, 0, 7, 8}),
         "Image(Size(1, 2), COLOR_MODE_BGR, \ndata =\n  1 20255\n  0  7  8\n"},
        {imageOf<uint32_t>(size, COLOR_MODE_INTEGRAL, {4000000000u, 7}),
         "Image(Size(1, 2), COLOR_MODE_INTEGRAL, \ndata =\n4000000000, \n         7, \n"},
        {imageOf<float>(size, COLOR_MODE_FLOAT, {1.2345678f, -2}),
         "Image(Size(1, 2), COLOR_MODE_FLOAT, \ndata =\n1.2345678\n-2\n"},
    };
    for (const auto& row : rows) EXPECT_EQ(row.second, toStr(row.first));
}

// The eight fractional bits against the textbook formula, exact in double.
TEST(FractionalPixel, BilinearOfEveryByteMode) {
    std::mt19937 random(11);
    for (ColorMode mode : {COLOR_MODE_MONO, COLOR_MODE_BGR, COLOR_MODE_RGB, COLOR_MODE_YUV}) {
        const GuardedImage guarded(Size(9, 7), mode, 3);
        const Image& image = guarded.image;
        for (int i = 0; i < 500; ++i) {
            const int x = int(random() % (8 * 256)), y = int(random() % (6 * 256));
            const double u = x / 256.0 - x / 256, v = y / 256.0 - y / 256;
            unsigned char out[3] = {};
            image.fractionalPixel256(x, y, out);
            for (int c = 0; c < image.depth(); ++c) {
                const auto at = [&](int dx, int dy) {
                    return double(byteAt(image, x / 256 + dx, y / 256 + dy, c));
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
    const Image image(Size(2, 2), COLOR_MODE_RGBA);
    EXPECT_EQ("only COLOR_MODE_MONO, COLOR_MODE_DEPTH are implemented.Got COLOR_MODE_RGBA\n",
              assertionOf([&] { image.fractionalValue256(0, 0); }));
}

TEST(FractionalPixel, DepthLeavesInvalidCellsOut) {
    const struct {
        const char* what;
        std::vector<uint16_t> cells;
        int x, y;
        unsigned int expected;  // 16.16
    } rows[] = {
        {"one cell, exactly half the weight", {1000, 0, 0, 0}, 0, 128, 1000 << 16},
        {"one cell, just below half", {1000, 0, 0, 0}, 1, 128, 0},
        {"5000 is invalid", {5000, 4999, 5000, 4999}, 128, 0, 4999 << 16},
        {"nothing valid", {0, 5000, 65535, 0}, 128, 128, 0},
        {"weights of the valid ones", {10, 20, 0, 40}, 64, 64, 957834},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const Image image = imageOf(Size(2, 2), COLOR_MODE_DEPTH, row.cells);
        EXPECT_NEAR(double(row.expected), image.fractionalValue256(row.x, row.y), 2.0);
        uint16_t out = 0xFFFF;
        image.fractionalPixel256(row.x, row.y, reinterpret_cast<unsigned char*>(&out));
        EXPECT_EQ(image.fractionalPixel256(row.x, row.y), out);
    }
}
