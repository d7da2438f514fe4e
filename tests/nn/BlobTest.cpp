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
    blob.init(1, 10, 2, 3);
    blob.init(1, 10, 3, 2);
    EXPECT_EQ(memory, blob.data());
    EXPECT_EQ(memory + ((0 * 10 + 7) * 3 + 2) * 2 + 1, blob.data(0, 7, 2, 1));
    EXPECT_EQ(47, *other.data(0, 7, 1, 2));
    blob.data()[0] = 5;
    EXPECT_EQ(5, other.data()[0]);
    blob.init(2, 10, 3, 2);
    EXPECT_NE(memory, blob.data());
    EXPECT_EQ(47, *other.data(0, 7, 1, 2));
    blob.reset();
    EXPECT_EQ("0 x 0 x 0 x 0", blob.shape());
    EXPECT_EQ(nullptr, blob.data());
    const Blob& same = other;
    const Assertion failure = failureOf([&] { other = same; });
    EXPECT_EQ("this != &blob", failure.condition);
    EXPECT_EQ("this == &blob\n", failure.detail);
}

// Also where 32 bits of the product are 0.
TEST(Blob, RefusesTooManyElements) {
    const int shapes[][4] = {{1 << 30, 1, 1, 1},
                             {65536, 65536, 1, 1},
                             {1, 1, 1, -4},
                             {2147483647, 2147483647, 2147483647, 2147483647}};
    for (const auto& s : shapes) EXPECT_THROW(Blob(s[0], s[1], s[2], s[3]), std::bad_alloc) << s[0];
    EXPECT_EQ(0, Blob(1 << 30, 1 << 30, 0, 1).height());
}

TEST(Blob, WrapsATableThatItNeverFrees) {
    static const float table[] = {1, -2, 3};
    Blob blob;
    for (int i = 0; i < 3; ++i) blob.init(3, 1, 1, 1, table);
    EXPECT_EQ(table, blob.data());
    EXPECT_EQ((Floats{1, -2, 3}), valuesOf(blob));
    // What is read must not be written through to the table.
    std::stringstream stream;
    KZ::ArchiveO out(stream);
    out& blobOf(3, 1, 1, 1, {7, 8, 9});
    KZ::ArchiveI archive(stream);
    archive& blob;
    EXPECT_EQ(1, table[0]);
    EXPECT_EQ((Floats{7, 8, 9}), valuesOf(blob));
}

TEST(Blob, SmallValuesAndEquality) {
    Blob smaller = blobOf(1, 5, 1, 1, {-3, 0.4f, 0.6f, -0.4f, 0.5f}),
         small = blobOf(1, 5, 1, 1, smaller);
    smaller.zeroSmallerValues(0.5f);
    small.zeroSmallValues(0.5f);
    EXPECT_EQ((Floats{0, 0, 0.6f, 0, 0.5f}), valuesOf(smaller));
    EXPECT_EQ((Floats{-3, 0, 0.6f, 0, 0.5f}), valuesOf(small));

    EXPECT_TRUE(blobOf(1, 2, 1, 1, {0, 1}) == blobOf(1, 2, 1, 1, {0, 1}));
    EXPECT_FALSE(blobOf(1, 2, 1, 1, {0, 1}) == blobOf(1, 2, 1, 1, {-0.0f, 1}));
    EXPECT_FALSE(blobOf(1, 2, 1, 1, {0, 1}) == blobOf(2, 1, 1, 1, {0, 1}));
}

TEST(Blob, ConvertsImages) {
    KZ::Image wide(KZ::Size(4, 3), KZ::COLOR_MODE_BGR), view;
    for (int i = 0; i < 36; ++i) wide.data()[i] = static_cast<unsigned char>(250 - i);
    wide.data(3, 2)[2] = 255;
    view.createRef(wide, KZ::Rect(1, 1, 4, 3));
    Blob blob(2, 3, 2, 3);
    blob.setValue(-1);
    Blob::convert(view, blob, 1, 2);
    EXPECT_EQ(-1, *blob.data(0, 2, 1, 2));
    EXPECT_EQ(0.99609375f, *blob.data(1, 2, 1, 2));
    EXPECT_EQ((250 - (2 * 12 + 3)) / 256.0f, *blob.data(1, 0, 1, 0));
    EXPECT_EQ("2 <= 2\n", assertionOf([&] { Blob::convert(view, blob, 2, 2); }));
    EXPECT_EQ("(num) >= (0)", conditionOf([&] { Blob::convert(view, blob, -1, 2); }));

    const Blob shown = blobOf(1, 2, 1, 5, {0, 0, 0, 0, 0, -0.12f, -6.5f, 6.34f, 6.36f, 3e38f});
    KZ::Image image;
    Blob::convert(shown, image, 0, 1, KZ::COLOR_MODE_MONO);
    EXPECT_EQ(std::vector<unsigned char>({125, 0, 254, 255, 255}),
              std::vector<unsigned char>(image.data(), image.data() + 5));
    Blob::convert(shown, image, 0, 1, KZ::COLOR_MODE_FLOAT);
    EXPECT_EQ(6.36f, image.row<float>(0)[3]);
    EXPECT_EQ("2 >= 2\n",
              assertionOf([&] { Blob::convert(shown, image, 0, 2, KZ::COLOR_MODE_MONO); }));
    EXPECT_EQ("Not implemented COLOR_MODE_BGR\n",
              assertionOf([&] { Blob::convert(shown, image, 0, 1, KZ::COLOR_MODE_BGR); }));

    Blob column;
    Blob::convert({3, 4}, column);
    EXPECT_EQ("1 x 2 x 1 x 1", column.shape());
    EXPECT_EQ((Floats{3, 4}), valuesOf(column));
}

