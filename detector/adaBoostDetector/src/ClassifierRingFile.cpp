#include <fstream>
#include <iterator>

#include "ClassifierRing.h"
#include "KZ_Assert.h"
#include "KZ_FileUtils.h"
#include "VoteTable.h"

void ClassifierRing::save(const std::string& path) const {
    std::ofstream file(path, std::ios::binary);
    KZ_ASSERT(file, "cannot open file '" << path);
    file << name << '\n' << baseClassifiers_.size() << '\n';
    for (const KZ::SharedPtr<CascadedClassifier>& cascade : baseClassifiers_) {
        cascade->save(file);
        file << '\n';
    }
    file << "config\n";
    for (const auto& entry : config) file << entry.first << '=' << entry.second << '\n';
    file << log;
    file.close();
    KZ_ASSERT(file, "cannot write file '" << path);
}

void ClassifierRing::load(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    KZ_ASSERT(file, "cannot open file '" << path);
    KZ_ASSERT(KZ::getFileExtention(path) == ".ring", "only ring files supported");
    std::getline(file, name);
    readCascades(file);
    generatePossibilities();
    readConfig(file);
}

void ClassifierRing::readCascades(std::istream& stream) {
    classifiers_.clear();
    baseClassifiers_.clear();
    const int count = VoteTable::readNumber(stream, 0, KZ::maxValue<int>());
    for (int i = 0; i < count; ++i) {
        const KZ::SharedPtr<CascadedClassifier> cascade(new CascadedClassifier);
        if (!cascade->load(stream)) return;
        addClassifier(cascade);
    }
}

void ClassifierRing::readConfig(std::istream& stream) {
    config.clear();
    log.clear();
    bool inConfig = false;
    for (std::string line; std::getline(stream, line);) {
        if (line == "log") {
            log.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
            return;
        }
        if (line == "config") inConfig = true;
        const size_t separator = line.find('=');
        if (inConfig && separator != std::string::npos)
            config[line.substr(0, separator)] = line.substr(separator + 1);
    }
}
