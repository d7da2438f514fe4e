#include <cmath>

#include "KZ_ResizeImage.h"
#include "KZ_RmctPyramid.h"
#include "KZ_RmctTransform.h"
#include "LogCapture.h"
#include "TestImages.h"

using namespace KZ;
using testing_support::assertionOf;

namespace {

bool canHalve(const Image& image) {
    return image.width() >= 2 && image.height() >= 2;
}

struct ExpectedLayer {
    float zoom;
    Image image;
};

// Halved as often as the zoom allows, below 2 by 2 no more; then skipped over.
ExpectedLayer expectedLayer(const Image& picture, float zoom) {
    Image below = picture, half;
    float base = 1;
    for (; 2 * base < zoom + .03f; base *= 2) {
        if (!canHalve(below)) continue;
        zoomImageTwice(below, half);
        below = half;
    }
    if (std::abs(zoom - base) < .03f) return {base, below};
    if (canHalve(below)) zoomSkipImage(Image(below), below, zoom / base);
    return {zoom, below};
}

TEST(ImagePyramid, LayersOfAllZooms) {
    for (const Size size : {Size(169, 121), Size(64, 9), Size(5, 40), Size(1, 3)})
        for (const bool ref : {false, true}) {
            const GuardedImage picture(size, COLOR_MODE_MONO, 3);
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
    const GuardedImage picture(Size(40, 30), COLOR_MODE_MONO);
    const float rows[][2] = {{1.02f, 1}, {1.05f, 1.05f}, {1.98f, 2},
                             {2.02f, 2}, {2.04f, 2.04f}, {3.96f, 3.96f}};
    for (const auto& row : rows) {
        ImagePyramid pyramid;
        pyramid.init(1, row[0], 2);
        pyramid.computeMonoLayer(picture.image, 0, true);
        EXPECT_EQ(row[1], pyramid.zoomAtLayer(0));
        pyramid.init();
        EXPECT_EQ(row[0], pyramid.zoomAtLayer(0));
        EXPECT_FALSE(pyramid.isComputedLayer(0));
    }
}

TEST(ImagePyramid, SharesOrCopiesThePicture) {
    const GuardedImage first(Size(8, 8), COLOR_MODE_MONO, 0, 1),
        second(Size(8, 8), COLOR_MODE_MONO, 0, 2);
    ImagePyramid pyramid;
    pyramid.init(1, 1, 2);
    pyramid.compute(first.image, true);
    EXPECT_EQ(first.image.data(), pyramid.getMono(0).data());
    pyramid.init();
    pyramid.compute(second.image, false);
    EXPECT_EQ(second.image, pyramid.getMono(0));
    EXPECT_NE(second.image.data(), pyramid.getMono(0).data());
    EXPECT_EQ(byteAt(first.before, 0, 0), byteAt(first.image, 0, 0))
        << "a copy writes into no picture";
    pyramid.freeMemory();
    EXPECT_FALSE(pyramid.isComputedLayer(0));
    EXPECT_EQ("incorrect layer: 1\n",
              assertionOf([&] { pyramid.computeMonoLayer(first.image, 1, true); }));
    EXPECT_EQ("Layer out of bounds: -1\n", assertionOf([&] { pyramid.getMono(-1); }));
    EXPECT_EQ("start must be >= 1\n", assertionOf([&] { pyramid.init(1, .9f, 2); }));
    EXPECT_EQ("step must be > 1, 1\n", assertionOf([&] { pyramid.init(1, 1, 1); }));
}

TEST(ImagePyramid, LayerAtZoom) {
    const struct {
        float start, zoom;
        int layer;
    } rows[] = {{1, .2f, 0}, {1, 1.09f, 0}, {1, 1.1f, 1},  {1, 2.0736f, 4}, {1, 1e9f, 19},
                {2, 1, -4},  {2, 2.4f, 1},  {2, 1.85f, 0}, {1.5f, 1.3f, -1}};
    for (const auto& row : rows) {
        ImagePyramid pyramid;
        pyramid.init(20, row.start, 1.2f);
        EXPECT_EQ(row.layer, pyramid.layerAtZoom(row.zoom)) << row.start << " " << row.zoom;
    }
    // Both layers snap to 2: no layer is nearer than another.
    ImagePyramid flat;
    flat.init(2, 2, 1.01f);
    flat.compute(Image(Size(8, 8), COLOR_MODE_MONO), false);
    EXPECT_EQ(0, flat.layerAtZoom(2));
    EXPECT_EQ(1, flat.layerAtZoom(3));
}

// Inside the rectangle, less a margin for the 2 by 2 means and neighbours, a part is as the whole.
TEST(RmctPyramid, RectangleAgreesWithTheWhole) {
    const GuardedImage picture(Size(200, 150), COLOR_MODE_MONO);
    const Rect rect(40, 32, 168, 144);
    RmctPyramid whole, part;
    for (RmctPyramid* pyramid : {&whole, &part}) {
        pyramid->init(10, 1, 1.2f);
        pyramid->setMono(picture.image);
        pyramid->compute(pyramid == &part ? rect : picture.image.rect());
    }
    for (int layer = 0; layer < 10; ++layer) {
        SCOPED_TRACE(layer);
        const float zoom = whole.zoomAtLayer(layer);
        const Image& rmct = whole.getRmct(layer);
        Image expected;
        computeRmct(whole.getMono(layer), expected);
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
    part.initRelative(7, 4, 1.25f, 1);
    EXPECT_FLOAT_EQ(4 / 1.953125f, part.zoomAtLayer(0));
    EXPECT_FLOAT_EQ(4, part.zoomAtLayer(3));
    part.initRelative(7, 4, 1.25f, 3);
    EXPECT_EQ(3, part.zoomAtLayer(0));
    EXPECT_EQ("image is not created\n", assertionOf([&] { part.setMono(Image()); }));
}

}  // namespace
