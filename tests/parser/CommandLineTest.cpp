#include "KZ_CommandLineParser.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "KZ_Utils.h"
#include "LogCapture.h"

using KZ::CommandLineParser;
using testing_support::assertionOf;
using testing_support::conditionOf;
using testing_support::LogCapture;

namespace {

using Type = CommandLineParser::ValueType;

CommandLineParser palmParser() {
    CommandLineParser parser("Usage: palm [options]");
    parser.add("-d", "--min-distance", "30", false, Type::INT, "nearest\nin centimetres");
    parser.add("", "--size", "Size(320, 240)", false, Type::STRING, "");
    parser.add("-f", "--factor", "1.5", false, Type::FLOAT, "scale");
    parser.add("", "--flip", "false", false, Type::BOOL, "mirror");
    parser.add("-v", "--verbose", "", false, Type::NONE, "talk");
    return parser;
}

std::string valueOf(const std::string& text, const std::string& key) {
    CommandLineParser parser = palmParser();
    parser.parse(text);
    return parser.getString(key);
}

}  // namespace

TEST(CommandLine, ValuesOfEveryForm) {
    const char* const rows[][3] = {
        {" --min-distance=\"40\" --flip=\"true\"", "--min-distance", "40"},
        {"-d 55", "-d", "55"},
        {"-d 1 --min-distance=2 -d 3", "-d", "3"},
        {"--size=\"Size(640, 480)\" -v", "--size", "Size(640, 480)"},
        {"--size={Size(1,   2)}", "--size", "Size(1, 2)"},
        {"--size=\" a b \"", "--size", " a b "},
        {"--size= -v", "--size", ""},
        {"--size=a\"b -v", "--size", "a\"b"},
        {"--size=\"k=v\"", "--size", "k=v"},
        {"--size={a {b} -d 5", "--size", "a {b"},
        {"-d \"7\"", "--min-distance", "7"},
        {"-d 1 # -d 2\n--size=#x", "--size", "#x"},
        {"-d 1 # -d 2\n--size=#x", "-d", "1"},
    };
    for (const auto& row : rows) EXPECT_EQ(row[2], valueOf(row[0], row[1])) << row[0];
}

TEST(CommandLine, ValuesStayUntilReset) {
    CommandLineParser parser = palmParser();
    const char* const argv[] = {"program", "-v", "--size={a", "b}"};
    parser.parse(4, const_cast<const char**>(argv));
    EXPECT_TRUE(parser.isSet("--verbose"));
    EXPECT_FALSE(parser.isSet("--flip"));
    EXPECT_EQ("-v --size={a b}", parser.getArgsString());
    parser.parse(std::string("-d 4"));
    EXPECT_TRUE(parser.isSet("-v")) << "values stay over calls";
    EXPECT_EQ("-d 4", parser.getAllArgsStr());
    parser.reset();
    EXPECT_FALSE(parser.isSet("-v"));
    EXPECT_EQ(30, parser.getInt("-d"));
    parser.setDefaultValue("--min-distance", "31");
    EXPECT_EQ(31, parser.getInt("-d"));
    EXPECT_TRUE(parser.hasKey("--help"));
    EXPECT_FALSE(parser.hasKey("--missing"));
}

