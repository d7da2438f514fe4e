#include "KZ_Platform.h"

#include <cstdio>

// Weak and never defined here: it stays an open reference of the library that the platform or the
// program fills at load time, and is null where neither does.
extern "C" __attribute__((weak)) int __android_log_print(int priority, const char* tag,
                                                         const char* format, ...);

namespace KZ {

void platformLogPrint(int priority, const char* tag, const char* text) {
    if (__android_log_print) {
        __android_log_print(priority, tag, "%s", text);
        return;
    }
    std::fprintf(stderr, "%c/%s: %s\n", priority >= 6 ? 'E' : 'I', tag, text);
}

}  // namespace KZ
