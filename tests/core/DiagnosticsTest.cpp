#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>

#include "KZ_Assert.h"
#include "LogCapture.h"

using testing_support::Assertion;
using testing_support::failureOf;
using testing_support::LogCapture;

namespace {

void failOnThreeAndFour() {
    const int three = 3;
    KZ_ASSERT_EQ(three, 4);
}

}  // namespace

TEST(Assert, EveryFormNamesConditionAndValues) {
    const int a = 3;
    const int b = 4;
    const char* const text = nullptr;
    struct Row {
        std::function<void()> run;
        const char* condition;
        const char* detail;
    };
    const Row rows[] = {
        {[&] { KZ_ASSERT_EQ(a, b); }, "(a) == (b)", "3 != 4\n"},
        {[&] { KZ_ASSERT_NE(a, 3); }, "(a) != (3)", "3 == 3\n"},
        {[&] { KZ_ASSERT_LT(b, a); }, "(b) < (a)", "4 >= 3\n"},
        {[&] { KZ_ASSERT_GE(a, b); }, "(a) >= (b)", "3 < 4\n"},
        {[&] { KZ_ASSERT_GT(a, a); }, "(a) > (a)", "3 <= 3\n"},
        {[&] { KZ_ASSERT_POINTER(text); }, "(text)", " == NULL\n"},
        {[&] { KZ_ASSERT(a > b, a << " is too small"); }, "a > b", "3 is too small\n"},
        {[&] { KZ_ASSERT(0, "never"); }, "0", "never\n"},
        {[&] { KZ_ASSERT_EQ(a, 3); }, "no failure", "no failure"},
        {[&] { KZ_ASSERT_GE(a, 3); }, "no failure", "no failure"},
        {[&] { KZ_ASSERT_POINTER(&a); }, "no failure", "no failure"},
    };
    for (const Row& row : rows) {
        const Assertion failure = failureOf(row.run);
        EXPECT_EQ(row.condition, failure.condition);
        EXPECT_EQ(row.detail, failure.detail) << row.condition;
    }
}

TEST(Assert, WritesTextThenEmptyRecord) {
    LogCapture log;
    EXPECT_THROW(failOnThreeAndFour(), const char*);
    ASSERT_EQ(2u, log.records().size());
    EXPECT_EQ(0u, log.records()[0].text.find("Assertion `(three) == (4)` failed in "));
    EXPECT_NE(std::string::npos, log.records()[0].text.find("DiagnosticsTest.cpp line "));
    EXPECT_NE(std::string::npos,
              log.records()[0].text.find(", function failOnThreeAndFour:    \n3 != 4\n"));
    EXPECT_EQ(6, log.records()[0].priority);
    EXPECT_EQ(6, log.records()[1].priority);
    EXPECT_EQ("", log.records()[1].text);
}

TEST(Guard, LogsKindOfExceptionAndRecovers) {
    struct Row {
        std::function<void()> call;
        const char* text;
        int recoveries;
    };
    const Row rows[] = {
        {[] {}, "", 0},
        {[] { throw std::bad_alloc(); },
         "during execution of command 'row.call()' bad_alloc exception occured: std::bad_alloc\n",
         1},
        {[] { throw std::length_error("long"); },
         "during execution of command 'row.call()' standart exception occured: long\n", 1},
        {[] { throw "assertion"; },
         "during execution of command 'row.call()' non-standart exception occured\n", 1},
    };
    for (const Row& row : rows) {
        LogCapture log;
        int recoveries = 0;
        KZ_GUARD(row.call(), ++recoveries);
        EXPECT_EQ(row.text, log.text());
        EXPECT_EQ(row.recoveries, recoveries);
        for (const auto& record : log.records()) EXPECT_EQ(4, record.priority);
    }
}

TEST(Log, AlignsTextAndNumbers) {
    using KZ::KZ_LOGGER_FORMAT;
    EXPECT_EQ("abc  ", KZ_LOGGER_FORMAT::alignString("abc", 5));
    EXPECT_EQ("abcde", KZ_LOGGER_FORMAT::alignString("abcdefg", 5));
    EXPECT_EQ("  93", KZ_LOGGER_FORMAT::toStr(93, 4, ' '));
    EXPECT_EQ("1234", KZ_LOGGER_FORMAT::toStr(1234, 2, ' '));
    EXPECT_EQ("-5", KZ_LOGGER_FORMAT::toStr(-5, 0, '0'));
}

TEST(Log, LevelDecidesBeforeFormatting) {
    struct RestoreLevel {
        int level = KZ::getLogLevel();
        ~RestoreLevel() { KZ::getLogLevel() = level; }
    } restore;
    ASSERT_EQ(2, KZ::getLogLevel());
    const char* const expected[] = {"DEBUG   INFO    WARNING ", "INFO    WARNING ", "WARNING ", ""};
    for (int level = 0; level < 4; ++level) {
        KZ::getLogLevel() = level;
        LogCapture log;
        int formatted = 0;
        KZ_LOG_DEBUG(++formatted);
        KZ_LOG_INFO(++formatted);
        KZ_LOG_WARNING(++formatted);
        std::string labels;
        for (const auto& record : log.records()) labels += record.text.substr(0, 8);
        EXPECT_EQ(expected[level], labels);
        EXPECT_EQ(3 - level, formatted);
    }
}

TEST(Log, LeveledLineHasHeader) {
    LogCapture log;
    KZ::writeLeveledLine("WARNING ", "/a/b/File.cpp", 7, "aVeryLongFunctionName", "text\nmore");
    ASSERT_EQ(1u, log.records().size());
    EXPECT_EQ("WARNING File.cpp" + std::string(22, ' ') + "   7 aVeryLongFuncti text\nmore\n",
              log.records()[0].text);
    EXPECT_EQ(4, log.records()[0].priority);
}

TEST(Log, PlainMessageIsSplitAtReturnsAndLength) {
    LogCapture log;
    std::string text(3000, 'a');
    text[1023] = 'b';
    text[2046] = 'c';
    KZ_LOG_PLAIN(text << "\r\rshort");
    ASSERT_EQ(4u, log.records().size());
    EXPECT_EQ(text, log.records()[0].text);
    EXPECT_EQ(text.substr(1023), log.records()[1].text);
    EXPECT_EQ(text.substr(2046), log.records()[2].text);
    EXPECT_EQ("short", log.records()[3].text);

    log.clear();
    KZ_LOG_ERROR(text << "\r" << text);
    ASSERT_EQ(1u, log.records().size());
    EXPECT_EQ(6001u, log.records()[0].text.size());
    EXPECT_EQ(6, log.records()[0].priority);
}
