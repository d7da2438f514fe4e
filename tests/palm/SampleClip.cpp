// The library, driven through its C interface, on the sample clip with its truth.

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

#include "Accelerometer.h"
#include "Engine.h"
#include "FrameSource.h"

namespace {

const std::string FOLDER = RHD_SOURCE_DIR "/data/sample/";

struct Truth {
    double time = 0;
    std::string state;
    double cx = 0, cy = 0, palmWidth = 0, angle = 0;

    // What the detector answers for: 20 to 60 pixels at half size, 35 degrees.
    bool palmInRange() const {
        return state == "palm" && palmWidth >= 40 && palmWidth <= 120 && std::fabs(angle) <= 35;
    }
};

std::vector<Truth> readTruth() {
    std::ifstream file(FOLDER + "truth.csv");
    std::vector<Truth> rows;
    std::string line;
    std::getline(file, line);
    while (std::getline(file, line)) {
        std::vector<std::string> cells;
        std::istringstream stream(line + ",");
        for (std::string cell; std::getline(stream, cell, ',');) cells.push_back(cell);
        Truth truth;
        truth.time = std::stod(cells.at(1));
        truth.state = cells.at(2);
        if (!cells.at(3).empty()) {
            truth.cx = std::stod(cells.at(3));
            truth.cy = std::stod(cells.at(4));
            truth.palmWidth = std::stod(cells.at(5));
            truth.angle = std::stod(cells.at(6));
        }
        rows.push_back(truth);
    }
    return rows;
}

const std::vector<palm::Outcome>& outcomes() {
    static const std::vector<palm::Outcome> all = [] {
        const auto source = palm::openFile(FOLDER + "raised_palm.mp4", 1);
        const auto acceleration = palm::AccelerometerLog::read(FOLDER + "acceleration.csv");
        palm::Engine engine(palm::Options(), cv::Size(640, 480));
        engine.settleAt(*acceleration.at(0));
        std::vector<palm::Outcome> found;
        palm::Frame frame;
        while (source->next(frame)) {
            if (const auto* reading = acceleration.at(frame.time)) engine.setAcceleration(*reading);
            found.push_back(engine.process(frame.picture));
        }
        return found;
    }();
    return all;
}

class SampleClip : public testing::Test {
protected:
    void SetUp() override {
        truth_ = readTruth();
        ASSERT_EQ(truth_.size(), outcomes().size());
    }
    std::vector<Truth> truth_;
};

TEST_F(SampleClip, FindsThePalmInEveryLongInterval) {
    int intervals = 0;
    for (size_t begin = 0; begin < truth_.size();) {
        size_t end = begin;
        while (end < truth_.size() && truth_[end].palmInRange()) ++end;
        if (end > begin && truth_[end - 1].time - truth_[begin].time > 1) {
            ++intervals;
            int hits = 0;
            for (size_t i = begin; i < end; ++i) hits += outcomes()[i].gesture == "palm";
            EXPECT_GT(hits, 0) << truth_[begin].time << " to " << truth_[end - 1].time << " s";
        }
        begin = std::max(end, begin + 1);
    }
    EXPECT_GE(intervals, 1);
}

// A hit may show where the palm was last seen: before the frames of rest, if it has moved on since.
TEST_F(SampleClip, PutsTheRectangleOnThePalm) {
    const size_t lag = palm::REST_FRAMES + 1;
    for (size_t i = lag; i < truth_.size(); ++i) {
        const palm::Outcome& o = outcomes()[i];
        if (o.gesture != "palm" || truth_[i].state != "palm") continue;
        double nearest = 1e9;
        for (size_t k = i - lag; k <= i; ++k) {
            if (truth_[k].palmWidth == 0) continue;
            nearest = std::min(nearest, std::hypot((o.left + o.right) / 2 - truth_[k].cx,
                                                   (o.top + o.bottom) / 2 - truth_[k].cy));
        }
        EXPECT_LT(nearest, truth_[i].palmWidth / 2) << "at " << truth_[i].time << " s";
    }
}

// A track may outlive the palm: by the frames that the confirmation remembers, and those of rest.
TEST_F(SampleClip, ReportsNothingWhereThereIsNoPalm) {
    const size_t memory = palm::REST_FRAMES + 3;
    for (const char* shown : {"none", "back", "fist"}) {
        int frames = 0;
        for (size_t i = memory; i < truth_.size(); ++i) {
            bool all = true;
            for (size_t k = i - memory; k <= i; ++k) all = all && truth_[k].state == shown;
            frames += all;
            EXPECT_FALSE(all && outcomes()[i].gesture == "palm")
                << shown << " at " << truth_[i].time << " s";
        }
        EXPECT_GT(frames, 10) << shown;
    }
}

TEST_F(SampleClip, SaysMovingWhileThePhoneShakes) {
    int shaken = 0, moving = 0;
    for (size_t i = 0; i < truth_.size(); ++i) {
        if (truth_[i].state == "moving") {
            ++shaken;
            moving += outcomes()[i].gesture == "MOVING";
        } else if (truth_[i].state == "palm") {
            EXPECT_NE("MOVING", outcomes()[i].gesture) << "at " << truth_[i].time << " s";
        }
    }
    EXPECT_GT(shaken, 20);
    EXPECT_GT(moving, shaken / 2);
}

}  // namespace
