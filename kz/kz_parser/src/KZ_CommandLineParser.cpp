#include "KZ_CommandLineParser.h"

#include <fstream>
#include <iostream>
#include <sstream>

#include "KZ_ArgumentText.h"
#include "KZ_Assert.h"
#include "KZ_Utils.h"

namespace KZ {

namespace {

const int DEEPEST_IMPORT = 16;

bool areWarningsSuppressed = false;

bool checkLongKey(const std::string& key) {
    return key.size() >= 4 && key.compare(0, 2, "--") == 0;
}

std::string joinedByBlanks(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
    return text;
}

}  // namespace

void CommandLineParser::suppressWarnings() {
    areWarningsSuppressed = true;
}

CommandLineParser::CommandLineParser(const std::string& header) : header_(header) {
    add("-h", "--help", "", false, ValueType::NONE, "[Parser] Print help");
    add("-i", "--import", "", false, ValueType::STRING,
        "[Parser] Load command line parameters from file");
}

void CommandLineParser::add(const std::string& shortKey, const std::string& longKey,
                            const std::string& defaultValue, bool required,
                            ValueType::Value valueType, const std::string& help) {
    const size_t index = keysInfo_.size();
    keysInfo_.push_back({shortKey, longKey, valueType == ValueType::NONE ? 0 : 1, required,
                         defaultValue, help, valueType});
    isSet_.push_back(false);
    if (!shortKey.empty()) keyIndex_[shortKey] = index;
    if (!longKey.empty()) keyIndex_[longKey] = index;
}

bool CommandLineParser::hasKey(const std::string& key) const {
    return keyIndex_.count(key) != 0;
}

void CommandLineParser::setDefaultValue(const std::string& longKey, const std::string& value) {
    KZ_ASSERT(keyIndex_.find(longKey) != keyIndex_.end(), "key " << longKey << " is not set");
    keysInfo_[keyIndex_[longKey]].defaultValue = value;
}

void CommandLineParser::parse(int argc, const char** argv) {
    Arguments arguments;
    for (int i = 1; i < argc; ++i) arguments.push_back(argv[i]);
    parse(arguments);
}

void CommandLineParser::parse(const std::string& text) {
    std::istringstream stream(text);
    parse(parseStream(stream));
}

void CommandLineParser::parse(const Arguments& arguments) {
    args_ = fixArgs(arguments);
    allArgs_ = replaceImport(args_, 0);
    parseBase(allArgs_);
    if (isSet("--help")) printUsage(std::cout);
    checkRequiredKeysPresence();
}

void CommandLineParser::import(const std::string& fileName) {
    std::ifstream file(fileName.c_str());
    KZ_ASSERT(file.is_open(), "Cannot read file '" << fileName);
    args_ = fixArgs(parseStream(file));
    allArgs_ = replaceImport(args_, 1);
    parseBase(allArgs_);
}

void CommandLineParser::reset() {
    values_.clear();
    isSet_.assign(keysInfo_.size(), false);
}

std::vector<std::string> CommandLineParser::replaceImport(const Arguments& args, int depth) const {
    Arguments result;
    for (auto it = args.begin(); it != args.end(); ++it) {
        std::string key = *it;
        std::string name;
        splitKeyValue(*it, key, name);
        if (key != "--import" && *it != "-i") {
            result.push_back(*it);
            continue;
        }
        if (key == *it) {
            ++it;
            KZ_ASSERT(it != args.end(), "no argument to -i");
            name = *it;
        }
        // A file that imports itself would never end.
        KZ_ASSERT(depth < DEEPEST_IMPORT, "imports are nested too deep: " << name);
        std::ifstream file(getRawValue(name).c_str());
        KZ_ASSERT(file.is_open(), "can't open file " << getRawValue(name));
        const Arguments imported = replaceImport(fixArgs(parseStream(file)), depth + 1);
        result.insert(result.end(), imported.begin(), imported.end());
    }
    return result;
}

void CommandLineParser::parseBase(const Arguments& arguments) {
    for (size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i].find('=') != std::string::npos) {
            parseKeyValue(arguments[i]);
            continue;
        }
        const int found = findRecognizedKey(arguments[i]);
        if (found < 0) continue;
        const size_t currentKeyIndex = static_cast<size_t>(found);
        if (keysInfo_[currentKeyIndex].argumentsCount == 0) {
            setValue(currentKeyIndex, "");
        } else {
            const int argc = static_cast<int>(arguments.size() - i) - 1;
            KZ_ASSERT(!(argc < keysInfo_[currentKeyIndex].argumentsCount),
                      "key '" << arguments[i] << "' has less than required count of arguments");
            setValue(currentKeyIndex, arguments[++i]);
        }
    }
}

void CommandLineParser::parseKeyValue(const std::string& argument) {
    std::string key;
    std::string value;
    splitKeyValue(argument, key, value);
    KZ_ASSERT(checkLongKey(key), "key '" << key << "' is not a long key");
    const auto found = keyIndex_.find(key);
    if (found != keyIndex_.end()) {
        setValue(found->second, value);
    } else if (!areWarningsSuppressed) {
        KZ_LOG_ERROR("unrecognized key " << key);
    }
}

void CommandLineParser::setValue(size_t index, const std::string& value) {
    values_[index] = getRawValue(value);
    isSet_[index] = true;
}

int CommandLineParser::findRecognizedKey(const std::string& argument) const {
    const std::string* arg = &argument;
    const auto found = keyIndex_.find(*arg);
    if (found == keyIndex_.end()) {
        if (!areWarningsSuppressed) KZ_LOG_ERROR("Unrecognized key: " << *arg);
        return -1;
    }
    const size_t index = found->second;
    KZ_ASSERT(!((keysInfo_[index].longKey == *arg) && (keysInfo_[index].argumentsCount > 0)),
              "'" << *arg << "' is a long key. Please, use '--long-key=value' syntax");
    return static_cast<int>(index);
}

void CommandLineParser::checkRequiredKeysPresence() const {
    std::string missed;
    for (size_t i = 0; i < keysInfo_.size(); ++i) {
        const SingleKeyInfo& info = keysInfo_[i];
        if (info.required && !isSet_[i])
            missed += " " + (info.longKey.empty() ? info.shortKey : info.longKey);
    }
    KZ_ASSERT(missed.empty(), "some required key(s) missed:" << missed);
}

void CommandLineParser::printUsage(std::ostream& stream) const {
    static const char* const KINDS[] = {"", "STRING", "INT", "FLOAT", "BOOL"};
    if (!header_.empty()) stream << header_ << "\n";
    for (const SingleKeyInfo& info : keysInfo_) {
        stream << info.shortKey;
        if (!info.shortKey.empty() && !info.longKey.empty()) stream << ", ";
        stream << info.longKey;
        if (info.argumentsCount > 0) stream << "=" << KINDS[info.valueType];
        if (info.required) stream << "    [required]";
        stream << "\n";
        for (const std::string& line : split(info.help, '\n')) stream << "   " << line << "\n";
        stream << " \n";
    }
}

std::string CommandLineParser::getArgsString() const {
    return joinedByBlanks(args_);
}

std::string CommandLineParser::getAllArgsStr() const {
    return joinedByBlanks(allArgs_);
}

}  // namespace KZ
