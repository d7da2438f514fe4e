#include "DetectorData.h"

#include <gtest/gtest.h>

#include <random>

#include "LogCapture.h"

using testing_support::assertionOf;

namespace {

KZ::Image randomImage(const KZ::Size& size, KZ::ColorMode mode, unsigned int seed) {
    KZ::Image image(size, mode);
    std::mt19937 random(seed);
    for (int i = 0; i < size.height * image.stripLength(); ++i) {
        image.data()[i] = static_cast<unsigned char>(random());
    }
    return image;
}

}  // namespace

TEST(DetectorData, KeepsTheFrameBeforeWhenTheCallerReusesItsBuffer) {
    const KZ::Size size(33, 20);
    const KZ::Image first = randomImage(size, KZ::COLOR_MODE_MONO, 1);
    const KZ::Image second = randomImage(size, KZ::COLOR_MODE_MONO, 2);
    KZ::Image buffer = first;
    DetectorData data;
    data.computeBase(buffer);
    EXPECT_EQ(first, data.previousMono) << "nothing moves on the first frame";
    const unsigned char* pixels[] = {data.mono.data(), data.previousMono.data()};

    buffer = second;
    data.computeBase(buffer);
    EXPECT_EQ(second, data.mono);
    EXPECT_EQ(first, data.previousMono);
    EXPECT_EQ(pixels[0], data.mono.data()) << "no new memory for a frame of the same size";
    EXPECT_EQ(pixels[1], data.previousMono.data());
}

TEST(DetectorData, TakesGreyAndBgrFrames) {
    DetectorData data;
    const KZ::Image frame = randomImage(KZ::Size(7, 3), KZ::COLOR_MODE_BGR, 3);
    data.computeBase(frame);
    const unsigned char* p = frame.data(6, 2);
    EXPECT_EQ(16 + ((25 * p[0] + 129 * p[1] + 66 * p[2]) >> 8), *data.mono.data(6, 2));
    EXPECT_EQ(frame.data(), data.getImage(KZ::COLOR_MODE_BGR).data()) << "a view";
    EXPECT_EQ(p[2], *data.getImage(KZ::COLOR_MODE_RGB).data(6, 2));
    const KZ::Image depth(KZ::Size(7, 3), KZ::COLOR_MODE_DEPTH);
    const std::string refusal = "unsupported color mode: COLOR_MODE_DEPTH\n";
    EXPECT_EQ(refusal, assertionOf([&] { data.computeBase(depth); }));
    EXPECT_EQ(refusal, assertionOf([&] { data.getImage(KZ::COLOR_MODE_DEPTH); }));
}

TEST(DetectorData, ComputesProductsForTheRectangle) {
    const KZ::Image frame = randomImage(KZ::Size(40, 30), KZ::COLOR_MODE_MONO, 5);
    DetectorData data;
    data.compute(frame, KZ::Rect(0, 0, 40, 30));
    uint32_t sum = 0;
    for (int y = 0; y < 12; ++y) {
        for (int x = 0; x < 17; ++x) sum += *frame.data(x, y);
    }
    EXPECT_EQ(sum, data.integral.row<uint32_t>(12)[17]);
    EXPECT_EQ(frame, data.rmctPyramid.getMono(0));
    EXPECT_TRUE(data.rmctPyramid.getRmct(3).isCreated());

    const KZ::Image next = randomImage(KZ::Size(40, 30), KZ::COLOR_MODE_MONO, 6);
    EXPECT_EQ("Rect(0, 0, 41, 30) is out of Rect(0, 0, 40, 30)\n",
              assertionOf([&] { data.compute(next, KZ::Rect(0, 0, 41, 30)); }));
    EXPECT_EQ(frame, data.mono) << "refused before anything changes";

    data.compute(next, KZ::Rect(5, 5, 5, 20));
    EXPECT_EQ(next, data.mono);
    EXPECT_EQ(frame, data.previousMono);
    EXPECT_FALSE(data.integral.isCreated());
    EXPECT_FALSE(data.rmctPyramid.getMono(2).isCreated());
    EXPECT_FALSE(data.rmctPyramid.getRmct(2).isCreated());
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
        EXPECT_EQ(5, result.angle);
    }
    data.preprocessingAngle = 135;
    EXPECT_EQ("45 != 0\n", assertionOf([&] { data.getInputLocationState(LocationState()); }));
}
