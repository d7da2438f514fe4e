#include "KZ_Utils.h"

#include <algorithm>
#include <cstring>
#include <iomanip>

namespace KZ {

template <>
std::string toStr(const ColorMode& mode) {
    return colorModeName(mode);
}

std::string toStr(int value, int width, char fill) {
    return KZ_LOGGER_FORMAT::toStr(value, width, fill);
}

std::string floatToStr(float value, int width, int integerDigits) {
    std::ostringstream stream;
    stream << std::fixed << std::setw(width)
           << std::setprecision(std::max(width - integerDigits, 0)) << value;
    return stream.str();
}

std::string toBits(int value) {
    std::string text = "0b";
    for (int bit = value < 256 ? 7 : 31; bit >= 0; --bit) {
        text += (static_cast<unsigned int>(value) >> bit & 1) != 0 ? '1' : '0';
        if (bit % 8 == 0 && bit != 0) text += ' ';
    }
    return text;
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> pieces;
    std::istringstream stream(text);
    std::string piece;
    while (std::getline(stream, piece, separator)) {
        if (!piece.empty()) pieces.push_back(piece);
    }
    return pieces;
}

std::string replaceChar(const std::string& text, char from, char to) {
    std::string result = text;
    std::replace(result.begin(), result.end(), from, to);
    return result;
}

std::string replaceString(const std::string& text, const std::string& from, const std::string& to) {
    if (from.empty()) return text;
    std::string result;
    size_t start = 0;
    for (size_t found; (found = text.find(from, start)) != std::string::npos;) {
        result.append(text, start, found - start).append(to);
        start = found + from.size();
    }
    return result.append(text, start, std::string::npos);
}

std::string fixSeparator(const std::string& path) {
    return replaceChar(path, '\\', '/');
}

std::string fixPath(const std::string& path) {
    const std::string fixed = fixSeparator(path);
    return fixed.find(' ') == std::string::npos ? fixed : "\"" + fixed + "\"";
}

std::string alignString(const std::string& text, int width) {
    const size_t wanted = width > 0 ? static_cast<size_t>(width) : 0;
    return wanted > text.size() ? std::string(wanted - text.size(), ' ') + text : text;
}

std::string toLowerCase(const std::string& text) {
    std::string result = text;
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return result;
}

bool compareStringsNumeric(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return a.size() < b.size();
    return std::memcmp(a.data(), b.data(), a.size()) < 0;
}

void numericSort(std::vector<std::string>& texts) {
    std::sort(texts.begin(), texts.end(), compareStringsNumeric);
}

std::string readLiteral(std::istream& stream, size_t size) {
    const size_t MAX_BUFFER_SIZE = 256;
    KZ_ASSERT(size < MAX_BUFFER_SIZE, "wrong str size ");
    char buffer[MAX_BUFFER_SIZE] = {};
    stream.read(buffer, static_cast<std::streamsize>(size));
    return buffer;
}

void readString(std::istream& stream, const std::string& text) {
    KZ_READ_STRING(stream, text);
}

}  // namespace KZ
