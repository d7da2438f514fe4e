#include <gtest/gtest.h>

#include "Composer.h"
#include "DataFolder.h"
#include "NegativeFrames.h"
#include "PositiveRenderer.h"

namespace {

using namespace training;

/// The mean over many training windows of the drawn right hand, or of its mirror image.
cv::Mat meanWindow(bool mirrored, int angle) {
    TemporaryFolder folder;
    cv::Mat hand = drawnHand();
    if (mirrored) cv::flip(hand, hand, 1);
    cv::imwrite(folder.path("hand.png"), hand);
    cv::imwrite(folder.path("scene.png"), cv::Mat(240, 320, CV_8U, cv::Scalar(70)));
    std::ofstream(folder.path("manifest.csv"))
        << "image,source,split,kind,cx,cy,palm_width,angle,side\n"
        << "hand.png,s,train,palm," << 59.5 << ",59.5," << DRAWN_PALM << ",0,"
        << (mirrored ? "LEFT" : "RIGHT") << "\nscene.png,s,train,scene,,,,,\n";
    const PhotoStore store(folder.path());
    const std::vector<int> backgrounds = {1};
    PositiveRenderer renderer(store, backgrounds);
    const WindowShape shape{"r", KZ::Size(36, 35), angle};
    Random random(12);
    cv::Mat sum(35, 36, CV_32F, cv::Scalar(0));
    for (int i = 0; i < 60; ++i) {
        Window window = renderer.render(0, store.photos()[0].rows[0], shape, random);
        EXPECT_EQ(size_t(window.baseSize.width) * window.baseSize.height, window.base.size());
        cv::accumulate(cv::Mat(35, 36, CV_8U, window.mono.data()), sum);
    }
    sum.convertTo(sum, CV_8U, 1.0 / 60);
    return sum;
}

/// The drawn hand as it fills a window when turned, counter-clockwise on the screen.
cv::Mat turnedHand(double angle) {
    cv::Mat window(35, 36, CV_8U, cv::Scalar(70)), blurred;
    Placement placement;
    placement.anchor = {59.5, 59.5};
    placement.position = {18, 17};
    placement.scale = 36 / WindowShape::PER_PALM / DRAWN_PALM;
    placement.turn = angle;
    paste(drawnHand(), placement, 1, 1, window);
    cv::GaussianBlur(window, blurred, {0, 0}, 1.5);
    return blurred;
}

// What each cascade is trained on: a right hand, whichever hand the photograph shows, turned to the
// cascade's angle, in the middle of the window at the window's scale.
TEST(PositiveRenderer, TurnsHandsToTheCascadesAngleAsRightHands) {
    for (const int angle : {-30, 0, 30}) {
        for (const bool mirrored : {false, true}) {
            SCOPED_TRACE(testing::Message() << angle << (mirrored ? " left" : " right"));
            const cv::Mat mean = meanWindow(mirrored, angle);
            const double own = correlation(mean, turnedHand(angle));
            EXPECT_GT(own, 0.93);
            for (const int other : {-60, -30, 0, 30, 60}) {
                if (other == angle) continue;
                EXPECT_LT(correlation(mean, turnedHand(other)), own - 0.03);
            }
            cv::Mat thumbLeft;
            cv::flip(turnedHand(-angle), thumbLeft, 1);
            EXPECT_LT(correlation(mean, thumbLeft), own - 0.03);
        }
    }
}

TEST(Composer, PastesWhereThePlacementSaysAndFadesAtTheEdges) {
    const cv::Mat photo(40, 60, CV_8U, cv::Scalar(200));
    cv::Mat frame(100, 120, CV_8U, cv::Scalar(0));
    Placement placement;
    placement.anchor = {29.5, 19.5};
    placement.position = {60, 50};
    placement.scale = 0.5;
    paste(photo, placement, 8, 1, frame);
    // 30 by 20 pixels around (60, 50); 8 picture pixels fade over 4 frame pixels.
    EXPECT_EQ(200, frame.at<uchar>(50, 60));
    EXPECT_EQ(200, frame.at<uchar>(50, 51));
    EXPECT_NEAR(100, frame.at<uchar>(50, 47), 30);
    EXPECT_EQ(0, frame.at<uchar>(50, 44));
    EXPECT_EQ(0, frame.at<uchar>(39, 60));
    EXPECT_EQ(0, frame.at<uchar>(61, 60));
}

// No pixel of an earlier frame shines through: the outcome would depend on the threads.
TEST(Composer, ScenesFillTheFrame) {
    cv::Mat scene(90, 140, CV_8U);
    cv::RNG(3).fill(scene, cv::RNG::UNIFORM, 100, 200);
    for (uint64_t seed = 0; seed < 40; ++seed) {
        cv::Mat a(60, 80, CV_8U, cv::Scalar(0)), b(60, 80, CV_8U, cv::Scalar(255));
        Random first(seed), second(seed);
        fillWithScene(scene, 1.8, first, a);
        fillWithScene(scene, 1.8, second, b);
        ASSERT_EQ(0, cv::norm(a, b, cv::NORM_INF)) << "seed " << seed;
        coverWithScene(scene, b);
        ASSERT_GE(*std::min_element(b.begin<uchar>(), b.end<uchar>()), 100);
    }
}

TEST(HandZone, TakesWindowsOfTheHandsPlaceAndSize) {
    const HandZone zone{{100, 100}, 60};
    const struct {
        double x, y, width;
        bool shows;
    } rows[] = {{100, 100, 60, true},  {128, 100, 60, true},  {131, 100, 60, false},
                {122, 122, 60, false}, {100, 100, 23, false}, {100, 100, 25, true},
                {100, 100, 149, true}, {100, 100, 151, false}};
    for (const auto& row : rows) {
        EXPECT_EQ(row.shows, zone.shows({row.x, row.y}, row.width)) << row.x << " " << row.width;
    }
}

}  // namespace
