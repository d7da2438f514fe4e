#pragma once

#include <exception>
#include <new>
#include <sstream>

#include "KZ_Log.h"

// Assertions log the condition, the place and a line of detail, then throw the text "assertion"
// as const char*. Operands may be evaluated a second time for the detail, so they must be free of
// side effects.

namespace KZ {

/// Logs a failed assertion as two records (the text, then an empty one) and throws "assertion".
[[noreturn]] void failAssertion(const char* condition, const char* file, int line,
                                const char* function, const std::string& detail);

/// What the detail of a failed pointer check shows: nothing for character pointers, else the
/// pointer.
inline const char* pointerText(const char*) {
    return "";
}
inline const char* pointerText(const signed char*) {
    return "";
}
inline const char* pointerText(const unsigned char*) {
    return "";
}
inline const void* pointerText(const void* p) {
    return p;
}

}  // namespace KZ

#define KZ_FAIL_(text, detail)                                                       \
    do {                                                                             \
        std::ostringstream kzAssertStream;                                           \
        kzAssertStream << detail;                                                    \
        KZ::failAssertion(text, __FILE__, __LINE__, __func__, kzAssertStream.str()); \
    } while (0)

/// Condition with a free message, a stream expression. `KZ_ASSERT(0, ...)` fails always.
#define KZ_ASSERT(condition, message)                    \
    do {                                                 \
        if (!(condition)) KZ_FAIL_(#condition, message); \
    } while (0)

/// Pointer check. The detail streams the pointer, but for a null character pointer, which is no
/// text to stream.
#define KZ_ASSERT_POINTER(p)                                              \
    do {                                                                  \
        if (!(p)) KZ_FAIL_("(" #p ")", KZ::pointerText(p) << " == NULL"); \
    } while (0)

#define KZ_ASSERT_EQ(a, b)                                                         \
    do {                                                                           \
        if (!((a) == (b))) KZ_FAIL_("(" #a ") == (" #b ")", (a) << " != " << (b)); \
    } while (0)
#define KZ_ASSERT_NE(a, b)                                                         \
    do {                                                                           \
        if (!((a) != (b))) KZ_FAIL_("(" #a ") != (" #b ")", (a) << " == " << (b)); \
    } while (0)
#define KZ_ASSERT_LT(a, b)                                                       \
    do {                                                                         \
        if (!((a) < (b))) KZ_FAIL_("(" #a ") < (" #b ")", (a) << " >= " << (b)); \
    } while (0)
#define KZ_ASSERT_GE(a, b)                                                        \
    do {                                                                          \
        if (!((a) >= (b))) KZ_FAIL_("(" #a ") >= (" #b ")", (a) << " < " << (b)); \
    } while (0)
#define KZ_ASSERT_GT(a, b)                                                       \
    do {                                                                         \
        if (!((a) > (b))) KZ_FAIL_("(" #a ") > (" #b ")", (a) << " <= " << (b)); \
    } while (0)

/// Runs `statement`; an exception of any kind becomes a plain message, then `recovery` runs and
/// execution goes on.
#define KZ_GUARD(statement, recovery)                                                              \
    do {                                                                                           \
        try {                                                                                      \
            statement;                                                                             \
        } catch (const std::bad_alloc& exception) {                                                \
            KZ_LOG_PLAIN("during execution of command '"                                           \
                         << #statement << "' bad_alloc exception occured: " << exception.what()    \
                         << "\n");                                                                 \
            recovery;                                                                              \
        } catch (const std::exception& exception) {                                                \
            KZ_LOG_PLAIN("during execution of command '"                                           \
                         << #statement << "' standart exception occured: " << exception.what()     \
                         << "\n");                                                                 \
            recovery;                                                                              \
        } catch (...) {                                                                            \
            KZ_LOG_PLAIN("during execution of command '" << #statement                             \
                                                         << "' non-standart exception occured\n"); \
            recovery;                                                                              \
        }                                                                                          \
    } while (0)
