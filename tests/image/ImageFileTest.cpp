#include "KZ_ImageFile.h"

#include <cmath>
#include <fstream>

#include "LogCapture.h"
#include "TestImages.h"

using namespace KZ;
using testing_support::assertionOf;

namespace {

using Bytes = std::vector<unsigned char>;

std::string pathOf(const std::string& name) {
    return testing::TempDir() + "rhd_image_" + name;
}

}  // namespace

TEST(ImageFile, TextBringsEveryModeBack) {
    for (int mode = COLOR_MODE_MONO; mode < COLOR_MODE_END; ++mode) {
        SCOPED_TRACE(colorModeName(ColorMode(mode)));
        GuardedImage guarded(Size(5, 3), ColorMode(mode), 4);
        if (mode == COLOR_MODE_FLOAT || mode == COLOR_MODE_FLOAT2) {
            const float values[] = {0.1f, -1e-45f, 3.4028235e38f, -0.0f, -INFINITY};
            for (int y = 0; y < 3; ++y)
                for (int i = 0; i < 5 * guarded.image.depth() / 4; ++i)
                    guarded.image.row<float>(y)[i] = values[i % 5];
        }
        guarded.image.save(pathOf("any.txt"));
        Image loaded;
        loaded.load(pathOf("any.txt"));
        EXPECT_EQ(mode, loaded.colorMode());
        EXPECT_EQ(guarded.image.size(), loaded.size());
        EXPECT_EQ(cellsOf<unsigned char>(guarded.image), cellsOf<unsigned char>(loaded));
        // All modes have both binary forms too.
        EXPECT_EQ(3, fromPnm(toPgm(guarded.image)).height());
        EXPECT_EQ(COLOR_MODE_BGR, fromPnm(toPpm(guarded.image)).colorMode());
    }
}

// Byte for byte, as other programs read and write them.
TEST(ImageFile, BytesOfBinaryMaps) {
    EXPECT_EQ("P5\n2 1\n255\nAz",
              toPgm(imageOf<unsigned char>(Size(2, 1), COLOR_MODE_RMCT, {'A', 'z'})));
    EXPECT_EQ("P6\n1 1\n255\nCBA",
              toPpm(imageOf<unsigned char>(Size(1, 1), COLOR_MODE_BGR, {'A', 'B', 'C'})));
    const Image deep = imageOf<uint16_t>(Size(1, 1), COLOR_MODE_MONO16, {0x4142});
    EXPECT_EQ("P5\n1 1\n65535\nAB", toPgm(deep));
    EXPECT_EQ(deep, fromPnm(toPgm(deep)));
    EXPECT_EQ((Bytes{2, 255}), cellsOf<unsigned char>(
                                   fromPnm("P5 # a comment 9 9\n# another\n 2\t1 100\n\x01\x64")));
    EXPECT_EQ((Bytes{'c', 'b', 'a'}), cellsOf<unsigned char>(fromPnm("P6\n1 1 255\nabc and more")));
}

TEST(ImageFile, NumbersAreShownAsStretchedGrey) {
    const struct {
        Image image;
        Bytes shown;
    } rows[] = {
        {imageOf<uint32_t>(Size(3, 1), COLOR_MODE_INTEGRAL, {1000, 2000, 3000}), {0, 128, 255}},
        {imageOf<float>(Size(6, 1), COLOR_MODE_FLOAT, {-1, 4, 0, INFINITY, -INFINITY, NAN}),
         {0, 255, 51, 255, 0, 0}},
        {imageOf<uint16_t>(Size(2, 1), COLOR_MODE_USHORT2, {0, 700, 10, 500}), {0, 255, 255, 0}},
    };
    for (const auto& row : rows) {
        const std::string pgm = toPgm(row.image);
        EXPECT_EQ(row.shown, Bytes(pgm.end() - long(row.shown.size()), pgm.end()));
    }
}

// Without rows, so that width costs nothing.
TEST(ImageFile, WidestPicturesComeBackFromEveryForm) {
    for (int mode = COLOR_MODE_MONO; mode < COLOR_MODE_END; ++mode) {
        const std::string head = std::string("Image ") + colorModeName(ColorMode(mode)) + " ";
        int widest = 0;
        for (int bit = 1 << 25; bit > 0; bit /= 2) {
            const std::string text = head + std::to_string(widest + bit) + " 0\n";
            if (assertionOf([&] { fromText(text); }) == "no failure") widest += bit;
        }
        const Image image = fromText(head + std::to_string(widest) + " 0\n");
        for (const Image& read : {fromPnm(toPgm(image)), fromPnm(toPpm(image))})
            EXPECT_EQ(read.width(), fromText(toText(read)).width()) << head << widest;
    }
    for (const char* pnm : {"P5 16777216 0 255\n", "P5 16777216 0 65535\n", "P6 16777216 0 255\n"})
        EXPECT_EQ(1 << 24, fromText(toText(fromPnm(pnm))).width()) << pnm;
}

TEST(ImageFile, RefusesGarbage) {
    const struct {
        Image (*read)(const std::string&);
        std::string bytes, detail;
    } rows[] = {
        {fromPnm, "P2\n1 1\n255\n7", "not a binary PGM or PPM file\n"},
        {fromPnm, "P5", "number expected in image header\n"},
        {fromPnm, "P5 99999999999999999999 1 255\n", "number out of range in image header\n"},
        {fromPnm, "P5 2 2 0\n1234", "unsupported largest value in image header: 0\n"},
        {fromPnm, "P6 1 1 65535\n123456", "unsupported largest value in image header: 65535\n"},
        {fromPnm, "P5 2 2 256\n1234567", "image file ends too early\n"},
        {fromPnm, "P6 16777216 16777216 255\n123", "image file ends too early\n"},
        {fromText, "Picture", "not an image text: Picture\n"},
        {fromText, "Image COLOR_MODE_UNDEFINED 1 1",
         "unknown color mode in image text: COLOR_MODE_UNDEFINED\n"},
        {fromText, "Image COLOR_MODE_MONO 1 1\n256", "number out of range in image text: 256\n"},
        {fromText, "Image COLOR_MODE_FLOAT 1 1\n1.5x", "not a number in image text: 1.5x\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.detail, assertionOf([&] { row.read(row.bytes); })) << row.bytes;
}

TEST(ImageFile, RefusedPaths) {
    Image image(Size(2, 1), COLOR_MODE_MONO);
    const std::string missing = pathOf("no_such_folder/a.pgm");
    EXPECT_EQ("unknown image file extension: a.png\n", assertionOf([&] { image.save("a.png"); }));
    EXPECT_EQ("cannot write image file " + missing + "\n",
              assertionOf([&] { image.save(missing); }));
    EXPECT_EQ("cannot read image file " + missing + "\n",
              assertionOf([&] { image.load(missing); }));
    std::ofstream(pathOf("garbage.pgm")) << "garbage";
    EXPECT_NE("no failure", assertionOf([&] { image.load(pathOf("garbage.pgm")); }));
    EXPECT_EQ(Size(2, 1), image.size());
}
