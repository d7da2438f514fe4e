#include <gtest/gtest.h>

#include "DataFolder.h"
#include "Evaluation.h"
#include "PalmFrame.h"

namespace {

using namespace training;

TEST(PalmFrame, FitsThePictureOrDrawsASizeInRange) {
    const cv::Mat scene(240, 320, CV_8U, cv::Scalar(30));
    const struct {
        const char* what;
        cv::Size photo;
        double palm, shown;  ///< 0: drawn
    } rows[] = {
        {"fits", {640, 480}, 80, 40},
        {"high picture", {240, 480}, 80, 40},
        {"at the upper limit", {320, 240}, 60, 60},
        {"too large", {100, 100}, 40, 0},
        {"too small", {640, 480}, 30, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const cv::Mat photo(row.photo, CV_8U, cv::Scalar(200));
        ManifestRow label;
        label.cx = row.photo.width / 2.0;
        label.cy = row.photo.height / 2.0;
        label.palmWidth = row.palm;
        cv::Mat frame;
        const ShownPalm shown = drawPalmFrame(photo, label, scene, 5, frame);
        ASSERT_EQ(cv::Size(320, 240), frame.size());
        if (row.shown > 0) {
            EXPECT_NEAR(row.shown, shown.width, 1e-9);
        }
        EXPECT_GE(shown.width, MIN_PALM);
        EXPECT_LE(shown.width, MAX_PALM);
        EXPECT_NEAR(200, frame.at<uchar>(cv::Point(shown.centre)), 1);
    }
}

// The ring in the tree, on a few pictures of the validation set: a floor and a ceiling.
TEST(Ring, FindsPalmsAndLeavesScenesAlone) {
    if (!std::filesystem::exists(std::string(RHD_DATA_DIR) + "/manifest.csv")) {
        GTEST_SKIP() << "no pictures at " << RHD_DATA_DIR;
    }
    TemporaryFolder folder;
    std::ifstream all(std::string(RHD_DATA_DIR) + "/manifest.csv");
    std::ofstream few(folder.path("manifest.csv"));
    std::filesystem::create_symlink(std::filesystem::absolute(RHD_DATA_DIR) / "images",
                                    folder.path("images"));
    std::string line;
    std::getline(all, line);
    few << line << "\n";
    for (int row = 0; std::getline(all, line); ++row) {
        const bool palm = line.find(",val,palm,") != std::string::npos;
        const bool scene = line.find(",val,scene,") != std::string::npos;
        if ((palm && row % 71 == 0) || (scene && row % 97 == 0)) few << line << "\n";
    }
    few.close();
    const PhotoStore store(folder.path());
    const Measurement m =
        Evaluation(store, "val", 1)
            .measure(readRing(std::string(RHD_SOURCE_DIR) + "/data/trained/palm.ring"), 0);
    EXPECT_GE(m.palms.size(), 8u);
    EXPECT_GE(m.sceneGroups.size(), 5u);
    EXPECT_GE(m.recall(), 0.9);
    EXPECT_LE(m.groupsPerScene(), 1.5);
}

}  // namespace
