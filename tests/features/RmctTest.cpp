#include "KZ_RmctTransform.h"

#include <algorithm>

#include "LogCapture.h"
#include "TestImages.h"

using namespace KZ;

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

class RmctRow : public testing::TestWithParam<RmctRowVariant> {};

// Contrasts of all sizes, also such whose mean exceeds a byte.
TEST_P(RmctRow, AgreesWithTheDefinition) {
    for (int count = 0; count <= 67; ++count)
        for (const int range : {2, 12, 255}) {
            GuardedImage mono(Size(count + 2, 3), COLOR_MODE_MONO, count % 3, unsigned(count));
            GuardedImage codes(Size(count, 1), COLOR_MODE_RMCT);
            for (int i = 0; i < 3 * (count + 2); ++i) {
                unsigned char* pixel = mono.image.data(i % (count + 2), i / (count + 2));
                *pixel = static_cast<unsigned char>((count % 2 ? 255 - range : 0) +
                                                    *pixel % (range + 1));
            }
            GetParam().run(mono.image.data(1, 0), mono.image.data(1, 1), mono.image.data(1, 2),
                           codes.image.data(), count);
            for (int x = 0; x < count; ++x)
                ASSERT_EQ(codeAt(mono.image, x + 1, 1), byteAt(codes.image, x, 0))
                    << "count " << count << " range " << range << " x " << x;
            const int p = mono.image.stripLength(),
                      around[] = {-p - 1, -p, 1 - p, -1, 1, p - 1, p, p + 1};
            for (int x = 0; x < count; ++x)
                ASSERT_EQ(unsigned(codeAt(mono.image, x + 1, 1)),
                          computeRmctPixel(mono.image.data(x + 1, 1), around));
        }
}
INSTANTIATE_TEST_SUITE_P(Variants, RmctRow, testing::ValuesIn(rmctRowVariants()),
                         [](const auto& variant) { return variant.param.name; });

// The inside is always whole; the border only where the clamped rectangle touches it.
TEST(ComputeRmct, BorderInsideTheRectangle) {
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
                          Rect()};
    for (const Rect& given : rects) {
        SCOPED_TRACE(testing::Message() << given);
        const GuardedImage mono(Size(21, 13), COLOR_MODE_MONO, 2);
        GuardedImage rmct(Size(21, 13), COLOR_MODE_RMCT, 5);
        computeRmct(mono.image, rmct.image, given);
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
    for (const Size size : {Size(2, 9), Size(9, 2), Size(1, 1)}) {
        GuardedImage mono(size, COLOR_MODE_MONO), rmct(size, COLOR_MODE_RMCT);
        computeRmct(mono.image, rmct.image);
        expectValues(rmct.image, [](int, int, int) { return 0; });
    }
    Image rmct;
    EXPECT_EQ("have COLOR_MODE_BGR, but need COLOR_MODE_MONO\n", testing_support::assertionOf([&] {
                  computeRmct(Image(Size(4, 4), COLOR_MODE_BGR), rmct);
              }));
}

TEST(BitDiff, CountsBits) {
    const GuardedImage a(Size(13, 7), COLOR_MODE_RMCT, 1), b(Size(13, 7), COLOR_MODE_RMCT, 2, 2);
    Image out;
    for (const Rect rect : {Rect(), Rect(3, 2, 3, 5), Rect(4, 1, 13, 7)}) {
        bitDiff(a.image, b.image, out, rect);
        unsigned int sum = 0;
        expectValues(out, [&](int x, int y, int) {
            int count = 0;
            for (int bit = 1; bit < 256; bit *= 2)
                count += (byteAt(a.image, x, y) & bit) != (byteAt(b.image, x, y) & bit);
            sum += isIn(rect, x, y) ? unsigned(count) : 0;
            return isIn(rect, x, y) ? count : 0;
        });
        if (rect.left == 4)
            EXPECT_EQ(sum, bitDiffSum(a.image, b.image, 4, 1, 4, 1, 9, 6));
        else
            EXPECT_EQ(sum, bitDiffSum(a.image, b.image));
    }
}

}  // namespace
