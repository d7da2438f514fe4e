#pragma once

#include <istream>
#include <sstream>
#include <string>
#include <vector>

#include "KZ_Assert.h"
#include "KZ_BaseSize.h"
#include "KZ_ColorMode.h"

namespace KZ {

/// What `operator<<` prints: a number, a pointer's address, any type with a text form.
template <typename T>
std::string toStr(const T& value) {
    std::ostringstream ss;
    ss << value;
    return ss.str();
}
/// The long name, such as "COLOR_MODE_MONO".
template <>
std::string toStr(const ColorMode& mode);
/// In a field of `width`, right-aligned with `fill`.
std::string toStr(int value, int width, char fill);
/// Fixed notation in a field of `width`, with `width - integerDigits` decimals.
std::string floatToStr(float value, int width, int integerDigits);

/// The value at the start of `text`, as `operator>>` reads it; none there is an assertion.
template <typename T>
T fromStr(const std::string& text) {
    std::istringstream ss(text);
    T value{};
    ss >> value;
    KZ_ASSERT_NE(ss.fail(), true);
    return value;
}

/// "0b" and the bits, highest first: eight of a value below 256, else four groups of eight.
std::string toBits(int value);

/// The non-empty pieces between separators.
std::vector<std::string> split(const std::string& text, char separator);
std::string replaceChar(const std::string& text, char from, char to);
/// From left to right; what was put in is not searched again. An empty `from` replaces nothing.
std::string replaceString(const std::string& text, const std::string& from, const std::string& to);
/// Backslashes become slashes.
std::string fixSeparator(const std::string& path);
/// The same, and a path with a blank goes into double quotes.
std::string fixPath(const std::string& path);
/// Padded on the left with blanks up to `width`; a longer text stays.
std::string alignString(const std::string& text, int width);
/// ASCII letters only.
std::string toLowerCase(const std::string& text);

/// Order of file names with numbers: the shorter first, equal lengths by their bytes.
bool compareStringsNumeric(const std::string& a, const std::string& b);
void numericSort(std::vector<std::string>& texts);

/// Reads as many characters as `text` has; other ones are an assertion, and so is a text of 256
/// characters or more.
void readString(std::istream& stream, const std::string& text);

/// The next `size` characters, fewer at the end of the stream, which then has failed. A `size` of
/// 256 or more is an assertion.
std::string readLiteral(std::istream& stream, size_t size);

}  // namespace KZ

/// Reads the literal `text` from `stream`, with the literal in the message of the assertion.
#define KZ_READ_STRING(stream, text)                                                        \
    do {                                                                                    \
        const std::string buffer = KZ::readLiteral(stream, std::string(text).size());       \
        KZ_ASSERT((std::string(std::string() + text) == buffer) && (std::istream&)(stream), \
                  "cannot read \"" << text << "\" from \"" << buffer << "\"");              \
    } while (0)
