#pragma once

#include <string>

#include "NnDetector.h"

namespace training {

/// Writes the network file beside `path` and renames, so that it is never half written. Throws
/// Failure.
void writeVerifier(const NnDetector& network, const std::string& path);
/// Throws Failure when the file cannot be opened or is not network number `verifier` of the chain.
NnDetector readVerifier(int verifier, const std::string& path);
/// Writes the source that builds the network inside the library, likewise.
void writeVerifierSource(const NnDetector& network, const std::string& path);

/// Names of both forms of network number `verifier` in a folder.
std::string networkPath(const std::string& folder, int verifier);
std::string sourcePath(const std::string& folder, int verifier);

/// Reads both networks in `networks` and writes their sources to `sources`.
void emitVerifiers(const std::string& networks, const std::string& sources);

/// Calls `write` with a stream to a new file that then takes the place of `path`. Throws Failure.
template <typename Write>
void replaceFile(const std::string& path, const Write& write);

}  // namespace training

#include <cstdio>
#include <fstream>

#include "Failure.h"

template <typename Write>
void training::replaceFile(const std::string& path, const Write& write) {
    const std::string beside = path + ".new";
    {
        std::ofstream file(beside, std::ios::binary);
        if (file) write(file);
        if (!file.flush()) {
            throw Failure(path + ": cannot be written; check that the folder exists and is yours");
        }
    }
    if (std::rename(beside.c_str(), path.c_str()) != 0) {
        throw Failure(path + ": cannot be replaced; the new content is " + beside);
    }
}