TEST(Blob, CountsItsDistribution) {
    LogCapture log;
    blobOf(1, 6, 1, 1, {0.25f, -0.25f, 0.249f, 0, 1.1f, 1e30f}).printDistribution(2);
    EXPECT_EQ("distribution = map[5](-1 = 1, 0 = 2, 1 = 1, 2 = 1, 2147483647 = 1)", log.text());
    EXPECT_EQ(4, log.records().at(0).priority);
}

TEST(Blob, TextForm) {
    const std::string text =
        "Blob\nnum= 2\nchannels= 1\nwidth= 2\nheight= 1\nn= 0\n\tc= 0\n\t\t1 -2.5 \n"
        "n= 1\n\tc= 0\n\t\t3 4 \n";
    std::stringstream stream;
    stream << blobOf(2, 1, 1, 2, {1, -2.5f, 3, 4});
    EXPECT_EQ(text, stream.str());
    Blob back;
    stream >> back;
    EXPECT_TRUE(blobOf(2, 1, 1, 2, {1, -2.5f, 3, 4}) == back);

    const auto failing = [&](const char* from, const char* to) {
        std::string bad = text;
        bad.replace(bad.find(from), std::strlen(from), to);
        std::istringstream input(bad);
        return conditionOf([&] { input >> back; });
    };
    const std::string read = ") == buffer) && (std::istream&)(stream)";
    EXPECT_EQ("(std::string(\"Blob\"" + read, failing("Blob", "Blub"));
    EXPECT_EQ("(std::string(\"width=\"" + read, failing("width", "wide"));
    EXPECT_EQ("(bn) == (n)", failing("n= 1", "n= 2"));
    EXPECT_EQ("(bc) == (c)", failing("c= 0", "c= 7"));
    EXPECT_EQ("stream_", failing("num= 2", "num= 2000000000"));
    EXPECT_EQ("(side) >= (0)", failing("num= 2", "num= -2"));
    EXPECT_EQ("stream", failing("3 4", "3"));
    std::istringstream input("Blob\nsum= 2\n");
    EXPECT_EQ("cannot read \"num=\" from \"sum=\"\n", assertionOf([&] { input >> back; }));
}

TEST(Blob, BinaryForm) {
    std::stringstream stream;
    KZ::ArchiveO out(stream);
    out& blobOf(1, 2, 1, 2, {1, 1e-11f, -1e-11f, 1.1e-10f});
    const int head[] = {1, 2, 1, 2};
    ASSERT_EQ(32u, stream.str().size());
    EXPECT_EQ(0, std::memcmp(head, stream.str().data(), 16));
    Blob back;
    KZ::ArchiveI in(stream);
    in& back;
    EXPECT_TRUE(blobOf(1, 2, 1, 2, {1, 0, 0, 1.1e-10f}) == back);
    // No elements, but sides that overflow where they are multiplied.
    std::stringstream empty;
    KZ::ArchiveO(empty).write("\0\0\0\0\0\0\1\0\0\0\1\0\1\0\0\0", 16);
    KZ::ArchiveI archive(empty);
    EXPECT_NE("no failure", conditionOf([&] { archive& back; }));
}

TEST(Blob, SourceForm) {
    std::ostringstream stream;
    blobOf(1, 1, 3, 4, {1, -0.5f, 1e-8f, 0.1f, 2e20f, 6, 7, 8, 9, 10, 0.123456789f, 12})
        .saveToCpp(stream, "w");
    EXPECT_EQ(
        "KZ::Blob& w()\n{\n    // num = 1\n    // channels = 1\n    // width = 4\n"
        "    // height = 3\n    static const float w_data[] = \n    {\n"
        "       1.f, -0.5f, 1e-08f, 0.1f, 2e+20f, 6.f, 7.f, 8.f, 9.f, 10.f, \n"
        "       0.123456791f, 12.f    };\n    static KZ::Blob blob;\n"
        "    blob.init(1, 1, 3, 4, w_data);\n    return blob;\n}\n\n",
        stream.str());
}
