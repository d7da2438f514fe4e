#pragma once

#include <string>
#include <vector>

namespace testing_support {

struct LogRecord {
    int priority;
    std::string text;
};

/// Keeps the log records that the library writes while it lives. The newest capture gets them.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    const std::vector<LogRecord>& records() const { return records_; }
    /// All texts one after the other.
    std::string text() const;
    void add(const LogRecord& record) { records_.push_back(record); }
    void clear() { records_.clear(); }

private:
    std::vector<LogRecord> records_;
    LogCapture* outer_;
};

/// The parts of an assertion's log text.
struct Assertion {
    std::string condition;
    std::string file;
    std::string function;
    std::string detail;  ///< with the line break at its end
};

/// Reads the records of a failed assertion; a malformed sequence gives a `detail` that says so.
Assertion parseAssertion(const std::vector<LogRecord>& records, const std::string& thrown);

/// The assertion that `call` fails; condition and detail are "no failure" when it returns.
template <typename Call>
Assertion failureOf(Call call) {
    LogCapture capture;
    try {
        call();
    } catch (const char* thrown) {
        return parseAssertion(capture.records(), thrown);
    }
    return Assertion{"no failure", "", "", "no failure"};
}

/// The detail line of the assertion that `call` fails, with its line break.
template <typename Call>
std::string assertionOf(Call call) {
    return failureOf(call).detail;
}

/// The condition between the quotes of "Assertion `...` failed".
template <typename Call>
std::string conditionOf(Call call) {
    return failureOf(call).condition;
}

}  // namespace testing_support
