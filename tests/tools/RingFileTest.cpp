#include <gtest/gtest.h>

#include "DataFolder.h"
#include "Failure.h"
#include "RandomWindows.h"
#include "RingFile.h"

namespace {

using namespace training;

TEST(RingFile, ReadsBackWhatWasWritten) {
    TemporaryFolder folder;
    RingContent ring = randomRing(KZ::Size(35, 33), 3, 4, 21);
    ring.cascades.push_back(ring.cascades[0]);
    ring.cascades[1].shape = {"r1", KZ::Size(36, 35), -30};
    ring.cascades[1].stages[2].threshold = -77;
    ring.config = {{"a", "1=2"}, {"b", ""}};
    ring.log = "stage 1\nstage 2\n";
    const std::string path = folder.path("x.ring");
    writeRing(ring, path);
    const RingContent read = readRing(path);
    EXPECT_EQ(ring.config, read.config);
    EXPECT_EQ(ring.log, read.log);
    ASSERT_EQ(2u, read.cascades.size());
    writeRing(read, folder.path("y.ring"));
    EXPECT_TRUE(textOf(path) == textOf(folder.path("y.ring")));
}

TEST(RingFile, RefusesWithoutTouchingTheOldFile) {
    TemporaryFolder folder;
    const RingContent ring = randomRing(KZ::Size(35, 33), 1, 2, 1);
    EXPECT_THROW(writeRing(ring, folder.path("absent/x.ring")), Failure);
    EXPECT_THROW(readRing(folder.path("absent.ring")), Failure);
    std::ofstream(folder.path("text.ring")) << "no ring\n";
    EXPECT_THROW(readRing(folder.path("text.ring")), Failure);
}

// Who trains anew and forgets the source, or edits the source, finds out here.
TEST(RingFile, SourceInTheTreeIsWhatTheRingGives) {
    const std::string name = "ada__ada_staticPalm_2014_12_05__17_40_12.cpp";
    TemporaryFolder folder;
    writeSource(std::string(RHD_SOURCE_DIR) + "/data/trained/palm.ring", folder.path(name));
    const std::string emitted = textOf(folder.path(name));
    const std::string inTree =
        textOf(std::string(RHD_SOURCE_DIR) + "/engine/selfie/raisedHandDetector/src/" + name);
    EXPECT_GT(emitted.size(), 100000u);
    EXPECT_TRUE(emitted == inTree) << "run the command in the first line of " << name;
}

}  // namespace
