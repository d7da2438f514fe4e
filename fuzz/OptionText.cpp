#include <sstream>
#include <string>
#include <vector>

#include "ByteReader.h"
#include "FuzzTarget.h"
#include "GRE_Interface.h"
#include "KZ_CommandLineParser.h"
#include "Session.h"
#include "VI_Interface.h"

// Option strings on each road into the library. The first byte chooses the road.

namespace {

using KZ::CommandLineParser;

CommandLineParser engineParser() {
    const auto STRING = CommandLineParser::ValueType::STRING;
    const auto INT = CommandLineParser::ValueType::INT;
    const auto FLOAT = CommandLineParser::ValueType::FLOAT;
    const auto BOOL = CommandLineParser::ValueType::BOOL;
    CommandLineParser parser("options of the engine");
    parser.add("", "--size", "Size(320, 240)", false, STRING, "frame size");
    parser.add("-f", "--flip", "false", false, BOOL, "mirror the results");
    parser.add("", "--split-stereo", "false", false, BOOL, "left half only");
    parser.add("", "--camera-flip", "false", false, BOOL, "the camera mirrors");
    parser.add("-n", "--min-distance", "30", false, INT, "nearest hand");
    parser.add("-x", "--max-distance", "100", false, INT, "farthest\nhand");
    parser.add("", "--fov-angle", "89", false, FLOAT, "field of view");
    return parser;
}

const char* const KEYS[] = {
    "--size", "-f",          "--split-stereo", "--camera-flip", "--min-distance",
    "-x",     "--fov-angle", "--import",       "--help",        "--unknown",
    ""};

void readAll(const CommandLineParser& parser) {
    for (const char* key : KEYS) {
        fuzz::accepted([&] { parser.isSet(key); });
        fuzz::accepted([&] { parser.getString(key); });
        fuzz::accepted([&] { parser.getInt(key); });
        fuzz::accepted([&] { parser.getFloat(key); });
        fuzz::accepted([&] { parser.getBool(key); });
        fuzz::accepted([&] { parser.getSize_t(key); });
    }
    std::ostringstream usage;
    parser.printUsage(usage);
}

// The arguments of a text, joined by blanks, are the same arguments.
void parseText(const std::string& text) {
    CommandLineParser parser = engineParser();
    if (!fuzz::accepted([&] { parser.parse(text); })) return;
    readAll(parser);
    CommandLineParser again = engineParser();
    fuzz::require(fuzz::accepted([&] { again.parse(parser.getArgsString()); }),
                  "the arguments of an accepted text are refused");
    fuzz::require(again.getArgs() == parser.getArgs(), "arguments change in a text");
}

std::vector<std::string> lines(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> result;
    for (std::string line; std::getline(stream, line);) result.push_back(line);
    return result;
}

void parseArguments(const std::string& text) {
    const std::vector<std::string> words = lines(text);
    std::vector<const char*> argv(1, "program");
    for (const std::string& word : words) argv.push_back(word.c_str());
    CommandLineParser parser = engineParser();
    if (fuzz::accepted([&] { parser.parse(static_cast<int>(argv.size()), argv.data()); }))
        readAll(parser);
}

void setEngineOptions(const std::string& text) {
    const fuzz::Session session;
    GRE_Init(320, 240);
    fuzz::accepted([&] { GRE_SetFrameParameters(text.c_str()); });
    fuzz::accepted([&] { GRE_SetParameters(text.c_str()); });
    fuzz::accepted([&] { GRE_SetParameters(text.c_str()); });
}

// Each line is a key and, behind a blank, its value. The second start applies all options.
void startWithParameters(const std::string& text) {
    const fuzz::Session session;
    for (const std::string& line : lines(text)) {
        const size_t blank = line.find(' ');
        if (blank == std::string::npos) {
            VI_SetParameter(line.c_str(), nullptr);
        } else {
            VI_SetParameter(line.substr(0, blank).c_str(), line.c_str() + blank + 1);
        }
    }
    fuzz::accepted([] { VI_Init(); });
    fuzz::accepted([] { VI_Init(); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using Road = void (*)(const std::string&);
    static const Road ROADS[] = {parseText, parseArguments, setEngineOptions, startWithParameters};
    fuzz::ByteReader reader(data, size);
    const Road road = reader.pick(ROADS);
    if (size < 2) return 0;
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    // Options can import any file by its name, also devices that never end.
    if (text.find('/') == std::string::npos) road(text);
    return 0;
}
