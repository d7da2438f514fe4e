#include "KZ_IntegralImage.h"

#include <algorithm>
#include <cmath>

#include "KZ_Gradients.h"
#include "KZ_IntegralHog.h"
#include "LogCapture.h"
#include "TestImages.h"

using namespace KZ;
using testing_support::assertionOf;

namespace {

// Sum of the pixels of `rect` that lie left of column x and above row y.
unsigned int sumBefore(const Image& mono, const Rect& rect, int x, int y) {
    unsigned int sum = 0;
    for (int row = rect.top; row < std::min(y, rect.bottom); ++row)
        for (int column = rect.left; column < std::min(x, rect.right); ++column)
            sum += unsigned(byteAt(mono, column, row));
    return sum;
}

// Cells that belong to no pixel of the rectangle are 0, on all four sides.
TEST(ComputeIntegral, SumsInsideTheRectangle) {
    const GuardedImage mono(Size(19, 11), COLOR_MODE_MONO, 3);
    for (const Rect rect : {Rect(0, 0, 19, 11), Rect(4, 3, 12, 9), Rect(0, 5, 19, 6),
                            Rect(18, 10, 19, 11), Rect(5, 5, 5, 9), Rect()}) {
        GuardedImage integral(Size(20, 12), COLOR_MODE_INTEGRAL, 8);
        computeIntegral(mono.image, integral.image, rect);
        EXPECT_TRUE(integral.paddingKept());
        for (int y = 0; y < 12; ++y)
            for (int x = 0; x < 20; ++x) {
                const bool isIn =
                    x > rect.left && x <= rect.right && y > rect.top && y <= rect.bottom;
                ASSERT_EQ(isIn ? sumBefore(mono.image, rect, x, y) : 0,
                          integral.image.row<uint32_t>(y)[x])
                    << rect << x << " " << y;
            }
    }
    Image out;
    EXPECT_EQ(
        "Rect must be inside image: rect = Rect(0, 0, 20, 9), image.rect() = Rect(0, 0, 19, 11)\n",
        assertionOf([&] { computeIntegral(mono.image, out, Rect(0, 0, 20, 9)); }));
}

TEST(ComputeIntegral, OtherFormsAgree) {
    const GuardedImage mono(Size(37, 9), COLOR_MODE_MONO), gapped(Size(37, 9), COLOR_MODE_MONO, 1);
    Image whole, optimized;
    computeIntegral(mono.image, whole);
    computeIntegralOptimized(mono.image, optimized);
    EXPECT_EQ(whole, optimized);
    std::vector<unsigned int> raw(37 * 9);
    integral_image(mono.image.data(), raw.data(), 37, 9);
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 37; ++x)
            ASSERT_EQ(whole.row<uint32_t>(y + 1)[x + 1], raw[size_t(37 * y + x)]);
    EXPECT_EQ("incorrect stripLength\n",
              assertionOf([&] { computeIntegralOptimized(gapped.image, optimized); }));
}

struct Mode {
    const char* name;
    ColorMode mode;
    int bins;
    GradientTable (*table)();
    int diagonals[4];  // bins of (1, 1), (-1, -1), (1, -1), (-1, 1)
};
const Mode MODES[] = {
    {"unsigned", COLOR_MODE_INTEGRAL_HOG_UNSIGNED6, 6, getHogUnsigned6, {2, 2, 4, 4}},
    {"signed", COLOR_MODE_INTEGRAL_HOG_SIGNED12, 12, getHogSigned12, {2, 8, 4, 10}},
};

// The bin of a difference by rounding the angle; diagonals, where it ties, by the table above.
int binOf(const Mode& mode, int a, int b) {
    if (a != 0 && std::abs(a) == std::abs(b))
        return mode.diagonals[a > 0 ? (b > 0 ? 0 : 2) : (b > 0 ? 3 : 1)];
    const int bin = int(std::lround(std::atan2(double(a), double(b)) / (M_PI / 6)));
    return (bin + 12) % mode.bins;
}

int magnitudeOf(int a, int b) {
    return std::min(255, int(std::hypot(double(a), double(b))));
}

TEST(GradientTables, AgreeWithTheirGeometry) {
    for (const Mode& mode : MODES)
        for (int a = -256; a <= 255; ++a)
            for (int b = -256; b <= 255; ++b) {
                const bool isSet = a > -256 && b > -256;
                ASSERT_EQ(isSet ? binOf(mode, a, b) : 0, mode.table()[a + 256][b + 256])
                    << mode.name << " " << a << ", " << b;
                ASSERT_EQ(isSet ? magnitudeOf(a, b) : 0, getMagnitudes()[a + 256][b + 256])
                    << a << ", " << b;
            }
}

// Sobel differences at (x, y), horizontal and vertical.
void differences(const Image& mono, int x, int y, int* u, int* v) {
    const int weights[] = {1, 2, 1};
    *u = *v = 0;
    for (int i = -1; i <= 1; ++i) {
        *u += weights[i + 1] * (byteAt(mono, x + 1, y + i) - byteAt(mono, x - 1, y + i));
        *v += weights[i + 1] * (byteAt(mono, x + i, y + 1) - byteAt(mono, x + i, y - 1));
    }
}

