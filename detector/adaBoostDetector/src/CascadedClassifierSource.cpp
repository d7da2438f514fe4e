#include <functional>

#include "CascadedClassifier.h"

namespace {

using Stages = std::vector<StrongClassifier>;
using StageNumber = std::function<long(const StrongClassifier&)>;

// "<head><name>[n] = {a, b, ...};" with one number a stage.
void writeStageNumbers(std::ostream& stream, const std::string& head, const std::string& name,
                       const Stages& stages, const StageNumber& number) {
    stream << head << name << "[" << stages.size() << "] = {";
    for (size_t i = 0; i < stages.size(); ++i) stream << (i ? ", " : "") << number(stages[i]);
    stream << "};\n";
}

void writeStageTables(std::ostream& stream, const std::string& name, const Stages& stages) {
    writeStageNumbers(stream, "    int set_threshold_", name, stages,
                      [](const StrongClassifier& stage) { return stage.threshold; });
    const std::string count = "    short set_weak_classifiers_";
    writeStageNumbers(stream, count + "rmct_n_", name, stages, [](const StrongClassifier& stage) {
        return static_cast<long>(stage.rmctClassifiers().size());
    });
    writeStageNumbers(stream, count + "haar_n_", name, stages, [](const StrongClassifier& stage) {
        return static_cast<long>(stage.haarClassifiers().size());
    });
    writeStageNumbers(stream, count + "hog_n_", name, stages, [](const StrongClassifier& stage) {
        return static_cast<long>(stage.hogClassifiers().size());
    });
}

// The elements of row j that `first` to `last` name, such as "w[j][0], w[j][1]".
std::string rowElements(const std::string& table, int first, int last) {
    std::string text;
    for (int i = first; i <= last; ++i)
        text += (i > first ? ", " : "") + table + "[j][" + std::to_string(i) + "]";
    return text;
}

void writeLoopHead(std::ostream& stream, const char* kind, const std::string& name,
                   const std::string& stage) {
    stream << "        end += set_weak_classifiers_" << kind << "_n_" << name << "[" << stage
           << "];\n"
           << "        for (; j < end; ++j) {\n";
}

void writeStage(std::ostream& stream, const std::string& name, const std::string& stage) {
    const std::string w = "weak_classifiers_" + name + "_" + stage;
    const auto rect = [&w](int first) { return "(" + rowElements(w, first, first + 3) + ")"; };
    stream << "    {\n"
           << "        int j = 0;\n"
           << "        int end = 0;\n"
           << "        _strong_classifier.reset();\n";
    writeLoopHead(stream, "rmct", name, stage);
    stream << "            _weak_rmct.set(" << rowElements(w, 0, 1) << ");\n"
           << "            _weak_rmct.setData(" << w << "[j] + 2);\n"
           << "            _strong_classifier.addRmctClassifier(_weak_rmct);\n"
           << "        }\n";
    writeLoopHead(stream, "haar", name, stage);
    stream << "            KZ::Rect allRect" << rect(0) << ";\n"
           << "            KZ::Rect posRect" << rect(4) << ";\n"
           << "            _weak_haar.set(allRect, posRect, " << w << "[j][8]);\n"
           << "            _weak_haar.setData( " << w << "[j] + 8);\n"
           << "            _strong_classifier.addHaarClassifier(_weak_haar);\n"
           << "        }\n";
    writeLoopHead(stream, "hog", name, stage);
    stream << "            _weak_hog.setBlock(KZ::Rect" << rect(0) << ");\n"
           << "            _weak_hog.setCell(KZ::Rect" << rect(4) << ");\n"
           << "            _weak_hog.setSector(" << w << "[j][8]);\n"
           << "            _weak_hog.setData((KZ::schar*) " << w << "[j] + 9);\n"
           << "            _strong_classifier.addHogClassifier(_weak_hog);\n"
           << "        }\n"
           << "        _strong_classifier.setThreshold( set_threshold_" << name << "[" << stage
           << "]);\n"
           << "        " << name << "_cascadedClassifier.addStrongClassifier(_strong_classifier);\n"
           << "    }\n";
}

std::string sizeText(const KZ::Size& size) {
    return "KZ::Size(" + std::to_string(size.width) + ", " + std::to_string(size.height) + ")";
}

}  // namespace

void CascadedClassifier::writeClassifier(std::ostream& stream,
                                         const std::string& cascadeName) const {
    const std::string object = cascadeName + "_cascadedClassifier";
    stream << "static CascadedClassifier& build_" << cascadeName << "() {\n";
    writeStageTables(stream, cascadeName, strongClassifiers);
    for (size_t i = 0; i < strongClassifiers.size(); ++i)
        strongClassifiers[i].writeStrongClassifier(stream, cascadeName + "_" + std::to_string(i));

    stream << "    static CascadedClassifier " << object << ";\n"
           << "    StrongClassifier _strong_classifier;\n"
           << "    WeakClassifierRmct _weak_rmct(KZ::BasePoint<KZ::schar>(0, 0));\n"
           << "    WeakClassifierHaar _weak_haar;\n"
           << "    WeakClassifierHog _weak_hog;\n"
           << "    " << object << ".setMonoSize(" << sizeText(monoSize) << ");\n"
           << "    " << object << ".setBaseSize(" << sizeText(baseSize_) << ");\n"
           << "    " << object << ".setAngle(" << angle << ");\n"
           << "    " << object << ".setName(\"" << cascadeName << "\");\n"
           << "    " << object << ".setSymmetry(" << (side == KZ::Side::BOTH ? "true" : "false")
           << ");\n";
    for (size_t i = 0; i < strongClassifiers.size(); ++i)
        writeStage(stream, cascadeName, std::to_string(i));
    stream << "    return " << object << ";\n"
           << "}\n\n";
}
