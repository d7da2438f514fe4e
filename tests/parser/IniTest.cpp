#include "KZ_IniParser.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "LogCapture.h"

using KZ::IniParser;
using testing_support::assertionOf;

namespace {

bool load(IniParser& parser, const std::string& text) {
    std::istringstream stream(text);
    return parser.load(stream);
}

}  // namespace

TEST(Ini, ReadsSectionsKeysAndComments) {
    IniParser parser;
    ASSERT_TRUE(load(parser,
                     "top = 0\n# a comment\n\n[camera]\r\n  width = 320 # pixels\n name=\" a b \"\n"
                     "empty =\n[out]\npath = x/y"));
    const char* const rows[][2] = {
        {"top", "0"},         {"/top", "0"},      {"camera/width", "320"}, {"camera/name", " a b "},
        {"camera/empty", ""}, {"out/path", "x/y"}};
    for (const auto& row : rows) EXPECT_EQ(row[1], parser.getKey(row[0])) << row[0];
    EXPECT_EQ("320", parser.getKey("camera", "width"));
    EXPECT_FALSE(parser.hasKey("out/width"));
    EXPECT_FALSE(parser.hasKey("none/width"));
    EXPECT_EQ((std::vector<std::string>{"/top", "camera/empty", "camera/name", "camera/width",
                                        "out/path"}),
              parser.getAllKeys());
    EXPECT_EQ("no key 'x' in section 'out'\n", assertionOf([&] { parser.getKey("out/x"); }));
    parser.reset();
    EXPECT_TRUE(parser.getAllKeys().empty());

    IniParser semicolon(';');
    ASSERT_TRUE(load(semicolon, "key = #1 ; comment"));
    EXPECT_EQ("#1", semicolon.getKey("key"));
}

TEST(Ini, StopsAtBadLines) {
    const char* const rows[][2] = {
        {"[a b]", "[error] Incorrect section name: '[a b]', line 3\n"},
        {"[a", "[error] Incorrect section name: '[a', line 3\n"},
        {"[", "[error] Incorrect section name: '[', line 3\n"},
        {"[]", "[error] Incorrect section name: '[]', line 3\n"},
        {"[a=b]", "[error] Incorrect section name: '[a=b]', line 3\n"},
        {"word",
         "[error] No '=' found in line 'word'\n[error] Incorrect 'key-value' pair: 'word', line "
         "3\n"},
        {"x = \"y",
         "[error] Closing quote is missing in the end of value: \"y\n"
         "[error] Incorrect 'key-value' pair: 'x = \"y', line 3\n"},
        {"x = \"",
         "[error] Closing quote is missing in the end of value: \"\n"
         "[error] Incorrect 'key-value' pair: 'x = \"', line 3\n"},
        {"= 1", "[error] Incorrect 'key-value' pair: '= 1', line 3\n"},
        {"a-b = 1", "[error] Incorrect 'key-value' pair: 'a-b = 1', line 3\n"},
        {"a b = 1", "[error] Incorrect 'key-value' pair: 'a b = 1', line 3\n"},
        {"a = 1=2", "[error] Incorrect 'key-value' pair: 'a = 1=2', line 3\n"},
        {"a = \"1=2\"", "[error] Incorrect 'key-value' pair: 'a = \"1=2\"', line 3\n"},
    };
    for (const auto& row : rows) {
        IniParser parser;
        testing::internal::CaptureStderr();
        const bool loaded = load(parser, "[s]\nk = v\n" + std::string(row[0]) + "\nlater = 1");
        EXPECT_EQ(row[1], testing::internal::GetCapturedStderr());
        EXPECT_FALSE(loaded) << row[0];
        EXPECT_TRUE(parser.hasKey("s/k"));
        EXPECT_FALSE(parser.hasKey("s/later"));
    }
}

TEST(Ini, SavesWhatItCanLoad) {
    IniParser parser;
    EXPECT_TRUE(parser.setKey("b/key", "1"));
    EXPECT_TRUE(parser.setKey("a", "quoted", "\"x"));
    EXPECT_TRUE(parser.setKey("a", "blanks", " y "));
    EXPECT_TRUE(parser.setKey("top", ""));
    EXPECT_FALSE(parser.setKey("a", "k", "1=2"));
    EXPECT_FALSE(parser.setKey("a", "k", "1\n[c]"));
    EXPECT_FALSE(parser.setKey("a", "", "1"));
    EXPECT_FALSE(parser.setKey("a", "k[", "1"));
    std::ostringstream saved;
    EXPECT_TRUE(parser.save(saved));
    EXPECT_EQ("  top = \n\n[a]\n  blanks = \" y \"\n  quoted = \"\"x\"\n\n[b]\n  key = 1\n",
              saved.str());

    const std::string path = testing::TempDir() + "rhd_ini_test.ini";
    EXPECT_TRUE(parser.save(path));
    IniParser loaded;
    EXPECT_TRUE(loaded.load(path));
    std::remove(path.c_str());
    EXPECT_EQ(parser.getAllKeys(), loaded.getAllKeys());
    for (const std::string& key : parser.getAllKeys())
        EXPECT_EQ(parser.getKey(key), loaded.getKey(key)) << key;

    testing::internal::CaptureStderr();
    EXPECT_FALSE(loaded.load("/nowhere/x.ini"));
    EXPECT_EQ("[error] Cannot open file '/nowhere/x.ini'\n",
              testing::internal::GetCapturedStderr());
    EXPECT_FALSE(loaded.save("/nowhere/x.ini"));
}
