#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "KZ_Assert.h"
#include "LogCapture.h"

using testing_support::failureOf;
using testing_support::LogCapture;

TEST(Assert, NamesConditionValuesAndPlace) {
    const int a = 3, b = 4;
    const char* const text = nullptr;
    const struct {
        std::function<void()> run;
        const char *condition, *detail;
    } rows[] = {
        {[&] { KZ_ASSERT_EQ(a, b); }, "(a) == (b)", "3 != 4\n"},
        {[&] { KZ_ASSERT_NE(a, 3); }, "(a) != (3)", "3 == 3\n"},
        {[&] { KZ_ASSERT_LT(b, a); }, "(b) < (a)", "4 >= 3\n"},
        {[&] { KZ_ASSERT_GE(a, b); }, "(a) >= (b)", "3 < 4\n"},
        {[&] { KZ_ASSERT_GT(a, a); }, "(a) > (a)", "3 <= 3\n"},
        {[&] { KZ_ASSERT_POINTER(text); }, "(text)", " == NULL\n"},
        {[&] { KZ_ASSERT(a > b, a << " is too small"); }, "a > b", "3 is too small\n"},
        {[&] { KZ_ASSERT_EQ(a, 3); }, "no failure", "no failure"},
        {[&] { KZ_ASSERT_GE(a, 3); }, "no failure", "no failure"},
    };
    for (const auto& row : rows) {
        const auto failure = failureOf(row.run);
        EXPECT_EQ(row.condition, failure.condition);
        EXPECT_EQ(row.detail, failure.detail) << row.condition;
        if (failure.function.empty()) continue;
        EXPECT_EQ("operator()", failure.function);
        EXPECT_NE(std::string::npos, failure.file.find("DiagnosticsTest.cpp"));
    }
}

TEST(Guard, LogsKindOfExceptionAndRecovers) {
    const std::string during = "during execution of command 'row.call()' ";
    const struct {
        std::function<void()> call;
        std::string text;
    } rows[] = {
        {[] {}, ""},
        {[] { throw std::bad_alloc(); }, during + "bad_alloc exception occured: std::bad_alloc\n"},
        {[] { throw std::length_error("long"); }, during + "standart exception occured: long\n"},
        {[] { throw "assertion"; }, during + "non-standart exception occured\n"},
    };
    for (const auto& row : rows) {
        LogCapture log;
        int recoveries = 0;
        KZ_GUARD(row.call(), ++recoveries);
        EXPECT_EQ(row.text, log.text());
        EXPECT_EQ(row.text.empty() ? 0 : 1, recoveries);
        for (const auto& record : log.records()) EXPECT_EQ(4, record.priority);
    }
}

TEST(Log, LevelDecidesBeforeFormatting) {
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
    KZ::getLogLevel() = 2;
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
    KZ_LOG_ERROR(text << "\r" << text);
    std::vector<std::string> records;
    for (const auto& record : log.records()) records.push_back(record.text);
    EXPECT_EQ((std::vector<std::string>{text, text.substr(1023), text.substr(2046), "short",
                                        text + "\r" + text}),
              records);
    EXPECT_EQ(6, log.records().back().priority);
}
