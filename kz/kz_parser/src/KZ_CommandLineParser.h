#pragma once

#include <istream>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace KZ {

/// Reads options from arguments or from one text. Long keys are written --key=value, or --key alone
/// for flags, short keys -k value. A value in double quotes or braces may hold blanks; the quotes
/// or braces around it are taken off. In a text, a word that begins with # comments out the rest of
/// its line. Every parser knows -h, --help (prints the usage to standard output) and -i, --import
/// (takes further arguments from a file).
///
/// What is wrong with the arguments is an assertion; an argument that is not known costs one error
/// record in the log and no more.
class CommandLineParser {
public:
    struct ValueType {
        enum Value { NONE = 0, STRING = 1, INT = 2, FLOAT = 3, BOOL = 4 };
    };

    struct SingleKeyInfo {
        std::string shortKey;  ///< may be empty
        std::string longKey;   ///< with its "--"
        int argumentsCount;    ///< 0 for a flag, else 1
        bool required;
        std::string defaultValue;
        std::string help;
        ValueType::Value valueType;
    };

    /// `header` stands at the head of the usage text.
    explicit CommandLineParser(const std::string& header = "");

    void add(const std::string& shortKey, const std::string& longKey,
             const std::string& defaultValue, bool required, ValueType::Value valueType,
             const std::string& help);
    bool hasKey(const std::string& key) const;
    /// A key that is not known is an assertion.
    void setDefaultValue(const std::string& longKey, const std::string& value);

    /// Reads arguments; `argv[0]`, the program, is left out. Values of earlier calls stay unless
    /// given again. A required key that no call has given is an assertion.
    void parse(int argc, const char** argv);
    void parse(const std::vector<std::string>& arguments);
    void parse(const std::string& text);
    /// Takes the arguments in a file, without asking for required keys.
    void import(const std::string& fileName);
    /// Forgets values and set flags.
    void reset();

    // Each takes the long or the short key; one that is not known is an assertion. The getters give
    // the default where the key was not given; text of another kind is an assertion.
    bool isSet(const std::string& key) const;
    std::string getString(const std::string& key) const;
    int getInt(const std::string& key) const;
    float getFloat(const std::string& key) const;
    bool getBool(const std::string& key) const;
    size_t getSize_t(const std::string& key) const;

    void printUsage(std::ostream& stream) const;

    /// The arguments of the last call: as given, and with those of imported files in their place.
    /// The texts have one blank between arguments.
    const std::vector<std::string>& getArgs() const { return args_; }
    const std::vector<std::string>& getAllArgs() const { return allArgs_; }
    std::string getArgsString() const;
    std::string getAllArgsStr() const;

    /// From now on all parsers of the process pass over unknown keys in silence.
    static void suppressWarnings();

    /// An optional minus, then digits, with points in any number where they are allowed.
    static bool isNumeric(const std::string& text, bool allowPoint);

private:
    using Arguments = std::vector<std::string>;

    void parseBase(const Arguments& arguments);
    void parseKeyValue(const std::string& argument);
    void setValue(size_t index, const std::string& value);
    /// The index of the key that `argument` is; -1 for an unknown one, which is reported.
    int findRecognizedKey(const std::string& argument) const;
    Arguments replaceImport(const Arguments& arguments, int depth) const;
    void checkRequiredKeysPresence() const;

    std::string header_;
    std::vector<SingleKeyInfo> keysInfo_;
    std::map<std::string, size_t> keyIndex_;
    std::map<size_t, std::string> values_;
    std::vector<bool> isSet_;
    Arguments args_;
    Arguments allArgs_;
};

}  // namespace KZ
