// Rendered palms against what was asked for, and what the true engine makes of them.

#include "Limits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <opencv2/imgproc.hpp>
#include <set>

#include "HandMesh.h"
#include "LimitsPicture.h"

namespace {

using namespace evaluate;

// The rigged hand that scripts/make_sample fetches; RHD_HAND_MESH names another place.
std::string meshPath() {
    const char* named = std::getenv("RHD_HAND_MESH");
    return named ? named
                 : RHD_SOURCE_DIR
               "/.cache/npm/node_modules/@webxr-input-profiles/assets/dist/profiles/generic-hand/"
               "right.glb";
}

class RenderedHands : public testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(meshPath()))
            GTEST_SKIP() << "no hand mesh: run scripts/make_sample to fetch it";
        static const hand::HandMesh mesh = hand::loadHandMesh(meshPath());
        static const PalmStudio only(mesh);
        studio_ = &only;
    }

    const PalmStudio* studio_ = nullptr;
};

/// Where two tones of skin differ before one room: the hand.
cv::Mat handMask(const PalmStudio& studio, const PalmView& view, PalmVariant variant) {
    cv::Mat frames[2], mask;
    for (const int tone : {0, 2}) {
        variant.tone = tone;
        cv::blur(studio.take(view, variant).frame, frames[tone / 2], {3, 3});
    }
    cv::absdiff(frames[0], frames[1], mask);
    return mask > 15;
}

// The picture alone says where the hand is and which way it leans: the fingers' side of the middle,
// as the sleeves are of other colours too.
TEST_F(RenderedHands, StandWhereTheTruthSays) {
    for (const float width : {20.f, 60.f}) {
        for (const float lean : {-30.f, 30.f}) {
            SCOPED_TRACE(testing::Message() << width << " px, " << lean << " degrees");
            PalmView view;
            view.palmWidth = width;
            view.lean = lean;
            const PalmVariant variant{0, lean > 0, 0, 7};
            const RenderedPalm palm = studio_->take(view, variant);
            EXPECT_NEAR(width, palm.truth.palmWidth, .06 * width);
            EXPECT_NEAR(lean, palm.truth.angle, 3);
            ASSERT_TRUE(palm.truth.inside);

            const cv::Mat mask = handMask(*studio_, view, variant);
            const double angle = palm.truth.angle * CV_PI / 180;
            const cv::Point2d up(-std::sin(angle), -std::cos(angle));
            double reach = 0;
            for (int y = 0; y < mask.rows; ++y) {
                for (int x = 0; x < mask.cols; ++x) {
                    if (!mask.at<uchar>(y, x)) continue;
                    const cv::Point2d d = cv::Point2d(x, y) - palm.palm.centre;
                    if (std::abs(d.dot({-up.y, up.x})) < width) reach = std::max(reach, d.dot(up));
                }
            }
            // A hand is somewhat more than twice as long as its palm is wide.
            EXPECT_NEAR(1.15 * width, reach, .12 * width + 1);
        }
    }
}

TEST_F(RenderedHands, DifferInTheVariedPropertyAlone) {
    const PalmVariant variant{1, false, 1, 3};
    const cv::Mat base = studio_->take({}, variant).frame;
    EXPECT_EQ(0, cv::norm(base, studio_->take({}, variant).frame, cv::NORM_INF));
    std::set<std::string> names;
    for (const PalmProperty& property : palmProperties()) {
        SCOPED_TRACE(property.name);
        names.insert(property.name);
        PalmView view;
        property.set(view, property.values.back());
        EXPECT_GT(cv::norm(base, studio_->take(view, variant).frame, cv::NORM_INF), 25);
    }
    EXPECT_EQ(palmProperties().size(), names.size());
}

TEST_F(RenderedHands, OpenOnesAreFoundAndFistsAreNot) {
    EngineSession session;
    PalmProperty folding = palmProperties().back();
    folding.values = {0, 100};
    const std::vector<PalmVariant> variants = {{0, false, 0, 100}, {0, true, 0, 102}};
    size_t shown = 0;
    const LimitsRow row = sweep(folding, variants, *studio_, session, [&] { ++shown; });
    EXPECT_EQ(4u, shown);
    ASSERT_EQ(2u, row.cells.size());
    EXPECT_EQ(1, row.cells[0].share());
    EXPECT_EQ(0, row.cells[1].share());
    EXPECT_EQ(Wanted::NOTHING, row.cells[1].wanted);
}

// A report beside the palm does not find it, yet beside a fist it is an error.
TEST(LimitsCell, CountsReportsByWhatIsWanted) {
    LimitsCell cell;
    EXPECT_EQ(0, cell.share());
    cell.outcomes.resize(4);
    cell.outcomes[1].found = cell.outcomes[1].reported = true;
    cell.outcomes[2].reported = true;
    EXPECT_EQ(.25, cell.share());
    cell.wanted = Wanted::NOTHING;
    EXPECT_EQ(.5, cell.share());
}

// Right is green whatever is wanted, wrong is red.
TEST(LimitsPicture, FramesTellRightFromWrong) {
    LimitsCell found;
    found.example = cv::Mat(160, 160, CV_8U, cv::Scalar(128));
    found.outcomes.resize(2);
    for (PhotoOutcome& outcome : found.outcomes) outcome.found = outcome.reported = true;
    LimitsCell alarm = found, either = found;
    alarm.wanted = Wanted::NOTHING;
    either.wanted = Wanted::EITHER;
    const cv::Mat picture = limitsPicture({{"a", "A", "px", "", {found, alarm, either}}});
    EXPECT_LE(picture.cols, 1400);
    std::vector<cv::Vec3b> frames;  // left of each example
    for (int x = 1; x < picture.cols; ++x) {
        const cv::Vec3b here = picture.at<cv::Vec3b>(200, x);
        if (here == cv::Vec3b(128, 128, 128) && picture.at<cv::Vec3b>(200, x - 1) != here) {
            frames.push_back(picture.at<cv::Vec3b>(200, x - 2));
        }
    }
    ASSERT_EQ(3u, frames.size());
    EXPECT_GT(frames[0][1], frames[0][2] + 40);
    EXPECT_GT(frames[1][2], frames[1][1] + 40);
    EXPECT_NEAR(frames[2][1], frames[2][2], 10);
}

}  // namespace
