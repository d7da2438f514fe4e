#include "KZ_CommandLineParser.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "LogCapture.h"

using KZ::CommandLineParser;
using testing_support::assertionOf;
using testing_support::conditionOf;
using testing_support::failureOf;
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

// A file that lives as long as the object.
struct TemporaryFile {
    std::string path;
    TemporaryFile(const std::string& name, const std::string& text)
        : path(testing::TempDir() + name) {
        std::ofstream(path) << text;
    }
    ~TemporaryFile() { std::remove(path.c_str()); }
};

}  // namespace

TEST(CommandLine, ValuesOfEveryForm) {
    const char* const rows[][3] = {
        {" --min-distance=\"40\" --flip=\"true\"", "--min-distance", "40"},
        {"", "--min-distance", "30"},
        {"-d 55", "--min-distance", "55"},
        {"-d 55", "-d", "55"},
        {"-d 1 --min-distance=2 -d 3", "-d", "3"},
        {"--size=\"Size(640, 480)\" -v", "--size", "Size(640, 480)"},
        {"--size={Size(1,   2)}", "--size", "Size(1, 2)"},
        {"--size=\" a b \"", "--size", " a b "},
        {"--size=\"\" -v", "--size", ""},
        {"--size= -v", "--size", ""},
        {"--size=a\"b -v", "--size", "a\"b"},
        {"--size=\"k=v\"", "--size", "k=v"},
        {"--size={a {b} -d 5", "--size", "a {b"},
        {"--size=\"{x}\"", "--size", "{x}"},
        {"-d \"7\"", "--min-distance", "7"},
        {"-d 1 # -d 2\n--size=#x", "--size", "#x"},
        {"-d 1 # -d 2\n--size=#x", "-d", "1"},
    };
    for (const auto& row : rows) EXPECT_EQ(row[2], valueOf(row[0], row[1])) << row[0];
}

TEST(CommandLine, SetFlagsAndArguments) {
    CommandLineParser parser = palmParser();
    const char* const argv[] = {"program", "-v", "--size={a", "b}"};
    parser.parse(4, const_cast<const char**>(argv));
    EXPECT_TRUE(parser.isSet("--verbose"));
    EXPECT_TRUE(parser.isSet("-v"));
    EXPECT_FALSE(parser.isSet("--flip"));
    EXPECT_EQ("-v --size={a b}", parser.getArgsString());
    EXPECT_EQ(2u, parser.getAllArgs().size());
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
    const char* const rows[][3] = {
        {"--size=\"a b", "arg[arg.size() - 1] == '\"'", "Closing '\"' isn't found: --size=\"a b\n"},
        {"--size=\"", "arg[arg.size() - 1] == '\"'", "Closing '\"' isn't found: --size=\"\n"},
        {"--size={a b", "arg[arg.size() - 1] == '}'", "Closing } isn't found: --size={a b\n"},
        {"\"", "arg[arg.size() - 1] == '\"'", "Closing '\"' isn't found: \"\n"},
        {"-d=4", "checkLongKey(key)", "key '-d' is not a long key\n"},
        {"=", "checkLongKey(key)", "key '' is not a long key\n"},
        {"--x=4", "checkLongKey(key)", "key '--x' is not a long key\n"},
        {"--flip", "!((keysInfo_[index].longKey == *arg) && (keysInfo_[index].argumentsCount > 0))",
         "'--flip' is a long key. Please, use '--long-key=value' syntax\n"},
        {"-v -d", "!(argc < keysInfo_[currentKeyIndex].argumentsCount)",
         "key '-d' has less than required count of arguments\n"},
        {"-v -i", "it != args.end()", "no argument to -i\n"},
        {"-i /nowhere/x", "file.is_open()", "can't open file /nowhere/x\n"},
    };
    for (const auto& row : rows) {
        const auto failure = failureOf([&] { palmParser().parse(std::string(row[0])); });
        EXPECT_EQ(row[1], failure.condition) << row[0];
        EXPECT_EQ(row[2], failure.detail);
    }
    EXPECT_EQ("empty arg\n", assertionOf([] {
                  palmParser().parse(std::vector<std::string>{"-v", ""});
              }));
    EXPECT_EQ("Cannot read file '/nowhere/x\n",
              assertionOf([] { palmParser().import("/nowhere/x"); }));
    EXPECT_EQ("no closing \" in \"a\n",
              assertionOf([] { palmParser().parse(std::vector<std::string>{"--size= \"a"}); }));
    EXPECT_EQ("no closing } in {a\n",
              assertionOf([] { palmParser().parse(std::vector<std::string>{"--size= {a"}); }));
}

