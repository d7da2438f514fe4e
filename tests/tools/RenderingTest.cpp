#include <gtest/gtest.h>

#include "Composer.h"
#include "DataFolder.h"
#include "FrameExposure.h"
#include "Matte.h"
#include "NegativeFrames.h"
#include "PositiveRenderer.h"

namespace {

using namespace training;

/// The mean over many training windows of the drawn right hand, or of its mirror image.
cv::Mat meanWindow(bool mirrored, int angle) {
    TemporaryFolder folder;
    cv::imwrite(folder.path("hand.png"), mirrored ? flipped(drawnHand()) : drawnHand());
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

/// The drawn hand as it fills a window when turned, where the scan is taught to see it.
cv::Mat turnedHand(double angle) {
    const double palm = 36 / WindowShape::PER_PALM * std::exp(PositiveRenderer::SETTLES_LARGER);
    const cv::Mat centred = placedHand({36, 35}, palm, angle, 1.5);
    const cv::Matx23d shift(1, 0, PositiveRenderer::SETTLES_RIGHT * palm, 0, 1,
                            PositiveRenderer::SETTLES_DOWN * palm);
    cv::Mat hand;
    cv::warpAffine(centred, hand, shift, centred.size(), cv::INTER_LINEAR, cv::BORDER_REPLICATE);
    return hand;
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
            EXPECT_LT(correlation(mean, flipped(turnedHand(-angle))), own - 0.03);
        }
    }
}

TEST(Composer, ExposuresDoWhatTheyName) {
    const cv::Mat picture = placedHand({120, 100}, 30, 0, 0.6);
    const auto exposed = [&](const Exposure& exposure) {
        Random random(8);
        cv::Mat frame = picture.clone();
        expose(exposure, random, frame);
        return frame;
    };
    EXPECT_LE(cv::norm(exposed({}), picture, cv::NORM_INF), 1) << "nothing drawn, nothing done";

    Exposure sideways;
    sideways.motion = {3, 0};
    const cv::Mat moved = exposed(sideways);
    const auto roughness = [](const cv::Mat& frame, int dx, int dy) {
        cv::Mat slopes;
        cv::Sobel(frame, slopes, CV_32F, dx, dy);
        return cv::norm(slopes, cv::NORM_L2);
    };
    EXPECT_LT(roughness(moved, 1, 0), 0.8 * roughness(picture, 1, 0));
    EXPECT_GT(roughness(moved, 0, 1), 0.8 * roughness(picture, 0, 1));

    Exposure bright;
    bright.gamma = 0.5;
    bright.contrast = 0.5;
    bright.brightness = 10;
    // The gamma makes 134 of the 70 in the corner.
    const double mean = cv::mean(picture)[0];
    EXPECT_NEAR(mean + (133.6 - mean) / 2 + 10, exposed(bright).at<uchar>(0, 0), 1.5);

    Exposure lit;
    lit.sideLight = SideLight{{1, 0}, 0.25, 0, 2};
    const cv::Mat shaded = exposed(lit);
    EXPECT_NEAR(70 * 0.25, shaded.at<uchar>(5, 0), 1.5);
    EXPECT_NEAR(70, shaded.at<uchar>(5, 119), 1.5);

    Exposure packed;
    packed.jpegQuality = 40;
    const double change = cv::norm(exposed(packed), picture, cv::NORM_L1) / picture.total();
    EXPECT_GT(change, 0.2);
    EXPECT_LT(change, 6);
}

TEST(Composer, SleevesCoverTheWristAlone) {
    for (const double angle : {-30.0, 0.0, 30.0}) {
        const double radians = angle * CV_PI / 180;
        const cv::Point2d hand(59.5, 59.5), down(std::sin(radians), std::cos(radians));
        const cv::Point2d side(down.y, -down.x), edge = hand + down * 17;
        // Fingers and palm end 0.6 palm widths below the middle.
        const std::vector<cv::Point> above = {edge + side * 99, edge - side * 99,
                                              edge - side * 99 - down * 199,
                                              edge + side * 99 - down * 199};
        cv::Mat keeps = cv::Mat::zeros(120, 120, CV_8U);
        cv::fillConvexPoly(keeps, above, cv::Scalar(255));
        for (uint64_t seed = 0; seed < 20; ++seed) {
            const cv::Mat bare(120, 120, CV_8U, cv::Scalar(255));
            cv::Mat dressed = bare.clone();
            Random random(seed);
            coverWrist(hand, 30, angle, random, dressed);
            const cv::Mat changed = dressed != bare;
            EXPECT_TRUE(changed.at<uchar>(cv::Point(hand + down * 45))) << angle << " " << seed;
            EXPECT_EQ(0, cv::countNonZero(changed & keeps)) << angle << " " << seed;
        }
    }
}