// Cell (X, Y) is summed up from the definition: all inner pixels left of X and above Y.
void expectHog(const Image& mono, const Rect& rect, const Mode& mode, const Image& hog) {
    const int width = rect.width(), height = rect.height(), channels = mode.bins + 1;
    ASSERT_EQ(Size(width + 1, height + 1), hog.size());
    std::vector<unsigned int> columns(size_t(width) * size_t(channels));
    for (int y = 0; y <= height; ++y) {
        for (int x = 1; y > 1 && y < height && x < width - 1; ++x) {
            int u, v;
            differences(mono, rect.left + x, rect.top + y - 1, &u, &v);
            unsigned int* column = &columns[size_t(x * channels)];
            column[binOf(mode, u / 4, v / 4)] += unsigned(magnitudeOf(u / 4, v / 4));
            column[mode.bins] += unsigned(magnitudeOf(u / 4, v / 4));
        }
        std::vector<unsigned int> sums(size_t(channels), 0u);
        for (int x = 0; x <= width; ++x)
            for (int k = 0; k < channels; ++k) {
                if (x > 0) sums[size_t(k)] += columns[size_t((x - 1) * channels + k)];
                ASSERT_EQ(sums[size_t(k)], hog.row<uint32_t>(y)[x * channels + k])
                    << mode.name << " " << rect << " cell " << x << ", " << y << " channel " << k;
            }
    }
}

// No pixel counts in what is too narrow or too low.
TEST(ComputeIntegralHog, AgreesWithTheDefinition) {
    GuardedImage mono(Size(143, 38), COLOR_MODE_MONO, 2);
    for (int y = 0; y < 38; ++y)  // a calm half: small differences
        for (int x = 60; x < 143; ++x) *mono.image.data(x, y) /= 16;
    for (const Mode& mode : MODES)
        for (const Rect rect :
             {Rect(0, 0, 143, 38), Rect(50, 3, 85, 36), Rect(7, 5, 10, 8), Rect(140, 35, 143, 38),
              Rect(9, 1, 75, 5), Rect(0, 0, 2, 9), Rect(0, 0, 9, 2), Rect(4, 4, 4, 4)}) {
            GuardedImage hog(Size(rect.width() + 1, rect.height() + 1), mode.mode, 4);
            computeIntegralHog(mono.image, hog.image, rect, mode.mode);
            EXPECT_TRUE(hog.paddingKept());
            expectHog(mono.image, rect, mode, hog.image);
        }
    Image out;
    EXPECT_EQ("incorrect color mode: 10\n", assertionOf([&] {
                  computeIntegralHog(mono.image, out, Rect(), COLOR_MODE_INTEGRAL);
              }));
}

class HogRow : public testing::TestWithParam<HogRowVariant> {};

// Sums go on from what they held, and each cell is the one above plus the sums.
TEST_P(HogRow, AddsUp) {
    std::mt19937 random(63);
    for (const Mode& mode : MODES)
        for (size_t count = 0; count < 20; ++count) {
            const size_t channels = size_t(mode.bins) + 1;
            testing_support::GuardedBuffer<unsigned char> bins(count), magnitudes(count);
            testing_support::GuardedBuffer<unsigned int> above(count * channels),
                out(count * channels), sums(channels);
            for (unsigned int& cell : above) cell = unsigned(random());
            for (unsigned int& sum : sums) sum = unsigned(random());
            std::vector<unsigned int> expected(sums.begin(), sums.end());
            for (size_t x = 0; x < count; ++x) {
                bins[x] = static_cast<unsigned char>(random() % unsigned(mode.bins));
                magnitudes[x] = static_cast<unsigned char>(random());
            }
            const auto run = mode.bins == 6 ? GetParam().unsigned6 : GetParam().signed12;
            run(bins.data(), magnitudes.data(), above.data(), out.data(), sums.data(), int(count));
            for (size_t x = 0; x < count; ++x)
                for (size_t k = 0; k < channels; ++k) {
                    if (k == bins[x] || k + 1 == channels) expected[k] += magnitudes[x];
                    ASSERT_EQ(above[x * channels + k] + expected[k], out[x * channels + k])
                        << mode.name << " count " << count << " x " << x << " channel " << k;
                }
            for (size_t k = 0; k < channels; ++k) ASSERT_EQ(expected[k], sums[k]);
        }
}
INSTANTIATE_TEST_SUITE_P(Variants, HogRow, testing::ValuesIn(hogRowVariants()),
                         [](const auto& variant) { return variant.param.name; });

TEST(ComputeGradients, DirectionAndSize) {
    const GuardedImage mono(Size(17, 12), COLOR_MODE_MONO, 1);
    GuardedImage gradient(Size(17, 12), COLOR_MODE_GRADIENT, 2);
    computeGradients(mono.image, gradient.image);
    EXPECT_TRUE(gradient.paddingKept());
    expectValues(gradient.image, [&](int x, int y, int c) {
        int u = 0, v = 0;
        if (x > 0 && y > 0 && x < 16 && y < 11) differences(mono.image, x, y, &u, &v);
        if (c == 1) return (std::abs(u) + std::abs(v)) / 8;
        // Four directions of 45 degrees, opposite ones alike.
        return int(std::lround(std::atan2(double(u), double(v)) / M_PI * 4) + 8) % 4;
    });
}

}  // namespace
