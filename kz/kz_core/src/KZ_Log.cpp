#include "KZ_Log.h"

#include <cstring>
#include <iomanip>

#include "KZ_Platform.h"

namespace KZ {

namespace {

const int PRIORITY_INFO = 4;
const int PRIORITY_ERROR = 6;
const size_t RECORD_STEP = 1023;

void writeRecord(int priority, const char* text) {
    platformLogPrint(priority, "KanzoZen", text);
}

const char* baseName(const char* path) {
    const char* slash = std::strrchr(path, '/');
    return slash ? slash + 1 : path;
}

}  // namespace

int& getLogLevel() {
    static int logLevel = 2;
    return logLevel;
}

std::string KZ_LOGGER_FORMAT::alignString(const std::string& text, int width) {
    std::string aligned = text;
    aligned.resize(width > 0 ? static_cast<size_t>(width) : 0, ' ');
    return aligned;
}

std::string KZ_LOGGER_FORMAT::toStr(int value, int width, char fill) {
    std::ostringstream stream;
    if (width >= 1) stream << std::setw(width) << std::setfill(fill);
    stream << value;
    return stream.str();
}

void writePlainMessage(const std::string& text) {
    std::istringstream stream(text);
    std::string piece;
    while (std::getline(stream, piece, '\r')) {
        // The sink cuts a record at its own limit, so each record carries the whole rest.
        for (size_t offset = 0; offset < piece.size(); offset += RECORD_STEP) {
            writeRecord(PRIORITY_INFO, piece.c_str() + offset);
        }
    }
}

void writeErrorMessage(const std::string& text) {
    writeRecord(PRIORITY_ERROR, text.c_str());
}

void writeLeveledLine(const char* label, const char* file, int line, const char* function,
                      const std::string& message) {
    writePlainMessage(joined(label, KZ_LOGGER_FORMAT::alignString(baseName(file), 30),
                             KZ_LOGGER_FORMAT::toStr(line, 4, ' '), " ",
                             KZ_LOGGER_FORMAT::alignString(function, 15), " ", message, "\n"));
}

}  // namespace KZ
