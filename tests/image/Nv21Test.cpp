#include "KZ_Nv21.h"

#include "LogCapture.h"
#include "TestImages.h"

using namespace KZ;
using testing_support::assertionOf;

namespace {

using Bytes = std::vector<unsigned char>;

const struct {
    const char* name;
    void (*run)(const unsigned char*, const Size&, Image&);
    ColorMode mode;
    int zoom;
    bool flip;
} UNPACKERS[] = {
    {"nv21ToMono", nv21ToMono, COLOR_MODE_MONO, 1, false},
    {"nv21ToMonoFlip", nv21ToMonoFlip, COLOR_MODE_MONO, 1, true},
    {"nv21ToYuv", nv21ToYuv, COLOR_MODE_YUV, 1, false},
    {"nv21ToYuvFlip", nv21ToYuvFlip, COLOR_MODE_YUV, 1, true},
    {"nv21ToYuvZoom2", nv21ToYuvZoom2, COLOR_MODE_YUV, 2, false},
    {"nv21ToYuvZoom2Flip", nv21ToYuvZoom2Flip, COLOR_MODE_YUV, 2, true},
};

}  // namespace

TEST(Nv21, EveryPixelOfEveryForm) {
    for (const Size& size : {Size(2, 2), Size(6, 4), Size(34, 2), Size(66, 6)}) {
        const GuardedImage nv21(Size(size.width, size.height / 2 * 3), COLOR_MODE_MONO);
        for (const auto& unpacker : UNPACKERS) {
            SCOPED_TRACE(testing::Message() << unpacker.name << size);
            const int zoom = unpacker.zoom, width = size.width / zoom;
            GuardedImage target(Size(width, size.height / zoom), unpacker.mode, 7);
            unpacker.run(nv21.image.data(), size, target.image);
            EXPECT_TRUE(target.paddingKept());
            expectValues(target.image, [&](int x, int y, int c) {
                if (unpacker.flip) x = width - 1 - x;
                if (c == 0) return byteAt(nv21.image, x * zoom, y * zoom);
                return byteAt(nv21.image, x * zoom / 2 * 2 + 2 - c, size.height + y * zoom / 2);
            });
        }
    }
    const unsigned char data[16] = {};
    for (const auto& unpacker : UNPACKERS) {
        Image target;
        EXPECT_EQ("width must be even: 3\n",
                  assertionOf([&] { unpacker.run(data, Size(3, 2), target); }));
        EXPECT_EQ("height must be even: 3\n",
                  assertionOf([&] { unpacker.run(data, Size(2, 3), target); }));
        EXPECT_FALSE(target.isCreated());
    }
}

TEST(Nv21, PackingBringsBackWhatWasUnpacked) {
    const GuardedImage nv21(Size(6, 6), COLOR_MODE_MONO);
    Image yuv;
    nv21ToYuv(nv21.image.data(), Size(6, 4), yuv);
    SharedArray<unsigned char> packed;
    yuvToNv21(yuv, packed);
    EXPECT_EQ(cellsOf<unsigned char>(nv21.image), Bytes(packed.get(), packed.get() + 36));
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
