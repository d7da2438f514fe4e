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
    const char* const rows[][2] = {{"/top", "0"},
                                   {"camera/empty", ""},
                                   {"camera/name", " a b "},
                                   {"camera/width", "320"},
                                   {"out/path", "x/y"}};
    std::vector<std::string> keys;
    for (const auto& row : rows) {
        EXPECT_EQ(row[1], parser.getKey(row[0])) << row[0];
        keys.push_back(row[0]);
    }
    EXPECT_EQ(keys, parser.getAllKeys());
    EXPECT_FALSE(parser.hasKey("out/width"));
    EXPECT_EQ("no key 'x' in section 'out'\n", assertionOf([&] { parser.getKey("out/x"); }));

    IniParser semicolon(';');
    ASSERT_TRUE(load(semicolon, "key = #1 ; comment"));
    EXPECT_EQ("#1", semicolon.getKey("key"));
}

TEST(Ini, StopsAtBadLines) {
    const std::string noQuote = "[error] Closing quote is missing in the end of value: \"";
    const struct {
        std::string line, before;
    } rows[] = {
        {"[a b]", ""},
        {"[a", ""},
        {"[]", ""},
        {"[a=b]", ""},
        {"= 1", ""},
        {"a-b = 1", ""},
        {"a b = 1", ""},
        {"a = \"1=2\"", ""},
        {"a = 1=2", ""},
        {"x = \"y", noQuote + "y\n"},
        {"x = \"", noQuote + "\n"},
        {"word", "[error] No '=' found in line 'word'\n"},
    };
    for (const auto& row : rows) {
        IniParser parser;
        testing::internal::CaptureStderr();
        EXPECT_FALSE(load(parser, "[s]\nk = v\n" + row.line + "\nlater = 1"));
        const char* what = row.line[0] == '[' ? "section name" : "'key-value' pair";
        EXPECT_EQ(row.before + "[error] Incorrect " + what + ": '" + row.line + "', line 3\n",
                  testing::internal::GetCapturedStderr());
        EXPECT_EQ(std::vector<std::string>{"s/k"}, parser.getAllKeys());
    }
}

TEST(Ini, SavesWhatItCanLoad) {
    IniParser parser;
    EXPECT_TRUE(parser.setKey("b/key", "1"));
    parser.setKey("a", "quoted", "\"x");
    parser.setKey("a", "blanks", " y ");
    parser.setKey("top", "");
    EXPECT_FALSE(parser.setKey("a", "k", "1\n[c]"));
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
    EXPECT_FALSE(loaded.load("/nowhere/x.ini"));
    EXPECT_FALSE(loaded.save("/nowhere/x.ini"));
}
