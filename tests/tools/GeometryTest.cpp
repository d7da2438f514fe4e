#include <gtest/gtest.h>

#include "DrawnHand.h"
#include "KZ_ObjectLocation.h"
#include "LibraryRing.h"

namespace {

using namespace training;

/// A ring of one cascade for hands at +30 degrees.
RingContent tiltedRing() {
    StageContent stage;
    stage.weak.resize(1);
    RingContent ring;
    ring.name = "palm";
    ring.cascades.resize(1);
    ring.cascades[0].shape = {"r0", KZ::Size(36, 35), 30};
    ring.cascades[0].stages.push_back(stage);
    return ring;
}

// The sense of rotation and of mirroring that training draws is the one in which locations are
// reported and patches are cut: a hand shown as the +30 degree cascade learns it comes out upright
// with its thumb on the right, and so does its mirror image from the mirrored cascade.
TEST(Geometry, PatchOfATurnedHandIsUpright) {
    const cv::Mat hand = drawnHand();
    LibraryRing ring(tiltedRing());
    for (const bool mirrored : {false, true}) {
        SCOPED_TRACE(mirrored ? "left hand" : "right hand");
        Placement placement;
        placement.anchor = {59.5, 59.5};
        placement.position = {160, 120};
        placement.turn = mirrored ? -30 : 30;
        placement.mirrored = mirrored;
        cv::Mat frame(240, 320, CV_8U, cv::Scalar(70));
        paste(hand, placement, 1, 1, frame);

        AdaObject object =
            ring.cascades(mirrored ? KZ::Side::LEFT : KZ::Side::RIGHT).at(0)->objectAt(0, 0, 0);
        object.zoom = 120 / 36.0f;
        object.center = KZ::Point(160, 120);
        KZ::Image image, patch;
        image.createRef(frame.data, KZ::Size(320, 240), KZ::COLOR_MODE_MONO);
        object.toLocationState().getPatch(image, KZ::Size(120, 120), patch, true);
        const cv::Mat seen(120, 120, CV_8U, patch.data());
        EXPECT_GT(correlation(seen, hand), 0.95);
        EXPECT_LT(correlation(seen, flipped(hand)), 0.8);
    }
}

}  // namespace
