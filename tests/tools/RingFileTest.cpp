#include <gtest/gtest.h>

#include <sstream>

#include "DataFolder.h"
#include "Failure.h"
#include "RandomWindows.h"
#include "RingFile.h"

namespace {

using namespace training;

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

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
    EXPECT_EQ(ring.name, read.name);
    EXPECT_EQ(ring.config, read.config);
    EXPECT_EQ(ring.log, read.log);
    ASSERT_EQ(2u, read.cascades.size());
    for (size_t c = 0; c < 2; ++c) {
        EXPECT_EQ(ring.cascades[c].shape.size, read.cascades[c].shape.size);
        EXPECT_EQ(ring.cascades[c].shape.angle, read.cascades[c].shape.angle);
        ASSERT_EQ(3u, read.cascades[c].stages.size());
        for (size_t s = 0; s < 3; ++s) {
            const StageContent &a = ring.cascades[c].stages[s], &b = read.cascades[c].stages[s];
            EXPECT_EQ(a.threshold, b.threshold);
            ASSERT_EQ(a.weak.size(), b.weak.size());
            for (size_t i = 0; i < a.weak.size(); ++i) {
                const Feature &f = a.weak[i].feature, &g = b.weak[i].feature;
                EXPECT_EQ(a.weak[i].votes, b.weak[i].votes);
                EXPECT_TRUE(f.kind == g.kind && f.x == g.x && f.y == g.y && f.outer == g.outer &&
                            f.inner == g.inner && f.sector == g.sector);
            }
        }
    }
    writeRing(read, folder.path("y.ring"));
    EXPECT_TRUE(contentOf(path) == contentOf(folder.path("y.ring")));
}

TEST(RingFile, RefusesWithoutTouchingTheOldFile) {
    TemporaryFolder folder;
    const RingContent ring = randomRing(KZ::Size(35, 33), 1, 2, 1);
    EXPECT_THROW(writeRing(ring, folder.path("absent/x.ring")), Failure);
    EXPECT_THROW(readRing(folder.path("absent.ring")), Failure);
    std::ofstream(folder.path("text.ring")) << "no ring\n";
    EXPECT_THROW(readRing(folder.path("text.ring")), Failure);
    // A folder in the place of the file cannot be replaced.
    std::filesystem::create_directories(folder.path("z.ring/inside"));
    EXPECT_THROW(writeRing(ring, folder.path("z.ring")), Failure);
    EXPECT_TRUE(std::filesystem::exists(folder.path("z.ring/inside")));
}

// Who trains anew and forgets the source, or edits the source, finds out here.
TEST(RingFile, SourceInTheTreeIsWhatTheRingGives) {
    const std::string name = "ada__ada_staticPalm_2014_12_05__17_40_12.cpp";
    TemporaryFolder folder;
    writeSource(std::string(RHD_SOURCE_DIR) + "/data/trained/palm.ring", folder.path(name));
    const std::string emitted = contentOf(folder.path(name));
    const std::string inTree =
        contentOf(std::string(RHD_SOURCE_DIR) + "/engine/selfie/raisedHandDetector/src/" + name);
    EXPECT_GT(emitted.size(), 100000u);
    EXPECT_TRUE(emitted == inTree) << "run the command in the first line of " << name;
}

}  // namespace
