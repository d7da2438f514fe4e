#pragma once

#include <istream>
#include <string>
#include <vector>

// From text to arguments, and from arguments to keys and values.

namespace KZ {

/// Without the white space at both ends.
std::string trim(const std::string& text);

/// The words of a stream. One that begins with # drops the rest of its line, up to 10,000
/// characters.
std::vector<std::string> parseStream(std::istream& stream);

/// Joins the words of values that were torn at their blanks, with one blank between words. A value
/// opens with a double quote or brace at the beginning of a word or right behind its first "="; it
/// ends with the next word that ends in the closing one. Quotes and braces elsewhere are ordinary
/// characters, and braces do not nest. A value without its end, and an empty word, are assertions.
std::vector<std::string> fixArgs(const std::vector<std::string>& words);

/// Cuts at the first "=" and trims both sides; false when there is none.
bool splitKeyValue(const std::string& text, std::string& key, std::string& value);

/// Without the double quotes or braces around it; an opening one without its closing one is an
/// assertion.
std::string getRawValue(const std::string& value);

}  // namespace KZ