TEST(CommandLine, UnknownKeysCostOneRecordEach) {
    LogCapture log;
    CommandLineParser parser = palmParser();
    parser.parse(std::string("--unknown=1 stray --other -d 9"));
    EXPECT_EQ(9, parser.getInt("-d"));
    ASSERT_EQ(3u, log.records().size());
    EXPECT_EQ("unrecognized key --unknown", log.records()[0].text);
    EXPECT_EQ("Unrecognized key: stray", log.records()[1].text);
    EXPECT_EQ("Unrecognized key: --other", log.records()[2].text);
    EXPECT_EQ(6, log.records()[2].priority);
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
    EXPECT_TRUE(CommandLineParser::isNumeric("-12", false));
    EXPECT_FALSE(CommandLineParser::isNumeric("1.5", false));
    EXPECT_FALSE(CommandLineParser::isNumeric("", true));
    EXPECT_TRUE(CommandLineParser::isNumeric("1.2.3", true));
    EXPECT_FALSE(CommandLineParser::isNumeric("1-2", true));

    const struct {
        const char* text;
        const char* detailOfInt;
        const char* detailOfFloat;
    } rows[] = {
        {"12", "no failure", "no failure"},
        {"-12", "no failure", "no failure"},
        {"1.5", "value for --size: type of '1.5' is not Int\n", "no failure"},
        {"1e5", "value for --size: type of '1e5' is not Int\n",
         "value for --size: type of '1e5' is not Float\n"},
        {"99999999999", "1 == 1\n", "no failure"},
        {"-", "1 == 1\n", "1 == 1\n"},
    };
    for (const auto& row : rows) {
        CommandLineParser parser = palmParser();
        parser.parse(std::string("--size=") + row.text);
        EXPECT_EQ(row.detailOfInt, assertionOf([&] { parser.getInt("--size"); })) << row.text;
        EXPECT_EQ(row.detailOfFloat, assertionOf([&] { parser.getFloat("--size"); })) << row.text;
    }
    CommandLineParser parser = palmParser();
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

    EXPECT_EQ("!(keyIndex_.count(key) == 0)", conditionOf([&] { parser.getInt("--no"); }));
    EXPECT_EQ("unknown key '--no\n", assertionOf([&] { parser.getString("--no"); }));
    EXPECT_EQ("key --no doesn't exists\n", assertionOf([&] { parser.isSet("--no"); }));
    EXPECT_EQ("keyIndex_.find(longKey) != keyIndex_.end()",
              conditionOf([&] { parser.setDefaultValue("--no", ""); }));
    EXPECT_EQ("key --no is not set\n", assertionOf([&] { parser.setDefaultValue("--no", ""); }));
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
    const TemporaryFile inner("rhd_inner.txt", "--size=\"x  y\"\n# -d 3\n-d 4 -v");
    const TemporaryFile outer("rhd_outer.txt", "-f 2 --import=\"" + inner.path + "\"");
    CommandLineParser parser = palmParser();
    parser.parse("-d 1 -i " + outer.path + " -f 9");
    EXPECT_EQ("-d 1 -f 2 --size=\"x y\" -d 4 -v -f 9", parser.getAllArgsStr());
    EXPECT_EQ("-d 1 -i " + outer.path + " -f 9", parser.getArgsString());
    EXPECT_EQ("x y", parser.getString("--size"));
    EXPECT_EQ(4, parser.getInt("-d"));
    EXPECT_FLOAT_EQ(9, parser.getFloat("-f"));

    CommandLineParser other = palmParser();
    other.import(inner.path);
    EXPECT_EQ(4, other.getInt("-d"));

    const TemporaryFile self("rhd_self.txt", "-i " + testing::TempDir() + "rhd_self.txt");
    EXPECT_EQ("depth < DEEPEST_IMPORT", conditionOf([&] { other.import(self.path); }));
}
