// Layers that read positions off maps.

#include <gtest/gtest.h>

#include <cmath>

#include "LogCapture.h"
#include "NnSupport.h"

using namespace testing_support;
using KZ::Blob;

namespace {

struct Spot {
    int channel, x, y;
    float value;
};

Blob mapsOf(int channels, int width, int height, const std::vector<Spot>& spots) {
    Blob maps(1, channels, height, width);
    maps.setValue(0);
    for (const Spot& spot : spots) *maps.data(0, spot.channel, spot.y, spot.x) = spot.value;
    return maps;
}

}  // namespace

// 25 cells lie within the radius of 3, 16 of them around a cell one off the corner.
TEST(HeatMapPosition, CentreOfMassInPatchPixels) {
    struct Row {
        std::vector<Spot> spots;
        Floats expected;
    };
    const Row rows[] = {
        {{{0, 3, 3, -1}}, {0, 0, 0}},
        {{{0, 4, 4, 0.5f}}, {4, 4, 128 / 25.0f}},
        // A second cell inside, a third at the radius.
        {{{0, 4, 4, 0.5f}, {0, 6, 4, 0.25f}, {0, 4, 1, 0.25f}}, {4 + 2 / 3.0f, 4, 192 / 25.0f}},
        // The first of two that are equal, the larger of two that are clamped.
        {{{0, 1, 1, 0.5f}, {0, 7, 7, 0.5f}}, {1, 1, 128 / 16.0f}},
        {{{0, 1, 1, 1}, {0, 7, 7, 3}}, {7, 7, 255 / 16.0f}},
    };
    for (const Row& row : rows) {
        HeatMapPosition layer("heat");
        layer.setPatchSize(KZ::Size(9, 9));
        const Floats found = run(layer, {mapsOf(1, 9, 9, row.spots)});
        ASSERT_EQ(3u, found.size());
        for (size_t i = 0; i < 3; ++i) EXPECT_FLOAT_EQ(row.expected[i], found[i]);
    }
}

TEST(HeatMapPosition, MapsOfTheirOwnSizes) {
    HeatMapPosition layer("heat");
    layer.setPatchSize(KZ::Size(20, 10));
    layer.addHeatmap(KZ::Size(10, 10), KZ::Rect(10, 0, 20, 10));
    layer.addHeatmap(KZ::Size(5, 4), KZ::RelativeLocation());
    Blob flat(1, 120, 1, 1);
    flat.setValue(0);
    flat.data()[10 * 5 + 5] = 0.5f;
    flat.data()[100 + 5 * 0 + 2] = 0.5f;
    const Blob& top = run(layer, {flat});
    EXPECT_EQ("1 x 2 x 1 x 3", top.shape());
    // Half a cell right of and below the middle of the right half, which is half as wide as the
    // patch; then the middle column, one and a half fifths of the width above the middle.
    EXPECT_NEAR(9.5 + (0.25 + 0.5 * 0.05) * 20, top.data()[0], 1e-5);
    EXPECT_NEAR(4.5 + 0.5 * 0.05 * 10, top.data()[1], 1e-5);
    EXPECT_NEAR(9.5, top.data()[3], 1e-5);
    EXPECT_NEAR(4.5 - 1.5 / 5 * 10, top.data()[4], 1e-5);
    layer.bottomLayers()[0]->setBlob(Blob(1, 119, 1, 1));
    EXPECT_EQ("120 != 119\n", assertionOf([&] { layer.forward(); }));
}

// The partner decides: alone, the brightest cells would be others.
TEST(HeatMapPosition, PairsInARegion) {
    HeatMapPosition layer("heat");
    layer.setPatchSize(KZ::Size(9, 9));
    KZ::Rect region(-2, -1, 2, -1);
    layer.setRegion(region);
    const Blob maps = mapsOf(
        2, 9, 9, {{0, 2, 3, 0.5f}, {0, 7, 8, 0.6f}, {1, 4, 2, 0.5f}, {1, 5, 2, 1}, {1, 3, 3, 1}});
    const Floats found = run(layer, {maps});
    EXPECT_FLOAT_EQ(2, found[0]);
    EXPECT_FLOAT_EQ(3, found[1]);
    EXPECT_FLOAT_EQ((4 * 128 + 5 * 255 + 3 * 255) / 638.0f, found[3]);
    EXPECT_FLOAT_EQ((2 * 128 + 2 * 255 + 3 * 255) / 638.0f, found[4]);
    // No first point: neither has a result.
    layer.bottomLayers()[0]->setBlob(mapsOf(2, 9, 9, {{1, 8, 8, 1}}));
    layer.forward();
    EXPECT_EQ(Floats(6, 0), valuesOf(layer.getBlob()));
}

TEST(PredictBox, BoxesOfTheCellsAboveTheThreshold) {
    Blob scores(1, 2, 2, 3);
    scores.setValue(0.6f);
    *scores.data(0, 1, 0, 1) = 0.7f;
    *scores.data(0, 1, 1, 0) = 0.8f;
    *scores.data(0, 1, 1, 2) = 0.9f;
    Blob regression(1, 4, 2, 3), scales(1, 1, 2, 3);
    const float d[] = {0.1f, 0.2f, 0.3f, 0.5f};
    for (int c = 0; c < 4; ++c)
        std::fill(regression.data(0, c, 0, 0), regression.data(0, c, 2, 0), d[c]);
    scales.setValue(2);
    *scales.data(0, 0, 1, 0) = -0.0009f;

    const float x = 1 / 12.0f;
    struct Row {
        bool factors;  ///< the offsets of the sides are exponents
        std::vector<Blob> bottoms;
        Floats expected;
    };
    const Row rows[] = {
        {false, {scores}, {2 * x, 0, 1, 1, 0.7f, 0, 2 * x, 1, 1, 0.8f, 4 * x, 2 * x, 1, 1, 0.9f}},
        {false,
         {scores, regression, scales},
         {4 * x + 0.2f, 0.4f, 2.6f, 2.4f, 0.7f, 8 * x + 0.2f, 4 * x + 0.4f, 2.6f, 2.4f, 0.9f}},
        {true,
         {scores, regression, scales},
         {4 * x + 0.4f, 0.2f, 2 * std::exp(0.5f), 2 * std::exp(0.3f), 0.7f, 8 * x + 0.4f,
          4 * x + 0.2f, 2 * std::exp(0.5f), 2 * std::exp(0.3f), 0.9f}},
    };
    for (const Row& row : rows) {
        PredictBoxLayer layer("boxes", 12, 2, 0.6f, row.factors);
        const Blob& top = run(layer, row.bottoms);
        const Floats boxes = top;
        ASSERT_EQ(KZ::joined("1 x ", row.expected.size() / 5, " x 5 x 1"), top.shape());
        for (size_t i = 0; i < boxes.size(); ++i) EXPECT_FLOAT_EQ(row.expected[i], boxes[i]) << i;
        // Without a cell above the threshold the top stays as it was.
        layer.bottomLayers()[0]->setBlob(blobOf(1, 2, 2, 3, Floats(12, 0.6f)));
        layer.forward();
        EXPECT_EQ(boxes, valuesOf(layer.getBlob()));
    }
}
