#pragma once

#include <istream>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace KZ {

/// Key-value files with sections. A full key is "section/key", cut at its first slash; keys above
/// the first section header, and full keys without a slash, are of the section "".
class IniParser {
public:
    explicit IniParser(char comment = '#') : comment_(comment) {}

    bool hasKey(const std::string& fullKey) const;
    bool hasKey(const std::string& section, const std::string& key) const;
    /// A key that does not exist is an assertion.
    const std::string& getKey(const std::string& fullKey) const;
    const std::string& getKey(const std::string& section, const std::string& key) const;
    /// False, and nothing stored, when the key is empty or holds a blank, tab, "-", "=" or bracket,
    /// or the value a "=" or line break.
    bool setKey(const std::string& fullKey, const std::string& value);
    bool setKey(const std::string& section, const std::string& key, const std::string& value);
    /// Full keys of all sections, or of one.
    std::vector<std::string> getAllKeys() const;
    std::vector<std::string> getAllKeys(const std::string& section) const;

    /// Adds what the file holds. At the first bad line it says so on standard error and returns
    /// false; the lines before it stay.
    bool load(const std::string& path);
    bool load(std::istream& stream);
    bool save(const std::string& path) const;
    bool save(std::ostream& stream) const;
    void reset() { sections_.clear(); }

private:
    using Section = std::map<std::string, std::string>;

    std::string cleanFromComments(const std::string& line) const;
    bool parseCurrentLine(const std::string& line, int lineNumber, std::string& section);
    bool parseKeyValue(const std::string& line, const std::string& section);

    static const char SEPARATOR = '/';

    char comment_;
    std::map<std::string, Section> sections_;
};

}  // namespace KZ
