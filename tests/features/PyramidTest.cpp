#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "KZ_RmctPyramid.h"
#include "KZ_RmctTransform.h"
#include "LogCapture.h"
#include "TestImages.h"

using KZ::Image;
using KZ::ImagePyramid;
using KZ::Rect;
using KZ::RmctPyramid;
using KZ::Size;
using testing_support::assertionOf;
using testing_support::conditionOf;

namespace {

// A picture halved `times` times; below 2 by 2 it stays as it is.
Image halvedTimes(const Image& picture, int times) {
    if (times == 0) return picture;
    const Image below = halvedTimes(picture, times - 1);
    if (below.width() < 2 || below.height() < 2) return below;
    Image half(Size(below.width() / 2, below.height() / 2), KZ::COLOR_MODE_MONO);
    for (int y = 0; y < half.height(); ++y)
        for (int x = 0; x < half.width(); ++x) {
            const int a = byteAt(below, 2 * x, 2 * y), b = byteAt(below, 2 * x + 1, 2 * y);
            const int c = byteAt(below, 2 * x, 2 * y + 1), d = byteAt(below, 2 * x + 1, 2 * y + 1);
            const bool inBlock = x < below.width() / 32 * 16;
            *half.data(x, y) = static_cast<unsigned char>(inBlock ? ((a + b) / 2 + (c + d) / 2) / 2
                                                                  : (a + b + c + d) / 4);
        }
    return half;
}

struct ExpectedLayer {
    float zoom;
    Image image;
};

ExpectedLayer expectedLayer(const Image& picture, float zoom) {
    int times = 0;
    while (float(2 << times) < zoom + .03f) ++times;
    const float base = float(1 << times);
    Image below = halvedTimes(picture, times);
    if (std::abs(zoom - base) < .03f) return {base, below};
    if (below.width() < 2 || below.height() < 2) return {zoom, below};
    const float ratio = zoom / base;
    Image image(Size(int(float(below.width()) / ratio), int(float(below.height()) / ratio)),
                KZ::COLOR_MODE_MONO);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            *image.data(x, y) = *below.data(int(float(x) * ratio), int(float(y) * ratio));
    return {zoom, image};
}

TEST(ImagePyramid, LayersOfAllZooms) {
    std::mt19937 random(71);
    for (const Size size : {Size(169, 121), Size(64, 9), Size(5, 40), Size(1, 3)})
        for (const bool ref : {false, true}) {
            GuardedImage picture(size.width, size.height, KZ::COLOR_MODE_MONO, 3);
            picture.randomize(random);
            ImagePyramid pyramid;
            pyramid.init(20, 1.0f, 1.2f);
            float zoom = 1;
            // A higher layer first: the lower ones must not depend on the order.
            pyramid.computeMonoLayer(picture.image, 7, ref);
            pyramid.compute(picture.image, ref);
            for (int layer = 0; layer < 20; ++layer, zoom *= 1.2f) {
                SCOPED_TRACE(testing::Message() << size << " layer " << layer);
                const ExpectedLayer expected = expectedLayer(picture.image, zoom);
                EXPECT_EQ(expected.zoom, pyramid.zoomAtLayer(layer));
                EXPECT_TRUE(pyramid.isComputedLayer(layer));
                ASSERT_EQ(expected.image, pyramid.getMono(layer));
            }
        }
}

// Zooms next to a power of two snap to it when computed and come back by init().
TEST(ImagePyramid, Snapping) {
    Image picture(Size(40, 30), KZ::COLOR_MODE_MONO);
    KZ::zero(picture);
    struct Row {
        float zoom, computed;
    };
    const Row rows[] = {{1.0f, 1.0f},  {1.02f, 1.0f},  {1.05f, 1.05f}, {1.98f, 2.0f},
                        {2.02f, 2.0f}, {2.04f, 2.04f}, {3.96f, 3.96f}};
    for (const Row& row : rows) {
        ImagePyramid pyramid;
        pyramid.init(1, row.zoom, 2);
        EXPECT_EQ(row.zoom, pyramid.zoomAtLayer(0));
        pyramid.computeMonoLayer(picture, 0, true);
        EXPECT_EQ(row.computed, pyramid.zoomAtLayer(0));
        pyramid.init();
        EXPECT_EQ(row.zoom, pyramid.zoomAtLayer(0));
        EXPECT_FALSE(pyramid.isComputedLayer(0));
    }
}

TEST(ImagePyramid, SharesOrCopiesThePicture) {
    Image first(Size(8, 8), KZ::COLOR_MODE_MONO), second(Size(8, 8), KZ::COLOR_MODE_MONO);
    std::memset(first.data(), 1, 64);
    std::memset(second.data(), 2, 64);
    ImagePyramid pyramid;
    pyramid.init(1, 1, 2);
    pyramid.compute(first, true);
    EXPECT_EQ(first.data(), pyramid.getMono(0).data());
    pyramid.init();
    pyramid.compute(second, false);
    EXPECT_EQ(second, pyramid.getMono(0));
    EXPECT_NE(second.data(), pyramid.getMono(0).data());
    EXPECT_EQ(1, byteAt(first, 0, 0)) << "a copy must not write into the picture before";
}

TEST(ImagePyramid, LayerAtZoom) {
    struct Row {
        unsigned int layers;
        float start, zoom;
        int expected;
    };
    const Row rows[] = {{1, 1, 9, 0},      {20, 1, 1, 0},       {20, 1, .2f, 0},
                        {20, 1, 1.09f, 0}, {20, 1, 1.1f, 1},    {20, 1, 2.0736f, 4},
                        {20, 1, 1e9f, 19}, {20, 2, 1, -4},      {20, 2, 2.4f, 1},
                        {20, 2, 1.85f, 0}, {20, 1.5f, 1.3f, -1}};
    for (const Row& row : rows) {
        ImagePyramid pyramid;
        pyramid.init(row.layers, row.start, 1.2f);
        EXPECT_EQ(row.expected, pyramid.layerAtZoom(row.zoom)) << row.start << " " << row.zoom;
    }
    // Both layers snap to 2: no layer is nearer than another.
    ImagePyramid flat;
    flat.init(2, 2, 1.01f);
    flat.compute(Image(Size(8, 8), KZ::COLOR_MODE_MONO), false);
    EXPECT_EQ(0, flat.layerAtZoom(2));
    EXPECT_LT(flat.layerAtZoom(1), 0);
    EXPECT_EQ(1, flat.layerAtZoom(3));
}

TEST(ImagePyramid, Refusals) {
    ImagePyramid pyramid;
    Image mono(Size(8, 8), KZ::COLOR_MODE_MONO);
    EXPECT_EQ("Not inited pyramid\n",
              assertionOf([&] { pyramid.computeMonoLayer(mono, 0, true); }));
    pyramid.init(3, 1, 1.5f);
    EXPECT_EQ("numlevels must be >= 1\n", assertionOf([&] { pyramid.init(0, 1, 2); }));
    EXPECT_EQ("start must be >= 1\n", assertionOf([&] { pyramid.init(1, .9f, 2); }));
    EXPECT_EQ("step must be > 1, 1\n", assertionOf([&] { pyramid.init(1, 1, 1); }));
    EXPECT_EQ(3u, pyramid.numLayers());
    EXPECT_EQ("incorrect layer: 3\n",
              assertionOf([&] { pyramid.computeMonoLayer(mono, 3, true); }));
    EXPECT_EQ("Layer out of bounds: -1\n", assertionOf([&] { pyramid.getMono(-1); }));
    EXPECT_EQ("0 <= layer && layer < (int)pyramid_.size()",
              conditionOf([&] { pyramid.zoomAtLayer(3); }));
}

TEST(ImagePyramid, TextAndFreedMemory) {
    Image picture(Size(8, 8), KZ::COLOR_MODE_MONO);
    KZ::zero(picture);
    ImagePyramid pyramid;
    pyramid.init(2, 1, 1.5f);
    pyramid.compute(picture, false);
    pyramid.freeMemory();
    EXPECT_FALSE(pyramid.isComputedLayer(0));
    std::ostringstream text;
    text << pyramid;
    const std::string layer = "Image(Size(0, 0), COLOR_MODE_UNDEFINED)";
    EXPECT_EQ("NumLayers = 2\n    layer #0" + layer + "    layer #1" + layer, text.str());
}

// Inside the rectangle, less a margin for the 2 by 2 means and neighbours, a part is as the whole.
TEST(RmctPyramid, RectangleAgreesWithTheWhole) {
    std::mt19937 random(72);
    GuardedImage picture(200, 150, KZ::COLOR_MODE_MONO);
    picture.randomize(random);
    RmctPyramid whole, part;
    whole.init(10, 1, 1.2f);
    part.init(10, 1, 1.2f);
    whole.setMono(picture.image);
    part.setMono(picture.image);
    whole.compute();
    const Rect rect(40, 32, 168, 144);
    part.compute(rect);
    for (int layer = 0; layer < 10; ++layer) {
        SCOPED_TRACE(layer);
        const float zoom = whole.zoomAtLayer(layer);
        const Image& rmct = whole.getRmct(layer);
        Image expected;
        KZ::computeRmct(whole.getMono(layer), expected);
        EXPECT_EQ(expected, rmct);
        for (int y = int(float(rect.top) / zoom) + 3; y < int(float(rect.bottom) / zoom) - 3; ++y)
            for (int x = int(float(rect.left) / zoom) + 3; x < int(float(rect.right) / zoom) - 3;
                 ++x)
                ASSERT_EQ(byteAt(rmct, x, y), byteAt(part.getRmct(layer), x, y)) << x << " " << y;
        // Away from the picture's edge the border of a part is not filled.
        EXPECT_EQ(0, byteAt(part.getRmct(layer), 0, 20 / (1 + layer / 4)));
    }
    EXPECT_TRUE(whole == whole);
    EXPECT_FALSE(whole == part);
}

TEST(RmctPyramid, InitRelativeAndRefusals) {
    RmctPyramid pyramid;
    pyramid.initRelative(7, 4, 1.25f, 1);
    EXPECT_FLOAT_EQ(4 / 1.953125f, pyramid.zoomAtLayer(0));
    EXPECT_FLOAT_EQ(4, pyramid.zoomAtLayer(3));
    pyramid.initRelative(7, 4, 1.25f, 3);
    EXPECT_EQ(3, pyramid.zoomAtLayer(0));
    EXPECT_EQ("Value of step must be positive\n", assertionOf([&] { pyramid.init(2, 1, -1); }));
    EXPECT_EQ("Number of layer must be positive, layer = 7\n",
              assertionOf([&] { pyramid.computeLayer(7); }));
    EXPECT_EQ("(layer) < ((int)numLayers())", conditionOf([&] { pyramid.zoomAtLayer(7); }));
    EXPECT_EQ("image is not created\n", assertionOf([&] { pyramid.setMono(Image()); }));
}

}  // namespace
