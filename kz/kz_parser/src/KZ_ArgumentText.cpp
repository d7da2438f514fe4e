#include "KZ_ArgumentText.h"

#include "KZ_Assert.h"

namespace KZ {

namespace {

const char BLANKS[] = " \t\n\v\f\r";
const std::streamsize LONGEST_COMMENT = 10000;

// Where the value of a word begins.
size_t valueStart(const std::string& word) {
    if (word[0] == '"' || word[0] == '{') return 0;
    const size_t equals = word.find('=');
    return equals == std::string::npos ? word.size() : equals + 1;
}

char closingOf(char opening) {
    if (opening == '"') return '"';
    if (opening == '{') return '}';
    return 0;
}

// A lone opening quote does not close itself.
bool isClosed(const std::string& arg, size_t start, char closing) {
    return arg.size() > start + 1 && arg[arg.size() - 1] == closing;
}

}  // namespace

std::string trim(const std::string& text) {
    const size_t first = text.find_first_not_of(BLANKS);
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

std::vector<std::string> parseStream(std::istream& stream) {
    std::vector<std::string> words;
    std::string word;
    while (stream >> word) {
        if (word[0] == '#') {
            stream.ignore(LONGEST_COMMENT, '\n');
        } else {
            words.push_back(word);
        }
    }
    return words;
}

std::vector<std::string> fixArgs(const std::vector<std::string>& words) {
    std::vector<std::string> args;
    for (auto word = words.begin(); word != words.end(); ++word) {
        std::string arg = *word;
        KZ_ASSERT(arg != "", "empty arg");
        const size_t start = valueStart(arg);
        const char closing = start < arg.size() ? closingOf(arg[start]) : '\0';
        while (closing != 0 && !isClosed(arg, start, closing) && word + 1 != words.end())
            arg += " " + *++word;
        if (closing == '"' && !isClosed(arg, start, closing))
            KZ_FAIL_("arg[arg.size() - 1] == '\"'", "Closing '\"' isn't found: " << arg);
        if (closing == '}' && !isClosed(arg, start, closing))
            KZ_FAIL_("arg[arg.size() - 1] == '}'", "Closing } isn't found: " << arg);
        args.push_back(arg);
    }
    return args;
}

bool splitKeyValue(const std::string& text, std::string& key, std::string& value) {
    const size_t equals = text.find('=');
    if (equals == std::string::npos) return false;
    key = trim(text.substr(0, equals));
    value = trim(text.substr(equals + 1));
    return true;
}

std::string getRawValue(const std::string& value) {
    const char closing = value.empty() ? '\0' : closingOf(value[0]);
    if (closing == 0) return value;
    const bool isComplete = isClosed(value, 0, closing);
    if (closing == '"') KZ_ASSERT(isComplete, "no closing \" in " << value);
    KZ_ASSERT(isComplete, "no closing } in " << value);
    return value.substr(1, value.size() - 2);
}

}  // namespace KZ
