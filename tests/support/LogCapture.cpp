#include "LogCapture.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>

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
    const LogRecord& second = records[records.size() - 1];
    if (first.priority != 6 || second.priority != 6) return malformed("priority is not 6");
    if (!second.text.empty()) return malformed("second record is not empty");

    const std::string start = "Assertion `", afterCondition = "` failed in ", beforeLine = " line ",
                      beforeFunction = ", function ", beforeDetail = ":    \n";
    const size_t condition = first.text.find(start);
    const size_t file = first.text.find(afterCondition);
    const size_t line = first.text.find(beforeLine, file);
    const size_t function = first.text.find(beforeFunction, line);
    const size_t detail = first.text.find(beforeDetail, function);
    if (condition != 0 || detail == std::string::npos) return malformed("not an assertion text");
    Assertion parts;
    parts.condition = first.text.substr(start.size(), file - start.size());
    const size_t fileStart = file + afterCondition.size();
    parts.file = first.text.substr(fileStart, line - fileStart);
    const size_t functionStart = function + beforeFunction.size();
    parts.function = first.text.substr(functionStart, detail - functionStart);
    parts.detail = first.text.substr(detail + beforeDetail.size());
    return parts;
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
