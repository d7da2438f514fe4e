// The committed files of data/sample: what the programs that read them rely on.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <opencv2/videoio.hpp>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Rows = std::vector<std::vector<std::string>>;

const std::string folder = RHD_SOURCE_DIR "/data/sample/";

Rows readRows(const std::string& name) {
    std::ifstream file(folder + name);
    std::string line;
    std::getline(file, line);
    Rows rows;
    while (std::getline(file, line)) {
        rows.emplace_back();
        std::istringstream stream(line + ",");
        for (std::string cell; std::getline(stream, cell, ',');) rows.back().push_back(cell);
    }
    return rows;
}

TEST(SampleFiles, VideoHasTheFramesOfItsTruth) {
    const std::string path = folder + "raised_palm.mp4";
    EXPECT_LT(std::filesystem::file_size(path), 1500000u);
    cv::VideoCapture video(path);
    ASSERT_TRUE(video.isOpened());
    EXPECT_EQ(640, video.get(cv::CAP_PROP_FRAME_WIDTH));
    EXPECT_EQ(480, video.get(cv::CAP_PROP_FRAME_HEIGHT));
    EXPECT_NEAR(30, video.get(cv::CAP_PROP_FPS), .01);
    size_t frames = 0;
    while (video.grab()) ++frames;
    EXPECT_EQ(readRows("truth.csv").size(), frames);
}

TEST(SampleFiles, TruthHasWhatAnEvaluationNeeds) {
    const Rows truth = readRows("truth.csv");
    for (size_t i = 0; i < truth.size(); ++i) {
        ASSERT_EQ(8u, truth[i].size()) << i;
        EXPECT_EQ(i, std::stoul(truth[i][0]));
        EXPECT_NEAR(double(i) / 30, std::stod(truth[i][1]), 1e-4);
        const bool empty = truth[i][2] == "none" || truth[i][2] == "moving";
        EXPECT_EQ(empty, truth[i][3].empty()) << i;
        if (truth[i][2] != "palm") continue;
        EXPECT_GE(std::stod(truth[i][5]), 40) << i;
        EXPECT_LE(std::stod(truth[i][5]), 120) << i;
        EXPECT_LE(std::abs(std::stod(truth[i][6])), 35) << i;
    }
    // Long enough for an evaluation: two stretches of the palm, three of nothing, one shake.
    std::map<std::string, int> stretches;
    for (size_t begin = 0, end = 0; begin < truth.size(); begin = end) {
        while (end < truth.size() && truth[end][2] == truth[begin][2]) ++end;
        if (end - begin >= 25) ++stretches[truth[begin][2]];
    }
    EXPECT_EQ(2, stretches["palm"]);
    EXPECT_EQ(3, stretches["none"]);
    EXPECT_EQ(1, stretches["moving"]);
    EXPECT_EQ("none", truth.front()[2]);
    EXPECT_EQ("none", truth.back()[2]);
}

// A gate on the smoothed change of the reading from frame to frame closes during the shake and
// nowhere else, and at rest the picture stands upright.
TEST(SampleFiles, AccelerationShakesWhereTheTruthSaysMoving) {
    const Rows truth = readRows("truth.csv"), readings = readRows("acceleration.csv");
    double last[3] = {}, average = 0;
    int closedWhileMoving = 0, sinceMoving = 1000;
    for (size_t i = 0; i < truth.size(); ++i) {
        // The latest reading at the frame's time, 10 for 3 frames.
        const auto& reading = readings.at(i * 10 / 3);
        double change = 0, now[3];
        for (int k = 0; k < 3; ++k) {
            now[k] = std::stod(reading[k + 1]);
            change += i == 0 ? 0 : (now[k] - last[k]) * (now[k] - last[k]);
            last[k] = now[k];
        }
        average = .9 * average + .1 * std::sqrt(change);
        const bool moving = truth[i][2] == "moving";
        sinceMoving = moving ? 0 : sinceMoving + 1;
        if (moving) closedWhileMoving += average > .6;
        if (sinceMoving > 15) {
            EXPECT_LT(average, .5) << i;
        }
        if (!moving) {
            EXPECT_EQ(0, -std::atan2(now[1], now[0])) << i;
        }
    }
    EXPECT_GT(closedWhileMoving, 18);
}

}  // namespace
