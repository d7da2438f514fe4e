#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "DataFolder.h"
#include "VerifierDesign.h"
#include "VerifierFile.h"

namespace {

using namespace training;

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// Who trains anew and forgets the source, or edits the source, finds out here.
TEST(Verifier, SourcesInTheTreeAreWhatTheNetworksGive) {
    const std::string root = RHD_SOURCE_DIR;
    TemporaryFolder folder;
    emitVerifiers(root + "/data/trained", folder.path());
    for (int i = 0; i < VERIFIERS; ++i) {
        const std::string emitted = contentOf(sourcePath(folder.path(), i));
        EXPECT_GT(emitted.size(), 50000u);
        EXPECT_TRUE(emitted ==
                    contentOf(sourcePath(root + "/engine/selfie/raisedHandDetector/src", i)))
            << "run train_verifier emit";
    }
}

}  // namespace
