#include <algorithm>
#include <fstream>
#include <sstream>

#include "KZ_Assert.h"
#include "NnDetector.h"

std::string fixName(const std::string& name) {
    std::string fixed = name;
    std::replace(fixed.begin(), fixed.end(), '-', '_');
    std::replace(fixed.begin(), fixed.end(), '>', '_');
    return fixed;
}

namespace {

const char* const HEAD = R"(/*
 * Generated source. Do not edit: change the network file and emit it anew.
 *
 * Made by NnDetector::saveToCpp, see docs/training.md for the command.
 *
 * This file contains a previously trained network as constant tables: one
 * function per table and per layer, and at the end the function that joins
 * the layers. Nothing is read from a file, and no weight is copied.
 *
 * The weights belong to the owners of this library and are confidential
 * unless the owners say otherwise.
 */
)";

const char* const EXPORT_HEAD = R"(#ifdef __cplusplus
extern "C"
#endif //__cplusplus
// For exporting from a Windows DLL:
#ifdef WIN32
#   define DLL_DECLSPEC __declspec(dllexport)
#else
#   define DLL_DECLSPEC __attribute__ ((visibility ("default")))
#endif //WIN32
)";

std::string baseName(const std::string& fileName) {
    const size_t slash = fileName.rfind('/');
    const std::string name = slash == std::string::npos ? fileName : fileName.substr(slash + 1);
    return name.substr(0, name.find('.'));
}

void writeLayerSetUp(std::ostream& stream, const BaseLayer& layer, size_t index) {
    const std::string name = fixName(layer.name());
    stream << "    // set layer #" << index << ":\n    KZ::SharedPtr<BaseLayer> p_" << name << "(&"
           << name << "(), false);\n    nnDetector.addLayer(p_" << name << ");\n";
    for (const std::string& bottom : layer.getBottomLayersName()) {
        stream << "    p_" << name << "->addBottomLayer(p_" << fixName(bottom) << ");\n";
    }
}

}  // namespace

void NnDetector::saveToCpp(const std::string& fileName) const {
    std::ofstream file(fileName.c_str());
    KZ_ASSERT(file, "cannot open file " << fileName);
    saveToCpp(file, fixName(baseName(fileName)));
}

void NnDetector::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    const std::string space = functionName + "NameSpace";
    stream << HEAD << "#include \"NnDetector.h\"\n"
           << EXPORT_HEAD << "    DLL_DECLSPEC void " << functionName
           << "(NnDetector& detector);\n\n";
    stream << "namespace " << space << "\n{\n";
    for (const auto& layer : network_) layer->saveToCpp(stream, fixName(layer->name()));

    stream << "NnDetector& " << functionName
           << "()\n{\n    static NnDetector nnDetector;\n\n    if (nnDetector.isLoaded())\n    {\n"
              "        return nnDetector;\n    }\n\n    nnDetector.setName(\""
           << name_ << "\");\n\n    std::vector<float> meanValues;\n";
    for (const float mean : meanValues_) {
        stream << "    meanValues.push_back(" << KZ::floatText(mean) << ");\n";
    }
    stream << "    nnDetector.setMeanValues(meanValues);\n\n";
    for (size_t i = 0; i < network_.size(); ++i) writeLayerSetUp(stream, *network_[i], i);
    stream << "    nnDetector.setSize(KZ::" << size_ << ");\n\n    return nnDetector;\n}\n} //"
           << space << "\n\n";

    stream << "void " << functionName << "(NnDetector& nnDetector)\n{\n    nnDetector = " << space
           << "::" << functionName << "();\n}\n\n";
    stream << "KZ::SharedPtr<NnDetector> " << functionName
           << "()\n{\n    return KZ::SharedPtr<NnDetector>(&" << space << "::" << functionName
           << "(), false);\n}\n";
    std::istringstream log(trainLog_);
    for (std::string line; std::getline(log, line);) stream << "// " << line << "\n";
}
