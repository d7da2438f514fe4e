#include "KZ_Utils.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>

#include "KZ_FileUtils.h"
#include "KZ_History.h"
#include "KZ_Random.h"
#include "KZ_Statistics.h"
#include "LogCapture.h"

using namespace KZ;
using testing_support::assertionOf;
using testing_support::conditionOf;
using testing_support::failureOf;

TEST(History, KeepsTheLastValues) {
    History<int> history(3);
    for (int value : {1, 2, 3, 4}) history.add(value);
    EXPECT_EQ(3u, history.size());
    EXPECT_EQ(4, history.element(0));
    EXPECT_EQ(2, history.element(2));
    EXPECT_EQ("accessing of element out of range : 3 >= 3\n",
              assertionOf([&] { history.element(3); }));
    const History<int> copy(history);
    history.element(0) = 9;
    EXPECT_EQ(4, copy.element(0));
    EXPECT_EQ("data_", conditionOf([] { History<int>(0).add(1); }));
    EXPECT_EQ("init not called\n\n", assertionOf([] { History<int>().element(0); }));
}

TEST(Statistics, RanksAgreeWithSorting) {
    std::mt19937 random(75);
    for (int size = 1; size < 60; ++size) {
        std::vector<unsigned char> values(static_cast<size_t>(size));
        // Few different values: runs of equal ones are where selection goes wrong.
        for (unsigned char& value : values) value = static_cast<unsigned char>(random() % 9);
        std::vector<unsigned char> sorted = values;
        std::sort(sorted.begin(), sorted.end());
        for (int n = 0; n < size; ++n) {
            std::vector<unsigned char> scratch = values;
            ASSERT_EQ(sorted[size_t(n)], nthElement(scratch, n)) << size << " " << n;
        }
        std::vector<float> floats(values.begin(), values.end());
        for (float q : {-1.0f, 0.0f, 0.3f, 0.5f, 0.99999997f, 1.0f, 2.0f}) {
            const int rank = std::min(std::max(int(float(size) * q), 0), size - 1);
            EXPECT_EQ(sorted[size_t(rank)], quantile(floats, q)) << size << " " << q;
        }
        EXPECT_EQ(sorted[size_t(size / 2)], median(floats));
    }
    std::vector<float> none, withNan = {3, NAN, 1, NAN, 2};
    EXPECT_EQ("Array doesn't exist\n", assertionOf([&] { median(none); }));
    EXPECT_EQ("n >= 0 && n < data_size", conditionOf([&] { nthElement(none, 0); }));
    EXPECT_EQ("no failure", assertionOf([&] { median(withNan); })) << "stays inside the array";
}

TEST(Statistics, Moments) {
    const float values[] = {2, 4, 9};
    EXPECT_FLOAT_EQ(13, variance(values, 3));
    EXPECT_FLOAT_EQ(5, variance(std::vector<Point>{{0, 0}, {2, 4}}));
    // Squares and their sums are beyond 31 bits; what is left is the rounding of floats.
    EXPECT_NEAR(1, variance(std::vector<Point>{{30001, 30000}, {29999, 30000}}), 128);
    Matrix m;
    covariance({{1, 0, 2}, {0, 0, 4}}, {3, 1}, Point3d(0, 0, 4), m);
    const float space[] = {0.75f, 0, -1.5f, 0, 0, 0, -1.5f, 0, 3};
    for (int i = 0; i < 9; ++i) EXPECT_FLOAT_EQ(space[i], m[i]);
}

