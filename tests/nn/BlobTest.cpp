#include <gtest/gtest.h>

#include <new>
#include <sstream>

#include "LogCapture.h"
#include "NnSupport.h"

using namespace testing_support;
using KZ::Blob;

TEST(Blob, InitKeepsMemoryOfAnEqualCount) {
    Blob blob(1, 10, 2, 3), other = blob;
    for (int i = 0; i < 60; ++i) blob.data()[i] = static_cast<float>(i);
    float* const memory = blob.data();
    blob.init(1, 10, 3, 2);
    EXPECT_EQ(memory + ((0 * 10 + 7) * 3 + 2) * 2 + 1, blob.data(0, 7, 2, 1));
    EXPECT_EQ(47, *other.data(0, 7, 1, 2));
    blob.data()[0] = 5;
    EXPECT_EQ(5, other.data()[0]);
    blob.init(2, 10, 3, 2);
    EXPECT_NE(memory, blob.data());
    EXPECT_EQ(47, *other.data(0, 7, 1, 2));
}

// Also where 32 bits of the product are 0.
TEST(Blob, RefusesTooManyElements) {
    const int most = 2147483647;
    const int shapes[][4] = {
        {1 << 30, 1, 1, 1}, {65536, 65536, 1, 1}, {1, 1, 1, -4}, {most, most, most, most}};
    for (const auto& s : shapes) EXPECT_THROW(Blob(s[0], s[1], s[2], s[3]), std::bad_alloc) << s[0];
    EXPECT_EQ(0, Blob(1 << 30, 1 << 30, 0, 1).height());
}

TEST(Blob, WrapsATableThatItNeverWrites) {
    static const float table[] = {1, -2, 3};
    Blob blob;
    for (int i = 0; i < 3; ++i) blob.init(3, 1, 1, 1, table);
    EXPECT_EQ(table, blob.data());
    std::stringstream stream;
    KZ::ArchiveO out(stream);
    out& blobOf(3, 1, 1, 1, {1e-9f, 1.1e-10f, -1e-11f});
    KZ::ArchiveI archive(stream);
    archive& blob;
    EXPECT_EQ(1, table[0]);
    EXPECT_EQ((Floats{1e-9f, 1.1e-10f, 0}), valuesOf(blob)) << "tiny weights become 0";
}

TEST(Blob, ConvertsImages) {
    KZ::Image wide = noise(KZ::Size(4, 3), KZ::COLOR_MODE_BGR, 5), view, image;
    view.createRef(wide, KZ::Rect(1, 1, 4, 3));
    Blob blob(2, 3, 2, 3);
    blob.setValue(-1);
    Blob::convert(view, blob, 1, 2);
    for (int i = 0; i < 36; ++i) {
        const int x = i % 3, y = i / 3 % 2, c = i / 6 % 3, n = i / 18;
        EXPECT_EQ(n ? view.data(x, y)[c] / 256.0f : -1, *blob.data(n, c, y, x));
    }
    EXPECT_EQ("2 <= 2\n", assertionOf([&] { Blob::convert(view, blob, 2, 2); }));
    const Blob shown = blobOf(1, 2, 1, 5, {0, 0, 0, 0, 0, -0.12f, -6.5f, 6.34f, 6.36f, 3e38f});
    Blob::convert(shown, image, 0, 1, KZ::COLOR_MODE_MONO);
    EXPECT_EQ(std::vector<unsigned char>({125, 0, 254, 255, 255}),
              std::vector<unsigned char>(image.data(), image.data() + 5));
    EXPECT_EQ("2 >= 2\n",
              assertionOf([&] { Blob::convert(shown, image, 0, 2, KZ::COLOR_MODE_MONO); }));
}

TEST(Blob, TextForm) {
    std::stringstream stream;
    stream << blobOf(2, 1, 1, 2, {1, -2.5f, 3, 4});
    const std::string text = stream.str();
    EXPECT_EQ(0u, text.find("Blob\nnum= 2\nchannels= 1\nwidth= 2\nheight= 1\nn= 0\n\tc= 0\n"));
    Blob back;
    stream >> back;
    EXPECT_TRUE(blobOf(2, 1, 1, 2, {1, -2.5f, 3, 4}) == back);
    for (size_t size = 0; size + 3 < text.size(); ++size) {
        std::istringstream cut(text.substr(0, size));
        EXPECT_NE("no failure", conditionOf([&] { cut >> back; })) << size;
    }
}
