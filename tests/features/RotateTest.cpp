#include "KZ_RotateImage.h"

#include <algorithm>
#include <cmath>

#include "KZ_InterpolatedRow.h"
#include "KZ_Matrix.h"
#include "LogCapture.h"
#include "TestImages.h"

using namespace KZ;
using testing_support::assertionOf;

namespace {

struct Turn {
    float angle, zoom;
    PointF center, targetCenter;
};

// Position of a target pixel in 1/256 pixel, from the definition.
struct Position {
    int x, y;
};

Position positionOf(const Turn& turn, int column, int row) {
    const float c = std::cos(turn.angle) * turn.zoom, s = std::sin(turn.angle) * turn.zoom;
    const float dx = -turn.targetCenter.x, dy = float(row) - turn.targetCenter.y;
    return {int((turn.center.x + dy * -s + dx * c) * 256) + int(c * float(column) * 256),
            int((turn.center.y + dy * c + dx * s) * 256) + int(s * float(column) * 256)};
}

// Byte `channel` of the bilinear sample with integer weights of 1/65536.
int sample(const Image& source, int x, int y, int channel) {
    int sum = 0;
    for (int i = 0; i < 4; ++i) {
        const int wx = i % 2 ? x % 256 : 256 - x % 256, wy = i / 2 ? y % 256 : 256 - y % 256;
        sum += wx * wy * byteAt(source, x / 256 + i % 2, y / 256 + i / 2, channel);
    }
    return sum / 65536;
}

int expectedInterpolated(const Image& source, Position p, int channel, bool extend) {
    const int limitX = (source.width() - 1) * 256 - 1, limitY = (source.height() - 1) * 256 - 1;
    const Position inside = {std::clamp(p.x, 0, limitX), std::clamp(p.y, 0, limitY)};
    if (!extend && (inside.x != p.x || inside.y != p.y)) return 0;
    return sample(source, inside.x, inside.y, channel);
}

int expectedMean(const Image& source, Position p, int channel, float zoom, bool extend) {
    const int block = int(std::max(zoom, 1.0f));
    int left = p.x / 256 - block / 2, top = p.y / 256 - block / 2;
    const int maxLeft = source.width() - block, maxTop = source.height() - block;
    if (maxLeft < 0 || maxTop < 0) return 0;
    if (!extend && (left < 0 || top < 0 || left > maxLeft || top > maxTop)) return 0;
    left = std::clamp(left, 0, maxLeft);
    top = std::clamp(top, 0, maxTop);
    int sum = 0;
    for (int i = 0; i < block * block; ++i)
        sum += byteAt(source, left + i % block, top + i / block, channel);
    return sum / (block * block);
}

void expectTurned(const Image& source, const Turn& turn, bool extend) {
    GuardedImage guarded(Size(31, 23), source.colorMode(), 5);
    Image& target = guarded.image;
    rotateAndZoomImage(source, target, turn.angle, turn.zoom, turn.center, turn.targetCenter,
                       extend);
    EXPECT_TRUE(guarded.paddingKept());
    SCOPED_TRACE(testing::Message() << "angle " << turn.angle << " zoom " << turn.zoom);
    expectValues(target, [&](int x, int y, int c) {
        const Position p = positionOf(turn, x, y);
        return turn.zoom > 3 ? expectedMean(source, p, c, turn.zoom, extend)
                             : expectedInterpolated(source, p, c, extend);
    });
}

TEST(RotateAndZoomImage, AgreesWithTheDefinition) {
    std::mt19937 random(31);
    std::uniform_real_distribution<float> angle(-4, 4), place(-20, 80);
    for (const ColorMode mode : {COLOR_MODE_MONO, COLOR_MODE_BGR, COLOR_MODE_RGBA})
        for (const float zoom : {0.3f, 1.0f, 1.152f, 3.0f, 3.01f, 7.9f, 60.0f})
            for (int i = 0; i < 4; ++i) {
                if (mode == COLOR_MODE_RGBA && zoom <= 3) continue;
                const GuardedImage source(Size(57, 44), mode, 3);
                const Turn turn = {i ? angle(random) : 0, zoom,
                                   PointF(place(random), place(random)),
                                   PointF(place(random) / 3, place(random) / 3)};
                expectTurned(source.image, turn, i % 2 == 0);
            }
}

class InterpolatedRows : public testing::TestWithParam<InterpolatedRowVariant> {};

// Rows of all lengths and directions that run in, out and past a corner of a view whose neighbours
// cannot be read; the last view is wider than 16 bits.
TEST_P(InterpolatedRows, AgreeWithTheDefinition) {
    std::mt19937 random(32);
    for (const Size size : {Size(2, 2), Size(40, 31), Size(3, 300), Size(33000, 3)}) {
        const GuardedImage source(size, COLOR_MODE_MONO, 3);
        const int limitX = (size.width - 1) * 256 - 1, limitY = (size.height - 1) * 256 - 1;
        for (int width = 0; width <= 70; ++width) {
            const int stepX = int(random() % 1201) - 600, stepY = int(random() % 1201) - 600;
            std::vector<int> x, y;
            for (int i = 0; i < width; ++i) {
                x.push_back(i * stepX + stepX / 3 * (i & 1));
                y.push_back(i * stepY);
            }
            // Through a random place of the picture, reached at a random place of the row.
            const int i = width / 2, baseX = int(random() % unsigned(limitX + 1)) - i * stepX;
            const int baseY = int(random() % unsigned(limitY + 1)) - i * stepY;
            const bool extend = width % 2 == 0;
            testing_support::GuardedBuffer<unsigned char> out(size_t(width) + 1);
            GetParam().run({source.image.data(), source.image.stripLength(), limitX, limitY, extend,
                            x.data(), y.data()},
                           baseX, baseY, out.data() + 1, width);
            for (int k = 0; k < width; ++k)
                ASSERT_EQ(
                    expectedInterpolated(source.image, {baseX + x[size_t(k)], baseY + y[size_t(k)]},
                                         0, extend),
                    out[size_t(k) + 1])
                    << size << " width " << width << " sample " << k;
        }
    }
}
INSTANTIATE_TEST_SUITE_P(Variants, InterpolatedRows, testing::ValuesIn(interpolatedRowVariants()),
                         [](const auto& variant) { return variant.param.name; });

// The last position of such a side is beyond 31 bits.
TEST(RotateAndZoomImage, SidesOfMillionsOfPixels) {
    Image tall(Size(2, 8421378), COLOR_MODE_MONO), target(Size(16, 3), COLOR_MODE_MONO);
    Image wanted(target.size(), COLOR_MODE_MONO), top;
    zero(tall);
    for (int i = 0; i < 200; ++i) *tall.data(i % 2, 900 + i / 2) = static_cast<unsigned char>(i);
    top.createRef(tall, Rect(0, 0, 2, 2000));
    const float quarter = 1.57079633f;
    rotateAndZoomImage(tall, target, quarter, 1, PointF(0.5f, 950), true);
    rotateAndZoomImage(top, wanted, quarter, 1, PointF(0.5f, 950), true);
    EXPECT_TRUE(wanted == target);
    EXPECT_LT(80, *target.data(8, 1));
}

TEST(RotateAndZoomImage, WithoutTargetCentreTheMiddleOfPixelsCounts) {
    const GuardedImage source(Size(12, 9), COLOR_MODE_MONO);
    Image target(Size(12, 9), COLOR_MODE_MONO), smaller(Size(10, 7), COLOR_MODE_MONO);
    EXPECT_FALSE(rotateAndZoomImage(source.image, target, 0, 1, PointF(5.5f, 4), true));
    EXPECT_TRUE(rotateAndZoomImage(source.image, smaller, 0, 1, 1, PointF(5.5f, 4), false));
    expectValues(smaller, [&](int x, int y, int) { return byteAt(source.image, x + 1, y + 1); });
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 11; ++x) EXPECT_EQ(byteAt(source.image, x, y), byteAt(target, x, y));
    Image bgr(Size(4, 4), COLOR_MODE_BGR);
    EXPECT_EQ("have COLOR_MODE_MONO, but need COLOR_MODE_BGR\n",
              assertionOf([&] { rotateAndZoomImage(target, bgr, 0, 1, PointF(), true); }));
    EXPECT_EQ("different zooms not implemented yet\n",
              assertionOf([&] { rotateAndZoomImage(target, smaller, 0, 1, 2, PointF(), true); }));
}