TEST(Random, RunsTheMinimalStandardGenerator) {
    setRandomSeed(1);
    uint64_t state = 1;
    for (int i = 0; i < 1000; ++i) {
        state = state * 48271 % 2147483647;
        ASSERT_EQ(int(state), KZ::rand());
    }
    double sum = 0, squares = 0;
    for (int i = 0; i < 20000; ++i) {
        const float normal = randomNormal(3, 2);
        sum += normal;
        squares += normal * normal;
        ASSERT_LT(std::fabs(randomUniform(RangeF(-1, 5)) - 2), 3.001f);
    }
    EXPECT_NEAR(3, sum / 20000, 0.1);
    EXPECT_NEAR(13, squares / 20000, 0.5);
    setRandomSeed(0);
    EXPECT_EQ("randomSeed % MODULUS != 0", conditionOf([] { randomNormal(); }));
    for (int i = 0; i < 2; ++i) EXPECT_EQ(0, KZ::rand());
    EXPECT_EQ(2147483647, randomSeed);
    for (long seed : {-1L, -2147483647L - 1, 2147483646L}) {
        setRandomSeed(seed);
        EXPECT_GE(KZ::rand(), 0);
        EXPECT_GT(randomSeed, 0);
    }
}

TEST(Text, ConvertsValues) {
    EXPECT_EQ("COLOR_MODE_BGR", toStr(COLOR_MODE_BGR));
    EXPECT_EQ("007", toStr(7, 3, '0'));
    EXPECT_EQ("  1.25", floatToStr(1.25f, 6, 4));
    EXPECT_EQ("0b00000000 00000000 00000001 00000000", toBits(256));
    EXPECT_EQ("0b11111111", toBits(-1));
    EXPECT_EQ(42, fromStr<int>("42 and more"));
    EXPECT_FLOAT_EQ(-1.5f, fromStr<float>("-1.5"));
    EXPECT_EQ("(ss.fail()) != (true)", conditionOf([] { fromStr<int>("x"); }));
    EXPECT_EQ("fromStr", failureOf([] { fromStr<int>("99999999999"); }).function);
}

TEST(Text, ReadsSizesExactly) {
    EXPECT_EQ(Size(320, -240), fromStr<Size>("Size(320, -240)"));
    const char* const rows[][3] = {{"dummy", "Size(", "dummy"},
                                   {"Size(x, 2)", ", ", ""},
                                   {"Size(1,2)", ", ", ",2"},
                                   {"Size(1, 2", ")", ""}};
    for (const auto& row : rows)
        EXPECT_EQ(std::string("cannot read \"") + row[1] + "\" from \"" + row[2] + "\"\n",
                  assertionOf([&] { fromStr<Size>(row[0]); }));
}

TEST(Text, SplitsReplacesAndSorts) {
    EXPECT_EQ((std::vector<std::string>{"a", "b c"}), split("//a/b c//", '/'));
    EXPECT_TRUE(split("", '/').empty());
    EXPECT_EQ("aaaa", replaceString("aa", "a", "aa")) << "what was put in is not searched";
    EXPECT_EQ("aba", replaceString("aba", "", "x"));
    EXPECT_EQ("\"C:/my dir\"", fixPath("C:\\my dir"));
    EXPECT_EQ("  abc", alignString("abc", 5));
    EXPECT_TRUE(compareStringsNumeric("a\x7f", "a\x80")) << "bytes, not signed characters";
    std::vector<std::string> names = {"f10", "f9", "f1", "e2"};
    numericSort(names);
    EXPECT_EQ((std::vector<std::string>{"e2", "f1", "f9", "f10"}), names);
}

TEST(Files, NamesAndFolders) {
    const char* const rows[][2] = {{"a/b.ring", ".ring"}, {"a.b/c", ""},
                                   {"x.tar.gz", ".gz"},   {"", ""},
                                   {".x", ".x"},          {"a/b.", "."}};
    for (const auto& row : rows) EXPECT_EQ(row[1], getFileExtention(row[0])) << row[0];

    const std::string base = testing::TempDir() + "rhd_folders_test";
    for (int i = 0; i < 2; ++i)  // present folders are no failure
        EXPECT_TRUE(createParentDirectories(base + "/a//b/file"));
    EXPECT_TRUE(std::filesystem::is_directory(base + "/a/b"));
    EXPECT_FALSE(std::filesystem::exists(base + "/a/b/file"));
    std::ofstream(base + "/a/plain") << "x";
    EXPECT_FALSE(createParentDirectories(base + "/a/plain/c/file"));
    std::filesystem::remove_all(base);
}
