#include "KZ_IniParser.h"

#include <fstream>
#include <iostream>

#include "KZ_ArgumentText.h"
#include "KZ_Assert.h"

namespace KZ {

namespace {

bool isKeyCorrect(const std::string& key) {
    return !key.empty() && key.find_first_of(" -=\t[]") == std::string::npos;
}

// A line break would end the value in a file.
bool isValueCorrect(const std::string& value) {
    return value.find_first_of("=\n") == std::string::npos;
}

bool getSectionName(const std::string& line, std::string& name) {
    if (line.size() < 2 || line[line.size() - 1] != ']') return false;
    name = line.substr(1, line.size() - 2);
    return !name.empty() && name.find_first_of("\t =[]") == std::string::npos;
}

void splitFullKey(const std::string& fullKey, char separator, std::string& section,
                  std::string& key) {
    const size_t cut = fullKey.find(separator);
    section = cut == std::string::npos ? "" : fullKey.substr(0, cut);
    key = cut == std::string::npos ? fullKey : fullKey.substr(cut + 1);
}

// Takes the quotes off; false when the closing one is missing.
bool unquote(std::string& value) {
    if (value.empty() || value[0] != '"') return true;
    if (value.size() < 2 || value[value.size() - 1] != '"') {
        std::cerr << "[error] Closing quote is missing in the end of value: " << value << "\n";
        return false;
    }
    value = value.substr(1, value.size() - 2);
    return true;
}

// In quotes where loading would take something off.
std::string quotedIfNeeded(const std::string& value) {
    const bool isPlain = trim(value) == value && (value.empty() || value[0] != '"');
    return isPlain ? value : "\"" + value + "\"";
}

}  // namespace

bool IniParser::hasKey(const std::string& fullKey) const {
    std::string section, key;
    splitFullKey(fullKey, SEPARATOR, section, key);
    return hasKey(section, key);
}

bool IniParser::hasKey(const std::string& section, const std::string& key) const {
    const auto found = sections_.find(section);
    return found != sections_.end() && found->second.count(key) != 0;
}

const std::string& IniParser::getKey(const std::string& fullKey) const {
    std::string section, key;
    splitFullKey(fullKey, SEPARATOR, section, key);
    return getKey(section, key);
}

const std::string& IniParser::getKey(const std::string& section, const std::string& key) const {
    KZ_ASSERT(hasKey(section, key), "no key '" << key << "' in section '" << section << "'");
    return sections_.find(section)->second.find(key)->second;
}

bool IniParser::setKey(const std::string& fullKey, const std::string& value) {
    std::string section, key;
    splitFullKey(fullKey, SEPARATOR, section, key);
    return setKey(section, key, value);
}

bool IniParser::setKey(const std::string& section, const std::string& key,
                       const std::string& value) {
    if (!isKeyCorrect(key) || !isValueCorrect(value)) return false;
    sections_[section][key] = value;
    return true;
}

std::vector<std::string> IniParser::getAllKeys() const {
    std::vector<std::string> keys;
    for (const auto& section : sections_) {
        const std::vector<std::string> ofSection = getAllKeys(section.first);
        keys.insert(keys.end(), ofSection.begin(), ofSection.end());
    }
    return keys;
}

std::vector<std::string> IniParser::getAllKeys(const std::string& section) const {
    std::vector<std::string> keys;
    const auto found = sections_.find(section);
    if (found == sections_.end()) return keys;
    for (const auto& entry : found->second) keys.push_back(section + SEPARATOR + entry.first);
    return keys;
}

bool IniParser::load(const std::string& path) {
    std::ifstream file(path.c_str());
    if (!file) {
        std::cerr << "[error] Cannot open file '" << path << "'\n";
        return false;
    }
    return load(file);
}

bool IniParser::load(std::istream& stream) {
    std::string section;
    std::string line;
    for (int lineNumber = 1; std::getline(stream, line); ++lineNumber) {
        const std::string content = trim(cleanFromComments(line));
        if (!content.empty() && !parseCurrentLine(content, lineNumber, section)) return false;
    }
    return true;
}

std::string IniParser::cleanFromComments(const std::string& line) const {
    return line.substr(0, line.find(comment_));
}

bool IniParser::parseCurrentLine(const std::string& line, int lineNumber, std::string& section) {
    if (line[0] == '[') {
        if (getSectionName(line, section)) {
            sections_[section];
            return true;
        }
        std::cerr << "[error] Incorrect section name: '" << line << "', line " << lineNumber
                  << "\n";
        return false;
    }
    if (parseKeyValue(line, section)) return true;
    std::cerr << "[error] Incorrect 'key-value' pair: '" << line << "', line " << lineNumber
              << "\n";
    return false;
}

bool IniParser::parseKeyValue(const std::string& line, const std::string& section) {
    std::string key, value;
    if (!splitKeyValue(line, key, value)) {
        std::cerr << "[error] No '=' found in line '" << line << "'\n";
        return false;
    }
    return unquote(value) && setKey(section, key, value);
}

bool IniParser::save(const std::string& path) const {
    std::ofstream file(path.c_str());
    return file && save(file);
}

bool IniParser::save(std::ostream& stream) const {
    for (const auto& section : sections_) {
        // Keys above all headers belong to no section, and come first in the order of names.
        if (!section.first.empty()) stream << "\n[" << section.first << "]\n";
        for (const auto& entry : section.second)
            stream << "  " << entry.first << " = " << quotedIfNeeded(entry.second) << "\n";
    }
    stream.flush();
    return static_cast<bool>(stream);
}

}  // namespace KZ
