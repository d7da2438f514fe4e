#include "LogCapture.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace testing_support {

namespace {

LogCapture* current = nullptr;
std::mutex currentMutex;

// Takes `mark` and what stands before it off the text; without `before` nothing may stand there.
bool cut(std::string& text, const std::string& mark, std::string* before) {
    const size_t at = text.find(mark);
    if (at == std::string::npos || (!before && at > 0)) return false;
    if (before) *before = text.substr(0, at);
    text.erase(0, at + mark.size());
    return true;
}

}  // namespace

LogCapture::LogCapture() {
    std::lock_guard<std::mutex> lock(currentMutex);
    outer_ = current;
    current = this;
}

LogCapture::~LogCapture() {
    std::lock_guard<std::mutex> lock(currentMutex);
    current = outer_;
}

std::string LogCapture::text() const {
    std::string all;
    for (const LogRecord& record : records_) all += record.text;
    return all;
}

Assertion parseAssertion(const std::vector<LogRecord>& records, const std::string& thrown) {
    const auto malformed = [](const std::string& why) { return Assertion{"", "", "", why}; };
    if (thrown != "assertion") return malformed("thrown text is \"" + thrown + "\"");
    if (records.size() < 2) return malformed("fewer than two records");
    const LogRecord& first = records[records.size() - 2];
    const LogRecord& second = records.back();
    if (first.priority != 6 || second.priority != 6) return malformed("priority is not 6");
    if (!second.text.empty()) return malformed("second record is not empty");

    Assertion found;
    std::string line, rest = first.text;
    const bool whole = cut(rest, "Assertion `", nullptr) &&
                       cut(rest, "` failed in ", &found.condition) &&
                       cut(rest, " line ", &found.file) && cut(rest, ", function ", &line) &&
                       cut(rest, ":    \n", &found.function);
    const bool isNumber =
        !line.empty() && line.find_first_not_of("0123456789") == std::string::npos;
    if (!whole || !isNumber) return malformed("not an assertion text");
    found.detail = rest;
    return found;
}

}  // namespace testing_support

extern "C" int __android_log_print(int priority, const char*, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list copy;
    va_copy(copy, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::string text(static_cast<size_t>(length) + 1, '\0');
    std::vsnprintf(&text[0], text.size(), format, arguments);
    va_end(arguments);
    text.pop_back();

    std::lock_guard<std::mutex> lock(testing_support::currentMutex);
    if (testing_support::current) testing_support::current->add({priority, text});
    return length;
}
