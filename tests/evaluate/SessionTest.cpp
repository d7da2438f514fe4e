#include <gtest/gtest.h>

#include <opencv2/imgproc.hpp>
#include <opencv2/videoio.hpp>

#include "EngineSession.h"

namespace {

using evaluate::EngineSession;
using evaluate::FrameAnswer;
using evaluate::Work;

EngineSession& session() {
    static EngineSession only;
    return only;
}

/// A frame of the sample clip at the detector's size.
cv::Mat clipFrame(int number) {
    cv::VideoCapture clip(RHD_SOURCE_DIR "/data/sample/raised_palm.mp4");
    cv::Mat picture, grey, small;
    for (int i = 0; i <= number; ++i) clip.read(picture);
    cv::cvtColor(picture, grey, cv::COLOR_BGR2GRAY);
    cv::resize(grey, small, {320, 240}, 0, 0, cv::INTER_AREA);
    return small;
}

std::vector<Work> workOf(const std::vector<FrameAnswer>& answers) {
    std::vector<Work> work;
    for (const FrameAnswer& answer : answers) work.push_back(answer.look.work);
    return work;
}

// Where nothing is seen the chain looks at every third frame; the seed says at which first.
TEST(Session, BeginsAtThePhaseOfTheSeed) {
    const cv::Mat nothing(240, 320, CV_8U, cv::Scalar(110));
    for (const uint64_t seed : {4ull, 6ull, 8ull}) {
        std::vector<Work> expected(7, Work::NONE);
        for (size_t i = 2 - seed % 3; i < expected.size(); i += 3) expected[i] = Work::SCAN;
        EXPECT_EQ(expected, workOf(session().showStill(nothing, 7, seed))) << seed;
    }
}

// Answers depend on the still and its seed, not on what was shown before, and what the stages saw
// lies where the report does.
TEST(Session, ForgetsWhatItSaw) {
    const cv::Mat right = clipFrame(75), left = clipFrame(260);
    const std::vector<FrameAnswer> first = session().showStill(right, 9, 5);
    session().showStill(left, 5, 1);
    const std::vector<FrameAnswer> again = session().showStill(right, 9, 5);
    ASSERT_EQ(workOf(first), workOf(again));
    bool tracked = false, reported = false;
    for (size_t i = 0; i < first.size(); ++i) {
        EXPECT_EQ(first[i].reported, again[i].reported);
        EXPECT_EQ(first[i].rect, again[i].rect);
        EXPECT_EQ(first[i].look.place, again[i].look.place);
        for (int k = 0; k < 3; ++k) {
            EXPECT_EQ(first[i].look.stages[k].score, again[i].look.stages[k].score);
        }
        tracked = tracked || first[i].look.work == Work::TRACK;
        if (!first[i].reported) continue;
        reported = true;
        ASSERT_TRUE(first[i].look.found());
        const cv::Rect2d both = first[i].rect & first[i].look.place;
        EXPECT_GT(both.area(), 0.9 * first[i].look.place.area());
    }
    EXPECT_TRUE(tracked);
    EXPECT_TRUE(reported);
}

}  // namespace
