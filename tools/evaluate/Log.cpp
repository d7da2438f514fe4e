// The library hands its log records to this function where a program defines it. Standard error is
// for what a user must know: errors of the engine, one line each.

#include <cstdarg>
#include <cstdio>
#include <string>

extern "C" __attribute__((visibility("default"))) int __android_log_print(int priority, const char*,
                                                                          const char* format, ...) {
    constexpr int ERROR_PRIORITY = 6;
    char text[4096];
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    std::string line = text;
    while (!line.empty() && line.back() == '\n') line.pop_back();
    if (priority >= ERROR_PRIORITY && !line.empty()) {
        std::fprintf(stderr, "evaluate: engine: %s\n", line.c_str());
    }
    return length;
}
