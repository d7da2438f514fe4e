#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <opencv2/imgproc.hpp>

#include "Accelerometer.h"
#include "Engine.h"
#include "Error.h"
#include "FrameSource.h"
#include "Options.h"
#include "Report.h"
#include "VideoOutput.h"

namespace {

std::string temporary(const std::string& name, const std::string& text) {
    const std::string path = testing::TempDir() + name;
    std::ofstream(path) << text;
    return path;
}

// The text of the InputError that `call` ends in.
template <typename Call>
std::string refusalOf(Call call) {
    try {
        call();
    } catch (const palm::InputError& error) {
        return error.what();
    }
    return "no refusal";
}

std::string refusedOptions(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "palm");
    palm::Options options;
    return refusalOf([&] {
        palm::readOptions(static_cast<int>(arguments.size()), const_cast<char**>(arguments.data()),
                          options);
    });
}

TEST(PalmOptions, RefusesInOneLine) {
    const struct {
        std::vector<const char*> arguments;
        const char* part;  // of the message
    } rows[] = {
        {{"a.mp4", "--camera", "/dev/video0"}, "give one input"},
        {{"a.mp4", "--size", "640x481"}, "two even numbers"},
        {{"a.mp4", "--min-distance", "100"}, "--max-distance (100) must be above"},
        {{"a.mp4", "--fov-angle", "180"}, "1 to 179"},
        {{"a.mp4", "--still-frames", "0"}, "at least 1"},
        {{"a.mp4", "--no-such"}, "--no-such"},
    };
    for (const auto& row : rows) {
        const std::string refusal = refusedOptions(row.arguments);
        EXPECT_NE(std::string::npos, refusal.find(row.part)) << refusal;
        EXPECT_EQ(std::string::npos, refusal.find('\n')) << refusal;
    }
    EXPECT_EQ("no refusal", refusedOptions({"a.mp4", "--size", "640x480", "--min-distance", "20"}));
}

TEST(PalmAccelerometer, GivesTheNewestReadingOrNamesTheBadLine) {
    const auto log =
        palm::AccelerometerLog::read(temporary("a.csv", "time_s,x,y,z\n0.5,1,2,3\n1.0,4,5,6\n"));
    EXPECT_EQ(nullptr, log.at(0.49));
    EXPECT_EQ(1, log.at(0.5)->x);
    EXPECT_EQ(3, log.at(0.99)->z);
    EXPECT_EQ(5, log.at(7)->y);
    const char* const rows[][2] = {
        {"time_s,x,y,z\n0,1,2\n", ":2: four numbers expected"},
        {"time_s,x,y,z\n0,1,2,3\n0.1,1;2;3\n", ":3: four numbers expected"},
        {"time_s,x,y,z\n1,1,2,3\n0.5,1,2,3\n", ":3: the time goes back"},
        {"time_s,x,y,z\n", "no reading"},
    };
    for (const auto& row : rows) {
        const std::string path = temporary("bad.csv", row[0]);
        const std::string refusal = refusalOf([&] { palm::AccelerometerLog::read(path); });
        EXPECT_NE(std::string::npos, refusal.find(row[1])) << refusal;
    }
}

TEST(PalmSource, RefusesWhatIsNoPictureOrVideo) {
    const auto expectRefusal = [](const char* part, auto call) {
        EXPECT_NE(std::string::npos, refusalOf(call).find(part)) << part;
    };
    expectRefusal("no such file", [] { palm::openFile("/no/such", 9); });
    expectRefusal("neither a picture nor a video",
                  [] { palm::openFile(temporary("text.mp4", "this is no video"), 9); });
    expectRefusal("cannot open the camera", [] { palm::openCamera("/dev/no-camera"); });
    expectRefusal("cannot read the picture", [] {
        palm::Frame frame;
        palm::openFile(temporary("broken.png", "PNG?"), 9)->next(frame);
    });
}

// Full-range luma, V before U, one pair per 2 by 2 block.
TEST(PalmEngine, MakesNv21) {
    cv::Mat picture(4, 6, CV_8UC3, cv::Scalar(30, 30, 30));
    picture(cv::Rect(2, 2, 2, 2)).setTo(cv::Scalar(0, 0, 200));
    std::vector<unsigned char> nv21;
    palm::toNv21(picture, nv21);
    ASSERT_EQ(36u, nv21.size());
    EXPECT_EQ(30, nv21[0]);
    EXPECT_EQ(60, nv21[2 * 6 + 2]);  // 0.299 * 200
    EXPECT_EQ(128, nv21[24]);
    EXPECT_EQ(128, nv21[25]);
    EXPECT_NEAR(228, nv21[24 + 6 + 2], 1);  // 128 + 0.713 * (200 - 60)
    EXPECT_NEAR(94, nv21[24 + 6 + 3], 1);   // 128 + 0.564 * (0 - 60)
}

TEST(PalmReport, JoinsMovingFramesAndTellsPalms) {
    palm::Report report;
    palm::Outcome moving, hit, none;
    moving.gesture = "MOVING";
    hit.gesture = "palm";
    hit.left = 10;
    hit.top = 20;
    hit.right = 110;
    hit.bottom = 140;
    hit.score = 0.5f;
    hit.angle = -30;
    EXPECT_TRUE(report.add(3, 0.1, "", moving));
    EXPECT_FALSE(report.add(4, 0.2, "", moving));
    EXPECT_FALSE(report.add(5, 0.3, "", none));
    EXPECT_TRUE(report.add(6, 0.4, "", moving));
    EXPECT_TRUE(report.add(7, 0.5, "b.jpg", hit));
    EXPECT_EQ("frame 7  t 0.500 s  palm  score 0.50  rect 10,20,110,140  angle -30  b.jpg",
              report.line());
    const auto json = nlohmann::json::parse(report.json("clip.mp4", cv::Size(640, 480)));
    ASSERT_EQ(3u, json["gestures"].size());
    EXPECT_EQ(4, json["gestures"][0]["last_frame"]);
    EXPECT_EQ(nlohmann::json::parse("[10,20,110,140]"), json["gestures"][2]["rect"]);
    EXPECT_EQ(5, json["frames"]);
    EXPECT_NE(std::string::npos, report.summary().find("palm 1, MOVING 2"));
}

TEST(PalmOutput, LeavesNothingHalfWritten) {
    const std::string path = testing::TempDir() + "half.txt";
    std::remove(path.c_str());
    EXPECT_THROW(palm::writeBeside(path, ".txt",
                                   [](const std::string& part) {
                                       std::ofstream(part) << "half";
                                       return false;
                                   }),
                 palm::WorkError);
    EXPECT_FALSE(std::ifstream(path));
    EXPECT_FALSE(std::ifstream(path + ".part.txt"));
    EXPECT_THROW(palm::writeBeside("/no/such/folder/x", ".txt",
                                   [](const std::string& part) {
                                       return static_cast<bool>(std::ofstream(part) << "x");
                                   }),
                 palm::WorkError);
}

}  // namespace
