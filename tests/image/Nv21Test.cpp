#include "KZ_Nv21.h"

#include <gtest/gtest.h>

#include "LogCapture.h"
#include "TestImages.h"

using namespace KZ;
using testing_support::assertionOf;
using testing_support::conditionOf;

namespace {

using Bytes = std::vector<unsigned char>;

struct Unpacker {
    const char* name;
    void (*run)(const unsigned char*, const Size&, Image&);
    ColorMode mode;
    int zoom;
    bool flip;
};

const Unpacker UNPACKERS[] = {
    {"nv21ToMono", nv21ToMono, COLOR_MODE_MONO, 1, false},
    {"nv21ToMonoFlip", nv21ToMonoFlip, COLOR_MODE_MONO, 1, true},
    {"nv21ToYuv", nv21ToYuv, COLOR_MODE_YUV, 1, false},
    {"nv21ToYuvFlip", nv21ToYuvFlip, COLOR_MODE_YUV, 1, true},
    {"nv21ToYuvZoom2", nv21ToYuvZoom2, COLOR_MODE_YUV, 2, false},
    {"nv21ToYuvZoom2Flip", nv21ToYuvZoom2Flip, COLOR_MODE_YUV, 2, true},
};

// The first `channels` of Y, U, V at a position of the full picture.
Bytes pixelOf(const Bytes& nv21, const Size& size, int x, int y, int channels) {
    const size_t pair = size_t(size.area() + y / 2 * size.width + x / 2 * 2);
    const Bytes yuv = {nv21[size_t(y * size.width + x)], nv21[pair + 1], nv21[pair]};
    return Bytes(yuv.begin(), yuv.begin() + channels);
}

}  // namespace

TEST(Nv21, EveryPixelOfEveryForm) {
    for (const Size& size : {Size(2, 2), Size(6, 4), Size(34, 2), Size(66, 6)}) {
        testing_support::GuardedBuffer<unsigned char> buffer(size_t(size.area() * 3 / 2));
        std::mt19937 random(7);
        for (unsigned char& byte : buffer) byte = static_cast<unsigned char>(random());
        const Bytes nv21(buffer.begin(), buffer.end());
        for (const Unpacker& unpacker : UNPACKERS) {
            SCOPED_TRACE(unpacker.name);
            const Size half(size.width / unpacker.zoom, size.height / unpacker.zoom);
            GuardedImage target(half, unpacker.mode, 7, 8);
            const unsigned char* memory = target.image.data();
            unpacker.run(buffer.data(), size, target.image);
            EXPECT_EQ(memory, target.image.data());
            EXPECT_TRUE(target.paddingKept());
            for (int y = 0; y < half.height; ++y)
                for (int x = 0; x < half.width; ++x) {
                    const unsigned char* pixel =
                        target.image.data(unpacker.flip ? half.width - 1 - x : x, y);
                    const int channels = target.image.depth();
                    ASSERT_EQ(pixelOf(nv21, size, x * unpacker.zoom, y * unpacker.zoom, channels),
                              Bytes(pixel, pixel + channels))
                        << size << " " << x << " " << y;
                }
        }
    }
}

TEST(Nv21, RefusesOddSides) {
    const unsigned char data[16] = {};
    for (const Unpacker& unpacker : UNPACKERS) {
        SCOPED_TRACE(unpacker.name);
        Image target;
        const auto runOn = [&](const Size& size) {
            return [&unpacker, &data, &target, size] { unpacker.run(data, size, target); };
        };
        EXPECT_EQ("width must be even: 3\n", assertionOf(runOn(Size(3, 2))));
        EXPECT_EQ("height must be even: 3\n", assertionOf(runOn(Size(2, 3))));
        EXPECT_EQ("height must be even: 5\n", assertionOf(runOn(Size(1, 5))));
        const bool local = unpacker.mode == COLOR_MODE_YUV && unpacker.zoom == 1;
        EXPECT_EQ(local ? "width % 2 == 0" : "size.width % 2 == 0", conditionOf(runOn(Size(1, 2))));
        EXPECT_FALSE(target.isCreated());
    }
}

TEST(Nv21, PackingBringsBackWhatWasUnpacked) {
    const Size size(6, 4);
    Bytes nv21(size_t(size.area() * 3 / 2));
    for (size_t i = 0; i < nv21.size(); ++i) nv21[i] = static_cast<unsigned char>(i * 7);
    Image yuv;
    nv21ToYuv(nv21.data(), size, yuv);
    // An odd last column and row are left out.
    GuardedImage wider(Size(7, 5), COLOR_MODE_YUV, 2, 1);
    Image part;
    part.createRef(wider.image, Rect(size));
    part = yuv;
    SharedArray<unsigned char> packed;
    yuvToNv21(wider.image, packed);
    EXPECT_EQ(nv21, Bytes(packed.get(), packed.get() + nv21.size()));
    EXPECT_EQ("(yuv).colorMode() == (COLOR_MODE_YUV)",
              conditionOf([&] { yuvToNv21(Image(), packed); }));
}

TEST(Nv21, Yuy2) {
    const Image yuv = imageOf<unsigned char>(
        Size(3, 2), COLOR_MODE_YUV,
        {1, 10, 21, 2, 13, 20, 3, 30, 31, 4, 40, 41, 5, 50, 51, 6, 255, 254});
    SharedArray<unsigned char> packed;
    yuvToYuy2(yuv, packed);
    EXPECT_EQ((Bytes{1, 11, 2, 20, 3, 30, 4, 45, 5, 46, 6, 255}),
              Bytes(packed.get(), packed.get() + 12));
}
