#pragma once

#include <cstdint>
#include <ostream>
#include <string>

namespace KZ {

/// The platform's real-time clock, in nanoseconds and in milliseconds.
uint64_t getTimeNano();
uint64_t getTime();

/// Measures the time since its making or its last `reset`.
class Timer {
public:
    Timer() { reset(); }
    void reset() { start_ = getTimeNano(); }
    uint64_t getDiffNano() const { return getTimeNano() - start_; }
    /// Milliseconds, truncated.
    uint64_t getDiff() const { return getDiffNano() / 1000000; }

private:
    uint64_t start_;
};

/// Milliseconds followed by "ms".
std::ostream& operator<<(std::ostream& stream, const Timer& timer);

/// Local time in a format of `strftime`, at most 79 characters; a longer text gives an empty one.
std::string getFormattedTime(const char* format);
/// Such as 2024_01_31__23_59_59.
std::string fullTime();
/// Such as 2024_01_31.
std::string fullDate();
/// Such as 23:59:59.012345.
std::string expandedTime();

}  // namespace KZ