/// The drawn hand before ground that darkens evenly to one side.
cv::Mat handOnPlainGround() {
    cv::Mat picture = placedHand({120, 120}, 50, 0, 0.6);
    for (int y = 0; y < 120; ++y) {
        for (int x = 0; x < 120; ++x) {
            picture.at<uchar>(y, x) = cv::saturate_cast<uchar>(picture.at<uchar>(y, x) + x / 6);
        }
    }
    return picture;
}

TEST(Matte, FollowsTheHandOnPlainGround) {
    const cv::Mat picture = handOnPlainGround(), flat = placedHand({120, 120}, 50, 0, 0.6);
    const cv::Mat matte = matteOf(picture, {59.5, 75}, 14);
    ASSERT_EQ(picture.size(), matte.size());
    const cv::Mat hand = flat > 130, opaque = matte > 127;
    EXPECT_GT(cv::countNonZero(opaque & hand), 0.97 * cv::countNonZero(hand));
    // Gaps between fingers may close.
    cv::Mat around;
    cv::dilate(hand, around, cv::Mat(), {-1, -1}, 7);
    EXPECT_EQ(0, cv::countNonZero(opaque & ~around));

    cv::Mat clutter = picture.clone();
    cv::Mat noise(120, 120, CV_8U);
    cv::RNG(4).fill(noise, cv::RNG::UNIFORM, 0, 90);
    clutter += noise;
    EXPECT_TRUE(matteOf(clutter, {59.5, 75}, 14).empty()) << "no plain ground";
    EXPECT_TRUE(matteOf(picture, {20, 20}, 14).empty()) << "no palm where it should be";
    EXPECT_TRUE(matteOf(cv::Mat(120, 120, CV_8U, cv::Scalar(90)), {59.5, 75}, 14).empty());
}

// The scene shows beside the hand, where the ground was, and not through it.
TEST(Composer, CutOutHandsLeaveTheSceneAlone) {
    const cv::Mat picture = handOnPlainGround(), matte = matteOf(picture, {59.5, 75}, 14);
    Placement placement;
    placement.anchor = placement.position = {59.5, 59.5};
    cv::Mat frame(120, 120, CV_8U, cv::Scalar(250));
    paste(picture, placement, 4, 1, frame, matte);
    EXPECT_EQ(250, frame.at<uchar>(20, 10));
    EXPECT_EQ(250, frame.at<uchar>(100, 110));
    EXPECT_NEAR(picture.at<uchar>(80, 60), frame.at<uchar>(80, 60), 1);
}

// Renderers reuse their frames: a pixel of an earlier one would make a training differ from run to
// run.
TEST(Composer, ScenesFillTheFrame) {
    const struct {
        cv::Size scene, frame;
        double enlargement;
    } cases[] = {{{140, 90}, {80, 60}, 1.8}, {{61, 90}, {320, 240}, 3}};
    for (const auto& c : cases) {
        cv::Mat scene(c.scene, CV_8U);
        cv::RNG(3).fill(scene, cv::RNG::UNIFORM, 100, 200);
        for (uint64_t seed = 0; seed < 120; ++seed) {
            cv::Mat a(c.frame, CV_8U, cv::Scalar(0)), b(c.frame, CV_8U, cv::Scalar(255));
            Random first(seed), second(seed);
            fillWithScene(scene, c.enlargement, first, a);
            fillWithScene(scene, c.enlargement, second, b);
            ASSERT_EQ(0, cv::norm(a, b, cv::NORM_INF)) << "seed " << seed;
        }
        cv::Mat covered(c.frame, CV_8U, cv::Scalar(0));
        coverWithScene(scene, covered);
        EXPECT_GE(*std::min_element(covered.begin<uchar>(), covered.end<uchar>()), 100);
    }
}

}  // namespace
