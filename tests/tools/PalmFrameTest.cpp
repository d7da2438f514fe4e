#include <gtest/gtest.h>

#include "PalmFrame.h"

namespace {

using namespace training;

TEST(PalmFrame, FitsThePictureOrDrawsASizeInRange) {
    const cv::Mat scene(240, 320, CV_8U, cv::Scalar(30));
    // The picture's size, the palm in it, and its width in the frame or 0 where that is drawn.
    const double rows[][4] = {{640, 480, 80, 40},
                              {240, 480, 80, 40},
                              {320, 240, 60, 60},
                              {100, 100, 40, 0},
                              {640, 480, 30, 0}};
    for (const auto& row : rows) {
        const cv::Mat photo(cv::Size2d(row[0], row[1]), CV_8U, cv::Scalar(200));
        ManifestRow label;
        label.cx = row[0] / 2;
        label.cy = row[1] / 2;
        label.palmWidth = row[2];
        cv::Mat frame;
        const ShownPalm shown = drawPalmFrame(photo, label, scene, 5, frame);
        ASSERT_EQ(cv::Size(320, 240), frame.size());
        EXPECT_NEAR(row[3] > 0 ? row[3] : shown.width, shown.width, 1e-9);
        EXPECT_GE(shown.width, MIN_PALM);
        EXPECT_LE(shown.width, MAX_PALM);
        EXPECT_NEAR(200, frame.at<uchar>(cv::Point(shown.centre)), 1);
    }
}

}  // namespace
