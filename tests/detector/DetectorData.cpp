#include "DetectorData.h"

#include <gtest/gtest.h>

#include <random>

#include "LogCapture.h"

using testing_support::assertionOf;

namespace {

KZ::Image randomImage(const KZ::Size& size, KZ::ColorMode mode, unsigned int seed) {
    KZ::Image image(size, mode);
    std::mt19937 random(seed);
    for (int i = 0; i < size.height * image.stripLength(); ++i)
        image.data()[i] = static_cast<unsigned char>(random());
    return image;
}

}  // namespace

TEST(DetectorData, KeepsTheFrameBeforeWhenTheCallerReusesItsBuffer) {
    KZ::Image buffer, before = randomImage(KZ::Size(33, 20), KZ::COLOR_MODE_MONO, 1);
    DetectorData data;
    const unsigned char* pixels = nullptr;
    for (unsigned int seed = 1; seed <= 4; ++seed) {
        const KZ::Image frame = randomImage(KZ::Size(33, 20), KZ::COLOR_MODE_MONO, seed);
        buffer = frame;
        data.computeBase(buffer);
        EXPECT_EQ(frame, data.mono);
        EXPECT_EQ(before, data.previousMono) << "nothing moves on the first frame";
        EXPECT_TRUE(!pixels || pixels == data.previousMono.data()) << "no new memory";
        pixels = data.previousMono.data();
        before = frame;
    }
}

TEST(DetectorData, TakesBgrFrames) {
    DetectorData data;
    const KZ::Image frame = randomImage(KZ::Size(7, 3), KZ::COLOR_MODE_BGR, 3);
    data.computeBase(frame);
    const unsigned char* p = frame.data(6, 2);
    EXPECT_EQ(16 + ((25 * p[0] + 129 * p[1] + 66 * p[2]) >> 8), *data.mono.data(6, 2));
    EXPECT_EQ(frame.data(), data.getImage(KZ::COLOR_MODE_BGR).data()) << "a view";
    EXPECT_EQ(p[2], *data.getImage(KZ::COLOR_MODE_RGB).data(6, 2));
}

TEST(DetectorData, ComputesProductsForTheRectangle) {
    const KZ::Image frame = randomImage(KZ::Size(40, 30), KZ::COLOR_MODE_MONO, 5);
    DetectorData data;
    data.compute(frame, KZ::Rect(0, 0, 40, 30));
    uint32_t sum = 0;
    for (int i = 0; i < 12 * 17; ++i) sum += *frame.data(i % 17, i / 17);
    EXPECT_EQ(sum, data.integral.row<uint32_t>(12)[17]);
    EXPECT_EQ(frame, data.rmctPyramid.getMono(0));
    EXPECT_TRUE(data.rmctPyramid.getRmct(3).isCreated());

    const KZ::Image next = randomImage(KZ::Size(40, 30), KZ::COLOR_MODE_MONO, 6);
    EXPECT_EQ("Rect(0, 0, 41, 30) is out of Rect(0, 0, 40, 30)\n",
              assertionOf([&] { data.compute(next, KZ::Rect(0, 0, 41, 30)); }));
    EXPECT_EQ(frame, data.mono) << "refused before anything changes";
    data.compute(next, KZ::Rect(5, 5, 5, 20));
    EXPECT_EQ(next, data.mono);
    EXPECT_FALSE(data.integral.isCreated() || data.rmctPyramid.getMono(2).isCreated() ||
                 data.rmctPyramid.getRmct(2).isCreated());
}

// A frame of 60 by 80 (or 80 by 60) input pixels, turned and halved to 40 by 30 mono pixels. The
// location at (10, 5) is 10 left of the middle and 10 above it.
TEST(DetectorData, TakesLocationsBackToTheInput) {
    struct Row {
        int angle;
        bool flipped;
        float x, y, width, height;
        KZ::Side::Value side;
    };
    const Row rows[] = {
        {0, false, 20, 10, 8, 12, KZ::Side::RIGHT},   {90, false, 50, 20, 12, 8, KZ::Side::RIGHT},
        {180, false, 60, 50, 8, 12, KZ::Side::RIGHT}, {-90, false, 10, 60, 12, 8, KZ::Side::RIGHT},
        {270, true, 10, 20, 12, 8, KZ::Side::LEFT},   {0, true, 60, 10, 8, 12, KZ::Side::LEFT},
    };
    const LocationState place(
        KZ::ObjectLocation(KZ::PointF(10, 5), KZ::SizeF(4, 6), 5, KZ::Side::RIGHT));
    DetectorData data;
    data.mono.create(KZ::Size(40, 30), KZ::COLOR_MODE_MONO);
    data.scale = 2;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.angle);
        data.preprocessingAngle = row.angle;
        data.flipped = row.flipped;
        const LocationState result = data.getInputLocationState(place);
        EXPECT_NEAR(row.x, result.center.x, 1e-3);
        EXPECT_NEAR(row.y, result.center.y, 1e-3);
        EXPECT_EQ(KZ::SizeF(row.width, row.height), result.size);
        EXPECT_EQ(row.side, result.side);
    }
}
