#include <gtest/gtest.h>

#include "Composer.h"
#include "DrawnHand.h"
#include "KZ_ObjectLocation.h"
#include "LibraryRing.h"

namespace {

using namespace training;

const KZ::Size WINDOW(36, 35);

/// A cascade for hands at +30 degrees that every window passes.
RingContent openRing() {
    StageContent stage;
    stage.weak.resize(1);
    stage.weak[0].feature.x = stage.weak[0].feature.y = 1;
    RingContent ring;
    ring.name = "palm";
    ring.cascades.resize(1);
    ring.cascades[0].shape = {"r0", WINDOW, 30};
    ring.cascades[0].stages.push_back(stage);
    return ring;
}

/// What the cascade of that side reports at the window around `centre` in a frame, as a patch.
cv::Mat patchOf(LibraryRing& ring, KZ::Side::Value side, cv::Mat frame, const cv::Point& centre,
                double windowWidth, const KZ::Size& patchSize) {
    const std::vector<CascadedClassifier*> cascades = ring.cascades(side);
    EXPECT_EQ(1u, cascades.size());
    AdaObject object = cascades.at(0)->objectAt(0, 0, 0);
    object.zoom = static_cast<float>(windowWidth / WINDOW.width);
    object.center = KZ::Point(centre.x, centre.y);
    const KZ::ObjectLocation location = object.toLocationState();
    EXPECT_EQ(side, location.side);
    EXPECT_EQ(side == KZ::Side::RIGHT ? 30 : -30, location.angle);
    KZ::Image image, patch;
    image.createRef(frame.data, KZ::Size(frame.cols, frame.rows), KZ::COLOR_MODE_MONO);
    location.getPatch(image, patchSize, patch, true);
    return cv::Mat(patch.height(), patch.width(), CV_8U, patch.data()).clone();
}

// The sense of rotation and of mirroring that training draws is the one in which locations are
// reported and patches are cut: a hand shown as the +30 degree cascade learns it comes out upright
// with its thumb on the right, and so does its mirror image from the mirrored cascade.
TEST(Geometry, PatchOfATurnedHandIsUpright) {
    const cv::Mat hand = drawnHand();
    LibraryRing ring(openRing());
    for (const bool mirrored : {false, true}) {
        SCOPED_TRACE(mirrored ? "left hand" : "right hand");
        Placement placement;
        placement.anchor = {59.5, 59.5};
        placement.position = {160, 120};
        placement.turn = mirrored ? -30 : 30;
        placement.mirrored = mirrored;
        cv::Mat frame(240, 320, CV_8U, cv::Scalar(70));
        paste(hand, placement, 1, 1, frame);
        const cv::Mat patch = patchOf(ring, mirrored ? KZ::Side::LEFT : KZ::Side::RIGHT, frame,
                                      {160, 120}, 120, KZ::Size(120, 120));
        cv::Mat thumbLeft;
        cv::flip(hand, thumbLeft, 1);
        EXPECT_GT(correlation(patch, hand), 0.95);
        EXPECT_LT(correlation(patch, thumbLeft), 0.8);
    }
}

TEST(Geometry, PlacementMirrorsThenTurnsCounterClockwise) {
    Placement placement;
    placement.anchor = {10, 20};
    placement.position = {100, 50};
    placement.scale = 2;
    struct Row {
        const char* what;
        double turn;
        bool mirrored;
        cv::Point2d from, to;
    };
    const Row rows[] = {
        {"anchor", 30, true, {10, 20}, {100, 50}},
        {"up goes left", 90, false, {10, 19}, {98, 50}},
        {"right goes up", 90, false, {11, 20}, {100, 48}},
        {"mirrored right goes down", 90, true, {11, 20}, {100, 52}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        placement.turn = row.turn;
        placement.mirrored = row.mirrored;
        const cv::Point2d p = transformed(placement.matrix(), row.from);
        EXPECT_NEAR(row.to.x, p.x, 1e-9);
        EXPECT_NEAR(row.to.y, p.y, 1e-9);
    }
}

}  // namespace
