#include <fstream>

#include "ClassifierRing.h"
#include "KZ_Assert.h"
#include "KZ_Timer.h"

namespace {

using Config = std::map<std::string, std::string>;

std::string configValue(const Config& config, const std::string& key, const std::string& absent) {
    const auto entry = config.find(key);
    return entry == config.end() ? absent : entry->second;
}

std::string baseName(const std::string& path) {
    return path.substr(path.find_last_of('/') + 1);
}

// A text that neither ends nor continues the line comment that it stands in.
std::string commentText(std::string text) {
    for (char& c : text)
        if (c == '\n' || c == '\r' || c == '\\') c = ' ';
    return text;
}

void writeEscaped(std::ostream& stream, char c) {
    const unsigned char code = static_cast<unsigned char>(c);
    // A question mark could be part of a trigraph.
    if (c == '"' || c == '\\' || c == '?') {
        stream << '\\' << c;
    } else if (code >= 32 && code < 127) {
        stream << c;
    } else {
        stream << '\\' << (code >> 6) << (code >> 3 & 7) << (code & 7);
    }
}

// A string literal, in pieces of one line of text each.
void writeLiteral(std::ostream& stream, const std::string& text) {
    stream << '"';
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\n') {
            writeEscaped(stream, text[i]);
        } else {
            stream << "\\n";
            if (i + 1 < text.size()) stream << "\"\n        \"";
        }
    }
    stream << '"';
}

void writeHead(std::ostream& stream, const std::string& fileName, const Config& config) {
    stream << "// Auto-generated file, made by: "
           << commentText(configValue(config, "command", "train_cascade")) << ". Do not edit!\n"
           << "//\n"
           << "// @file " << commentText(baseName(fileName)) << "\n"
           << "// @brief This file contains previously trained set of classifiers.\n"
           << "//\n"
           << "// The Ormuz project trains cascades that find one kind of object in pictures.\n"
           << "// A set holds one cascade for each trained angle of the object; those for other\n"
           << "// angles, and for its mirror image, are derived when the program runs.\n"
           << "// @author the Ormuz project's training program\n"
           << "\n"
           << "#include \"ClassifierMap.h\"\n"
           << "\n"
           << "// Creation time: "
           << commentText(configValue(config, "creationTime", KZ::fullTime())) << "\n"
           << "\n"
           << "#ifdef WIN32\n"
           << "#define DLL_DECLSPEC __declspec(dllexport)\n"
           << "#else\n"
           << "#define DLL_DECLSPEC __attribute__ ((visibility (\"default\")))\n"
           << "#endif\n"
           << "\n";
}

void writeDetectorFunctions(std::ostream& stream, const std::string& name) {
    stream << "KZ::SharedPtr<BaseDetector> " << name
           << "(const PatternDetector::Parameters& parameters, "
              "const KZ::AngleRange& angleRange) {\n"
           << "    ClassifierRing* pRing = " << name << "();\n"
           << "    static std::map<std::string, KZ::SharedPtr<BaseDetector> > mapDetectors;\n"
           << "    const std::string key = "
              "KZ::toStr(angleRange) + \"_\" + KZ::toStr(parameters);\n"
           << "    KZ::SharedPtr<BaseDetector>& detector = mapDetectors[key];\n"
           << "    if (!detector)\n"
           << "        detector = KZ::SharedPtr<BaseDetector>(\n"
           << "            new PatternDetector(pRing, angleRange, KZ::Side::BOTH, parameters));\n"
           << "    return detector;\n"
           << "}\n"
           << "\n"
           << "KZ::SharedPtr<BaseDetector> " << name
           << "(const PatternDetector::Parameters& parameters) {\n"
           << "    return " << name << "(parameters, KZ::AngleRange(-30, 30));\n"
           << "}\n";
}

}  // namespace

void ClassifierRing::saveHeader(const std::string& fileName) const {
    std::ofstream file(fileName, std::ios::binary);
    KZ_ASSERT(file, "cannot open file '" << fileName);
    writeSource(file, fileName);
    file.close();
    KZ_ASSERT(file, "cannot write file '" << fileName);
}

void ClassifierRing::writeSource(std::ostream& stream, const std::string& fileName) const {
    const std::string ringName = configValue(config, "ringName", name);
    writeHead(stream, fileName, config);
    for (size_t i = 0; i < baseClassifiers_.size(); ++i)
        baseClassifiers_[i]->writeClassifier(stream, ringName + "_r" + std::to_string(i));
    writeRingFunction(stream, ringName);
    writeDetectorFunctions(stream, ringName);
}

void ClassifierRing::writeRingFunction(std::ostream& stream, const std::string& ringName) const {
    const size_t numCascades = baseClassifiers_.size();
    const auto cascadeName = [&](size_t i) { return ringName + "_r" + std::to_string(i); };
    stream << "extern \"C\" {\n"
           << "\n"
           << "DLL_DECLSPEC ClassifierRing* " << ringName << "() {\n"
           << "    static ClassifierRing* pRing = NULL;\n"
           << "    if (pRing)\n"
           << "        return pRing;\n";
    for (size_t i = 0; i < numCascades; ++i)
        stream << "    CascadedClassifier& " << cascadeName(i) << "_cascadedClassifier = build_"
               << cascadeName(i) << "();\n";
    stream << "    std::vector<CascadedClassifier*> classifiersVec;\n";
    for (size_t i = 0; i < numCascades; ++i)
        stream << "    classifiersVec.push_back(&" << cascadeName(i) << "_cascadedClassifier);\n";
    stream << "    static ClassifierRing ring(classifiersVec);\n"
           << "    pRing = &ring;\n"
           << "    ring.setName(";
    writeLiteral(stream, name);
    stream << ");\n"
           << "    ring.generatePossibilities();\n"
           << "    mapStringString config; \n";
    for (const auto& entry : config) {
        stream << "    config[";
        writeLiteral(stream, entry.first);
        stream << "] = ";
        writeLiteral(stream, entry.second);
        stream << ";\n";
    }
    stream << "    ring.setConfig(config);\n";
    if (!log.empty()) {
        stream << "    ring.log =\n        ";
        writeLiteral(stream, log);
        stream << ";\n";
    }
    stream << "    return &ring;\n"
           << "}\n"
           << "\n"
           << "}\n"
           << "\n";
}
