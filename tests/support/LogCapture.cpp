#include "LogCapture.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <regex>

namespace testing_support {

namespace {

LogCapture* current = nullptr;
std::mutex currentMutex;

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

    static const std::regex form(
        "Assertion `([^]*?)` failed in ([^]*?) line \\d+, function ([^]*?):    \n([^]*)");
    std::smatch parts;
    if (!std::regex_match(first.text, parts, form)) return malformed("not an assertion text");
    return Assertion{parts[1], parts[2], parts[3], parts[4]};
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
