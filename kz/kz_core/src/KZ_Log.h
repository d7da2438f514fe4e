#pragma once

#include <sstream>
#include <string>

namespace KZ {

/// Level below which leveled lines are dropped: debug lines need a level of at most 0, info lines
/// of at most 1, warnings of at most 2. The initial level is 2.
int& getLogLevel();

/// Layout of the header of a leveled line.
class KZ_LOGGER_FORMAT {
public:
    /// `text` padded on the right with blanks, or cut, to exactly `width` characters.
    static std::string alignString(const std::string& text, int width);

    /// Decimal form of `value`, right-aligned in `width` positions with `fill`; a width below 1
    /// sets none.
    static std::string toStr(int value, int width, char fill);
};

/// Writes `text` at information priority, whatever the level: split at carriage returns, each
/// non-empty piece as records that start 1023 characters apart.
void writePlainMessage(const std::string& text);

/// Writes `text` as one record at error priority.
void writeErrorMessage(const std::string& text);

/// Writes one leveled line: `label`, base name of `file`, `line`, `function`, then `message`.
void writeLeveledLine(const char* label, const char* file, int line, const char* function,
                      const std::string& message);

/// The arguments streamed one after the other into a text.
template <typename... Values>
std::string joined(const Values&... values) {
    std::ostringstream stream;
    (void)(stream << ... << values);
    return stream.str();
}

}  // namespace KZ

#define KZ_LOG_LINE(limit, label, message)                                                \
    do {                                                                                  \
        if (KZ::getLogLevel() <= (limit)) {                                               \
            std::ostringstream kzLogStream;                                               \
            kzLogStream << message;                                                       \
            KZ::writeLeveledLine(label, __FILE__, __LINE__, __func__, kzLogStream.str()); \
        }                                                                                 \
    } while (0)

/// Leveled lines; `message` is a stream expression such as `"x = " << x`. It is not evaluated
/// when the level is too high.
#define KZ_LOG_DEBUG(message) KZ_LOG_LINE(0, "DEBUG   ", message)
#define KZ_LOG_INFO(message) KZ_LOG_LINE(1, "INFO    ", message)
#define KZ_LOG_WARNING(message) KZ_LOG_LINE(2, "WARNING ", message)

/// A message without a header, written at every level.
#define KZ_LOG_PLAIN(message)                     \
    do {                                          \
        std::ostringstream kzLogStream;           \
        kzLogStream << message;                   \
        KZ::writePlainMessage(kzLogStream.str()); \
    } while (0)

/// A message at error priority, written at every level as one record.
#define KZ_LOG_ERROR(message)                     \
    do {                                          \
        std::ostringstream kzLogStream;           \
        kzLogStream << message;                   \
        KZ::writeErrorMessage(kzLogStream.str()); \
    } while (0)