// A frame of one row or column has no neighbours to read; places far off do not overflow.
TEST(RotateAndZoomImage, ExtremeSizesAndPlaces) {
    Image target(Size(5, 4), COLOR_MODE_MONO);
    for (const Size size : {Size(1, 6), Size(7, 1), Size(1, 1), Size(6, 6)}) {
        const GuardedImage source(size, COLOR_MODE_MONO);
        const int last = byteAt(source.image, size.width - 1, size.height - 1);
        for (const float far : {1e6f, 3e9f, 1e38f}) {
            rotateAndZoomImage(source.image, target, 0, 1, PointF(far, far), true);
            const bool isThin = size.width < 2 || size.height < 2;
            EXPECT_EQ(isThin ? last : byteAt(target, 0, 0), byteAt(target, 4, 3));
            rotateAndZoomImage(source.image, target, 0, 1, PointF(-far, far), false);
            EXPECT_EQ(0, byteAt(target, 2, 2));
        }
    }
    // Positions truncate towards zero: -0.9 is column 0.
    const Image source = imageOf<unsigned char>(Size(2, 2), COLOR_MODE_MONO, {7, 8, 9, 10});
    Image pixel(Size(1, 1), COLOR_MODE_MONO);
    rotateAndZoomImageAverage(source, pixel, 0, 1, PointF(-.9f, 1.5f), PointF(), false);
    EXPECT_EQ(9, byteAt(pixel, 0, 0));
    // A block as large as the picture still fits.
    rotateAndZoomImageAverage(source, pixel, 0, 2, PointF(1, 1), PointF(), false);
    EXPECT_EQ(8, byteAt(pixel, 0, 0));
}

TEST(AllInside, CornersMapStrictlyInside) {
    const struct {
        float angle, zoom;
        PointF center;
        bool expected;
    } rows[] = {
        {0, 1, PointF(1, 1), true},          // touches left and top
        {0, 1, PointF(.99f, 1), false},      // sticks out to the left
        {0, 1, PointF(7.99f, 4), true},      // just before the last column
        {0, 1, PointF(8, 4), false},         // on the last column
        {0, 1, PointF(4, 6), false},         // on the last row
        {.785f, 1, PointF(1.2f, 4), false},  // a corner of the turned square sticks out
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.expected,
                  allInside(Size(10, 8), Size(3, 3), rotationMatrix2d(row.angle) * row.zoom,
                            row.center, PointF(1, 1)))
            << row.center;
}

TEST(GetRotatedFrameSize, BlendsByTheSquaredCosine) {
    const float pi = 3.14159265f;
    const std::pair<float, Size> rows[] = {{0, {640, 480}},
                                           {pi / 2, {480, 640}},
                                           {-pi / 2, {480, 640}},
                                           {pi / 3, {520, 600}},
                                           {.1f, {638, 482}}};
    for (const auto& row : rows)
        EXPECT_EQ(row.second, getRotatedFrameSize(Size(640, 480), row.first)) << row.first;
}

}  // namespace
