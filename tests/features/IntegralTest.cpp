#include <gtest/gtest.h>

#include <vector>

#include "KZ_IntegralImage.h"
#include "LogCapture.h"
#include "TestImages.h"

using KZ::Image;
using KZ::Rect;
using KZ::Size;
using testing_support::assertionOf;
using testing_support::conditionOf;

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
    std::mt19937 random(51);
    for (const Rect rect : {Rect(0, 0, 19, 11), Rect(4, 3, 12, 9), Rect(0, 5, 19, 6),
                            Rect(18, 10, 19, 11), Rect(5, 5, 5, 9), Rect()}) {
        SCOPED_TRACE(testing::Message() << rect);
        GuardedImage mono(19, 11, KZ::COLOR_MODE_MONO, 3);
        GuardedImage integral(20, 12, KZ::COLOR_MODE_INTEGRAL, 8);
        mono.randomize(random);
        KZ::computeIntegral(mono.image, integral.image, rect);
        EXPECT_TRUE(integral.paddingKept());
        for (int y = 0; y < 12; ++y)
            for (int x = 0; x < 20; ++x) {
                const bool isIn =
                    x > rect.left && x <= rect.right && y > rect.top && y <= rect.bottom;
                ASSERT_EQ(isIn ? sumBefore(mono.image, rect, x, y) : 0,
                          integral.image.row<uint32_t>(y)[x])
                    << x << " " << y;
            }
    }
}

TEST(ComputeIntegral, OtherFormsAgree) {
    std::mt19937 random(52);
    GuardedImage mono(37, 9, KZ::COLOR_MODE_MONO), gapped(37, 9, KZ::COLOR_MODE_MONO, 1);
    mono.randomize(random);
    Image whole, optimized;
    KZ::computeIntegral(mono.image, whole);
    KZ::computeIntegralOptimized(mono.image, optimized);
    std::vector<unsigned int> raw(37 * 9);
    KZ::integral_image(mono.image.data(), raw.data(), 37, 9);
    EXPECT_EQ(whole, optimized);
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 37; ++x) {
            const unsigned int expected = sumBefore(mono.image, mono.image.rect(), x + 1, y + 1);
            ASSERT_EQ(expected, whole.row<uint32_t>(y + 1)[x + 1]);
            ASSERT_EQ(expected, raw[size_t(37 * y + x)]);
        }
    EXPECT_EQ("incorrect stripLength\n",
              assertionOf([&] { KZ::computeIntegralOptimized(gapped.image, optimized); }));
    const auto sticksOut = [&] { KZ::computeIntegral(mono.image, whole, Rect(0, 0, 38, 9)); };
    EXPECT_EQ("image.rect().contains(rect)", conditionOf(sticksOut));
    EXPECT_EQ(
        "Rect must be inside image: rect = Rect(0, 0, 38, 9), image.rect() = Rect(0, 0, 37, 9)\n",
        assertionOf(sticksOut));
}

}  // namespace
