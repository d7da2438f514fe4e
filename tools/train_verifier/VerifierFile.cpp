#include "VerifierFile.h"

#include "VerifierDesign.h"

namespace training {

void writeVerifier(const NnDetector& network, const std::string& path) {
    replaceFile(path, [&](std::ostream& file) {
        KZ::ArchiveO archive(file);
        archive& network;
    });
}

NnDetector readVerifier(int verifier, const std::string& path) {
    if (!std::ifstream(path)) throw Failure(path + ": cannot be opened; give a network file");
    NnDetector network;
    network.load(path);
    const std::string& name = verifierDesign(verifier).name;
    if (network.getName() != name) {
        throw Failure(path + ": holds the network \"" + network.getName() + "\"; " + name +
                      " belongs here");
    }
    return network;
}

void writeVerifierSource(const NnDetector& network, const std::string& path) {
    replaceFile(path, [&](std::ostream& file) { network.saveToCpp(file, network.getName()); });
}

std::string networkPath(const std::string& folder, int verifier) {
    return folder + "/" + verifierDesign(verifier).name + ".nn";
}

std::string sourcePath(const std::string& folder, int verifier) {
    return folder + "/" + verifierDesign(verifier).name + ".cpp";
}

void emitVerifiers(const std::string& networks, const std::string& sources) {
    for (int i = 0; i < VERIFIERS; ++i) {
        writeVerifierSource(readVerifier(i, networkPath(networks, i)), sourcePath(sources, i));
    }
}

}  // namespace training
