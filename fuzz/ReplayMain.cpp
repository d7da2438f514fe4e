#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "FuzzTarget.h"

// Stands in for libFuzzer in ordinary builds: runs the target on files and on folders of files.

namespace {

using Paths = std::vector<std::filesystem::path>;

Paths inputFiles(int count, char** arguments) {
    Paths files;
    for (int i = 0; i < count; ++i) {
        if (!std::filesystem::is_directory(arguments[i])) {
            files.push_back(arguments[i]);
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i]))
            if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool replay(const std::filesystem::path& path) {
    // Named before it runs: a crash gives no second chance.
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(file)),
                                  std::istreambuf_iterator<char>());
    if (!file) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        return false;
    }
    // A copy without spare room, so that sanitizers see an overread.
    const std::vector<uint8_t> exact(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    LLVMFuzzerInitialize(&argc, &argv);
    const Paths files = inputFiles(argc - 1, argv + 1);
    if (files.empty()) {
        std::fprintf(stderr, "no inputs. Usage: %s FILE_OR_FOLDER...\n", argv[0]);
        return 2;
    }
    return std::all_of(files.begin(), files.end(), replay) ? 0 : 1;
}