TEST(CommandLine, Refusals) {
    const char* const rows[][2] = {
        {"--size=\"a b", "Closing '\"' isn't found: --size=\"a b\n"},
        {"--size=\"", "Closing '\"' isn't found: --size=\"\n"},
        {"--size={a b", "Closing } isn't found: --size={a b\n"},
        {"-d=4", "key '-d' is not a long key\n"},
        {"=", "key '' is not a long key\n"},
        {"--flip", "'--flip' is a long key. Please, use '--long-key=value' syntax\n"},
        {"-v -d", "key '-d' has less than required count of arguments\n"},
        {"-v -i", "no argument to -i\n"},
        {"-i /nowhere/x", "can't open file /nowhere/x\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row[1], assertionOf([&] { palmParser().parse(std::string(row[0])); }));
    const std::vector<std::string> empty = {"-v", ""}, quote = {"--size= \"a"};
    EXPECT_EQ("empty arg\n", assertionOf([&] { palmParser().parse(empty); }));
    EXPECT_EQ("no closing \" in \"a\n", assertionOf([&] { palmParser().parse(quote); }));
    EXPECT_EQ("Cannot read file '/nowhere/x\n",
              assertionOf([] { palmParser().import("/nowhere/x"); }));
    const CommandLineParser parser = palmParser();
    EXPECT_EQ("unknown key '--no\n", assertionOf([&] { parser.getString("--no"); }));
    EXPECT_EQ("key --no doesn't exists\n", assertionOf([&] { parser.isSet("--no"); }));
}

TEST(CommandLine, UnknownKeysCostOneRecordEach) {
    LogCapture log;
    CommandLineParser parser = palmParser();
    parser.parse(std::string("--unknown=1 stray --other -d 9"));
    EXPECT_EQ(9, parser.getInt("-d"));
    EXPECT_EQ(3u, log.records().size());
    EXPECT_EQ("unrecognized key --unknownUnrecognized key: strayUnrecognized key: --other",
              log.text());
}

// In a process of its own, since the switch cannot be taken back.
TEST(CommandLineDeathTest, SuppressedWarningsAreSilent) {
    EXPECT_EXIT(
        {
            LogCapture log;
            CommandLineParser::suppressWarnings();
            CommandLineParser parser = palmParser();
            parser.parse(std::string("--unknown=1 stray -d 9"));
            std::_Exit(parser.getInt("-d") == 9 ? static_cast<int>(log.records().size()) : 99);
        },
        testing::ExitedWithCode(0), "");
}

TEST(CommandLine, TypedGetters) {
    const char* const notInt = "value for --size: type of '%' is not Int\n";
    const char* const rows[][3] = {
        {"12", "no failure", "no failure"},
        {"-12", "no failure", "no failure"},
        {"1.5", notInt, "no failure"},
        {"1-2", notInt, "value for --size: type of '%' is not Float\n"},
        {"99999999999", "1 == 1\n", "no failure"},
        {"-", "1 == 1\n", "1 == 1\n"},
    };
    CommandLineParser parser = palmParser();
    for (const auto& row : rows) {
        parser.parse(std::string("--size=") + row[0]);
        const auto expected = [&](const char* text) {
            return KZ::replaceString(text, "%", row[0]);
        };
        EXPECT_EQ(expected(row[1]), assertionOf([&] { parser.getInt("--size"); }));
        EXPECT_EQ(expected(row[2]), assertionOf([&] { parser.getFloat("--size"); }));
    }
    EXPECT_FLOAT_EQ(1.5f, parser.getFloat("-f"));
    EXPECT_EQ(30u, parser.getSize_t("-d"));
    parser.parse(std::string("-d -4"));
    EXPECT_EQ("value for -d: type of '-4' is not Size_t\n",
              assertionOf([&] { parser.getSize_t("-d"); }));
    const std::pair<const char*, bool> words[] = {{"TRUE", true}, {"yes", true}, {"no", false},
                                                  {"0", false},   {"1", true},   {"false", false}};
    for (const auto& word : words) {
        parser.parse(std::string("--flip=") + word.first);
        EXPECT_EQ(word.second, parser.getBool("--flip")) << word.first;
    }
    parser.parse(std::string("--flip=maybe"));
    EXPECT_EQ("convert error for the key '--flip', value 'maybe\n",
              assertionOf([&] { parser.getBool("--flip"); }));
}

TEST(CommandLine, RequiredKeysAndUsage) {
    CommandLineParser parser("Usage: palm");
    parser.add("-o", "--out", "", true, Type::STRING, "where\nto");
    parser.add("-n", "", "", true, Type::INT, "");
    EXPECT_EQ("some required key(s) missed: --out -n\n",
              assertionOf([&] { parser.parse(std::string("")); }));
    EXPECT_EQ("no failure", assertionOf([&] { parser.parse(std::string("-n 1 --out=x")); }));
    std::ostringstream usage;
    parser.printUsage(usage);
    EXPECT_EQ(
        "Usage: palm\n"
        "-h, --help\n   [Parser] Print help\n \n"
        "-i, --import=STRING\n   [Parser] Load command line parameters from file\n \n"
        "-o, --out=STRING    [required]\n   where\n   to\n \n"
        "-n=INT    [required]\n \n",
        usage.str());
}

TEST(CommandLine, ImportsStandInTheirPlace) {
    const std::string path = testing::TempDir() + "rhd_import", inner = path + "_inner";
    std::ofstream(inner) << "--size=\"x  y\"\n# -d 3\n-d 4 -v";
    std::ofstream(path) << "-f 2 --import=\"" << inner << "\"";
    CommandLineParser parser = palmParser();
    parser.parse("-d 1 -i " + path + " -f 9");
    EXPECT_EQ("-d 1 -f 2 --size=\"x y\" -d 4 -v -f 9", parser.getAllArgsStr());
    EXPECT_EQ("-d 1 -i " + path + " -f 9", parser.getArgsString());
    EXPECT_EQ("x y", parser.getString("--size"));
    EXPECT_FLOAT_EQ(9, parser.getFloat("-f"));
    std::ofstream(path) << "-i " << path;
    EXPECT_EQ("depth < DEEPEST_IMPORT", conditionOf([&] { parser.import(path); }));
    std::remove(path.c_str());
    std::remove(inner.c_str());
}
