#include "Log.h"

#include <cstdarg>
#include <cstdio>

namespace palm {

namespace {

bool verboseLog = false;
std::string newestError;

}  // namespace

void setVerbose(bool verbose) {
    verboseLog = verbose;
}
std::string lastError() {
    return newestError;
}

void keepRecord(int priority, const char* tag, const std::string& text) {
    if (priority >= 6 && !text.empty()) newestError = text;
    if (verboseLog) std::fprintf(stderr, "%s: %s\n", tag, text.c_str());
}

}  // namespace palm

// The library hands its log records to this function where a program defines it.
extern "C" __attribute__((visibility("default"))) int __android_log_print(int priority,
                                                                          const char* tag,
                                                                          const char* format, ...) {
    char text[4096];
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    palm::keepRecord(priority, tag, text);
    return length;
}
