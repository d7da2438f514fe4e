#include "KZ_Timer.h"

#include <time.h>

#include "KZ_Utils.h"

namespace KZ {

namespace {

std::string formatted(time_t seconds, const char* format) {
    char buffer[80];
    struct tm local;
    localtime_r(&seconds, &local);
    return std::string(buffer, strftime(buffer, sizeof(buffer), format, &local));
}

}  // namespace

uint64_t getTimeNano() {
    struct timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000000000u + static_cast<uint64_t>(now.tv_nsec);
}

uint64_t getTime() {
    return getTimeNano() / 1000000;
}

std::ostream& operator<<(std::ostream& stream, const Timer& timer) {
    return stream << timer.getDiff() << "ms";
}

std::string getFormattedTime(const char* format) {
    return formatted(time(nullptr), format);
}

std::string fullTime() {
    return getFormattedTime("%Y_%m_%d__%H_%M_%S");
}

std::string fullDate() {
    return getFormattedTime("%Y_%m_%d");
}

std::string expandedTime() {
    // One reading of the clock for both parts.
    const uint64_t now = getTimeNano();
    return formatted(static_cast<time_t>(now / 1000000000), "%H:%M:%S.") +
           toStr(static_cast<int>(now / 1000 % 1000000), 6, '0');
}

}  // namespace KZ
