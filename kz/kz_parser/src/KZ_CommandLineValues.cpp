#include "KZ_Assert.h"
#include "KZ_CommandLineParser.h"
#include "KZ_Utils.h"

// The typed getters.

namespace KZ {

bool CommandLineParser::isNumeric(const std::string& text, bool allowPoint) {
    if (text.empty()) return false;
    const char* const allowed = allowPoint ? "0123456789." : "0123456789";
    return text.find_first_not_of(allowed, text[0] == '-' ? 1 : 0) == std::string::npos;
}

bool CommandLineParser::isSet(const std::string& key) const {
    const auto found = keyIndex_.find(key);
    if (found == keyIndex_.end()) KZ_ASSERT(false, "key " << key << " doesn't exists");
    return isSet_[found->second];
}

std::string CommandLineParser::getString(const std::string& key) const {
    KZ_ASSERT(!(keyIndex_.count(key) == 0), "unknown key '" << key);
    const size_t index = keyIndex_.find(key)->second;
    const auto value = values_.find(index);
    return value != values_.end() ? value->second : keysInfo_[index].defaultValue;
}

int CommandLineParser::getInt(const std::string& key) const {
    const std::string value = getString(key);
    KZ_ASSERT(isNumeric(value, false),
              "value for " << key << ": type of '" << value << "' is not Int");
    return fromStr<int>(value);
}

float CommandLineParser::getFloat(const std::string& key) const {
    const std::string value = getString(key);
    KZ_ASSERT(isNumeric(value, true),
              "value for " << key << ": type of '" << value << "' is not Float");
    return fromStr<float>(value);
}

size_t CommandLineParser::getSize_t(const std::string& key) const {
    const std::string value = getString(key);
    KZ_ASSERT(isNumeric(value, false) && value[0] != '-',
              "value for " << key << ": type of '" << value << "' is not Size_t");
    return fromStr<size_t>(value);
}

bool CommandLineParser::getBool(const std::string& key) const {
    static const char* const WORDS[][2] = {
        {"True", "False"}, {"true", "false"}, {"TRUE", "FALSE"}, {"yes", "no"}, {"1", "0"}};
    const std::string value = getString(key);
    for (const auto& pair : WORDS) {
        if (value == pair[0]) return true;
        if (value == pair[1]) return false;
    }
    KZ_ASSERT(false, "convert error for the key '" << key << "', value '" << value);
    return false;
}

}  // namespace KZ
