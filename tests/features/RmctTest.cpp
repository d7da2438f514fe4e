#include <gtest/gtest.h>

#include <algorithm>

#include "KZ_RmctTransform.h"
#include "LogCapture.h"
#include "TestImages.h"

using KZ::Image;
using KZ::Rect;
using KZ::Size;
using testing_support::assertionOf;

namespace {

// The code from the words of the definition.
int codeAt(const Image& mono, int x, int y) {
    const int dx[] = {-1, 0, 1, -1, 1, -1, 0, 1}, dy[] = {-1, -1, -1, 0, 0, 1, 1, 1};
    int sum = 20, code = 0;
    for (int i = 0; i < 8; ++i) sum += byteAt(mono, x + dx[i], y + dy[i]);
    for (int i = 0; i < 8; ++i)
        if (byteAt(mono, x + dx[i], y + dy[i]) > sum / 8) code += 128 >> i;
    return code;
}

class RmctRow : public testing::TestWithParam<KZ::RmctRowVariant> {};

// Contrasts of all sizes, also such whose mean exceeds a byte.
TEST_P(RmctRow, AgreesWithTheDefinition) {
    std::mt19937 random(41);
    for (int count = 0; count <= 67; ++count)
        for (const unsigned int range : {2u, 12u, 255u}) {
            GuardedImage mono(count + 2, 3, KZ::COLOR_MODE_MONO, count % 3);
            GuardedImage codes(count, 1, KZ::COLOR_MODE_RMCT);
            mono.randomize(random, range);
            const unsigned int offset = range < 255 && count % 2 ? 255 - range : 0;
            for (int i = 0; i < 3 * (count + 2); ++i)
                *mono.image.data(i % (count + 2), i / (count + 2)) += (unsigned char)(offset);
            GetParam().run(mono.image.data(1, 0), mono.image.data(1, 1), mono.image.data(1, 2),
                           codes.image.data(), count);
            for (int x = 0; x < count; ++x)
                ASSERT_EQ(codeAt(mono.image, x + 1, 1), byteAt(codes.image, x, 0))
                    << "count " << count << " range " << range << " x " << x;
        }
}
INSTANTIATE_TEST_SUITE_P(Variants, RmctRow, testing::ValuesIn(KZ::rmctRowVariants()),
                         [](const auto& variant) { return variant.param.name; });

TEST(ComputeRmct, KnownPatches) {
    struct Row {
        const char* what;
        unsigned char pixels[9];
        int code;
    };
    const Row rows[] = {
        {"flat", {100, 100, 100, 100, 100, 100, 100, 100, 100}, 0},
        {"flat, mean past a byte", {255, 255, 255, 255, 255, 255, 255, 255, 255}, 0},
        {"bright top left", {255, 0, 0, 0, 0, 0, 0, 0, 0}, 128},
        {"bright top right", {0, 0, 255, 0, 0, 0, 0, 0, 0}, 32},
        {"bright left", {0, 0, 0, 255, 0, 0, 0, 0, 0}, 16},
        {"bright bottom right", {0, 0, 0, 0, 0, 0, 0, 0, 255}, 1},
        {"the pixel itself takes no part", {9, 9, 9, 9, 255, 9, 9, 9, 9}, 0},
        {"one above the mean", {2, 2, 2, 2, 0, 2, 2, 2, 6}, 1},
        {"at the mean is not above", {2, 2, 2, 2, 0, 2, 2, 2, 4}, 0},
    };
    for (const Row& row : rows) {
        Image mono, rmct;
        mono.createRef(const_cast<unsigned char*>(row.pixels), Size(3, 3), KZ::COLOR_MODE_MONO);
        KZ::computeRmct(mono, rmct);
        for (int i = 0; i < 9; ++i) EXPECT_EQ(row.code, byteAt(rmct, i % 3, i / 3)) << row.what;
        const int offsets[] = {-4, -3, -2, -1, 1, 2, 3, 4};
        EXPECT_EQ(unsigned(row.code), KZ::computeRmctPixel(row.pixels + 4, offsets)) << row.what;
    }
}

// The inside is always whole; the border only where the clamped rectangle touches it.
TEST(ComputeRmct, BorderInsideTheRectangle) {
    std::mt19937 random(42);
    const Rect rects[] = {Rect(0, 0, 21, 13),
                          Rect(-9, -9, 99, 99),
                          Rect(1, 1, 20, 12),
                          Rect(0, 4, 9, 9),
                          Rect(5, 0, 12, 6),
                          Rect(12, 5, 21, 13),
                          Rect(0, 0, 2, 13),
                          Rect(0, 0, 21, 2),
                          Rect(30, 0, 40, 13),
                          Rect(4, 6, 11, 13),
                          Rect(),
                          Rect(0, 3, 21, 6)};
    for (const Rect& given : rects) {
        SCOPED_TRACE(testing::Message() << given);
        GuardedImage mono(21, 13, KZ::COLOR_MODE_MONO, 2), rmct(21, 13, KZ::COLOR_MODE_RMCT, 5);
        mono.randomize(random);
        KZ::computeRmct(mono.image, rmct.image, given);
        EXPECT_TRUE(rmct.paddingKept());
        const Rect rect = given.intersection(mono.image.rect());
        const bool isLarge = rect.width() >= 3 && rect.height() >= 3;
        expectValues(rmct.image, [&](int x, int y, int) {
            const int insideX = std::clamp(x, 1, 19), insideY = std::clamp(y, 1, 11);
            const bool isInside = insideX == x && insideY == y;
            const bool isFilled = isLarge && isIn(rect, x, y);
            return isInside || isFilled ? codeAt(mono.image, insideX, insideY) : 0;
        });
    }
}

TEST(ComputeRmct, SmallOrWrongImages) {
    std::mt19937 random(43);
    for (const Size size : {Size(1, 2), Size(2, 9), Size(9, 2), Size(1, 1)}) {
        GuardedImage mono(size.width, size.height, KZ::COLOR_MODE_MONO);
        GuardedImage rmct(size.width, size.height, KZ::COLOR_MODE_RMCT);
        mono.randomize(random);
        KZ::computeRmct(mono.image, rmct.image);
        expectValues(rmct.image, [](int, int, int) { return 0; });
    }
    Image rmct, bgr(Size(4, 4), KZ::COLOR_MODE_BGR);
    EXPECT_EQ("have COLOR_MODE_BGR, but need COLOR_MODE_MONO\n",
              assertionOf([&] { KZ::computeRmct(bgr, rmct); }));
}

int differingBits(int a, int b) {
    int count = 0;
    for (int bit = 1; bit < 256; bit *= 2) count += (a & bit) != (b & bit);
    return count;
}

TEST(BitDiff, CountsBits) {
    std::mt19937 random(44);
    GuardedImage a(13, 7, KZ::COLOR_MODE_RMCT, 1), b(13, 7, KZ::COLOR_MODE_RMCT, 2);
    a.randomize(random);
    b.randomize(random);
    Image out;
    for (const Rect rect : {Rect(), Rect(3, 2, 3, 5), Rect(4, 1, 13, 7)}) {
        KZ::bitDiff(a.image, b.image, out, rect);
        ASSERT_EQ(KZ::COLOR_MODE_MONO, out.colorMode());
        unsigned int sum = 0;
        expectValues(out, [&](int x, int y, int) {
            if (!isIn(rect, x, y)) return 0;
            const int bits = differingBits(byteAt(a.image, x, y), byteAt(b.image, x, y));
            sum += unsigned(bits);
            return bits;
        });
        if (rect.left == 4)
            EXPECT_EQ(sum, KZ::bitDiffSum(a.image, b.image, 4, 1, 4, 1, 9, 6));
        else
            EXPECT_EQ(sum, KZ::bitDiffSum(a.image, b.image));
    }
    EXPECT_EQ(0u, KZ::bitDiffSum(a.image, a.image, 2, 3, 2, 3, 5, 4));
}

}  // namespace
