#include <gtest/gtest.h>

#include <cmath>
#include <complex>

#include "KZ_ObjectLocation.h"
#include "KZ_RelativeLocation.h"
#include "KZ_Utils.h"

using namespace KZ;

namespace {

const Size PATCH(20, 30);
const float ANGLES[] = {0, 30, 90, -45, 200, 359};

// The screen's rule with complex numbers: y points down, so a counter-clockwise turn multiplies by
// exp(-i angle); on LEFT the offset is mirrored first.
PointF framePoint(const ObjectLocation& location, const PointF& p) {
    std::complex<double> offset(p.x - 9.5, p.y - 14.5);
    if (location.side == Side::LEFT) offset = -std::conj(offset);
    offset *= std::polar(location.size.width / 20.0, -location.angle * 3.14159265358979 / 180);
    return PointF(float(location.center.x + offset.real()),
                  float(location.center.y + offset.imag()));
}

void expectNear(const PointF& expected, const PointF& p, float tolerance = 1e-3f) {
    EXPECT_NEAR(expected.x, p.x, tolerance);
    EXPECT_NEAR(expected.y, p.y, tolerance);
}

ObjectLocation located(float angle, Side::Value side) {
    return ObjectLocation(PointF(100.25f, 60.5f), SizeF(50, 75), angle, side);
}

}  // namespace

TEST(ObjectLocation, SetOnlyWithExtent) {
    EXPECT_FALSE(ObjectLocation().isSet());
    EXPECT_FALSE(ObjectLocation(PointF(), SizeF(1e-7f, 1), 0, Side::RIGHT).isSet());
    EXPECT_FALSE(ObjectLocation(PointF(), SizeF(1, 0), 0, Side::RIGHT).isSet());
    ObjectLocation location(RectF(10, 20, 14, 30));
    EXPECT_TRUE(location.isSet());
    EXPECT_EQ("ObjectLocation(PointF(12, 25), Size(4, 10), 0, RIGHT)", toStr(location));
    EXPECT_EQ(RectF(10, 20, 14, 30), location.getRect());
    location.reset();
    EXPECT_EQ("ObjectLocation(PointF(0, 0), Size(0, 0), 0, RIGHT)", toStr(location));
}

TEST(ObjectLocation, MapsPatchPointsAndBack) {
    for (float angle : ANGLES)
        for (Side::Value side : {Side::RIGHT, Side::LEFT}) {
            const ObjectLocation location = located(angle, side);
            expectNear(location.center, location.getPoint(PATCH, PointF(9.5f, 14.5f)));
            const PointF p(3, 25);
            expectNear(framePoint(location, p), location.getPoint(PATCH, p));
            expectNear(p, location.getPointInverse(PATCH, location.getPoint(PATCH, p)));
        }
}

TEST(ObjectLocation, MapsLocations) {
    const ObjectLocation inner(PointF(4, 6), SizeF(8, 2), 15, Side::RIGHT);
    for (float angle : ANGLES)
        for (Side::Value side : {Side::RIGHT, Side::LEFT}) {
            const ObjectLocation outer = located(angle, side);
            const ObjectLocation mapped = outer.getLocationState(PATCH, inner);
            expectNear(framePoint(outer, inner.center), mapped.center);
            EXPECT_EQ(SizeF(20, 5), mapped.size);
            EXPECT_EQ(angle + 15, mapped.angle);
            EXPECT_EQ(side, mapped.side);
            const ObjectLocation back = outer.getLocationStateInverse(PATCH, mapped);
            expectNear(inner.center, back.center);
            EXPECT_EQ(inner.size, back.size);
            EXPECT_EQ(15, back.angle);
            EXPECT_EQ(Side::RIGHT, back.side);
        }
    ObjectLocation left = inner;
    left.side = Side::LEFT;
    EXPECT_EQ(Side::RIGHT, located(0, Side::LEFT).getLocationState(PATCH, left).side);
    EXPECT_EQ(Side::LEFT, located(0, Side::RIGHT).getLocationState(PATCH, left).side);
}

// This map turns the other way and does not mirror the offset.
TEST(ObjectLocation, MapsRelativeLocations) {
    const ObjectLocation relative(PointF(1, 2), SizeF(0.5f, 0), 10, Side::LEFT);
    const ObjectLocation mapped = located(90, Side::LEFT).getRelativeLocationState(relative);
    expectNear(PointF(100.25f - 100, 60.5f + 50), mapped.center);
    EXPECT_EQ(SizeF(25, 37.5f), mapped.size) << "no height: the aspect is kept";
    EXPECT_EQ(100, mapped.angle);
    EXPECT_EQ(Side::RIGHT, mapped.side);
    const ObjectLocation tall(PointF(), SizeF(0.5f, 2), 0, Side::RIGHT);
    EXPECT_EQ(SizeF(25, 100), located(0, Side::RIGHT).getRelativeLocationState(tall).size);
}

TEST(ObjectLocation, CornersAreWholeOnceTurned) {
    ObjectLocation location(PointF(10.5f, 10.5f), SizeF(3, 3), 0, Side::RIGHT);
    const std::vector<PointF> exact = {{9, 9}, {9, 12}, {12, 12}, {12, 9}};
    EXPECT_EQ(exact, location.getCorners());
    // The offsets of 1.5 are truncated to 1, the centre to 10. The sine of a full turn in floats is
    // not quite 0, which costs one coordinate of each corner another pixel.
    location.angle = 360;
    const std::vector<PointF> whole = {{9, 10}, {10, 11}, {11, 10}, {10, 9}};
    EXPECT_EQ(whole, location.getCorners());
    // Wide, turned by 90 degrees counter-clockwise: left-top comes to the lower left.
    ObjectLocation wide(PointF(50, 50), SizeF(40.2f, 20.2f), 90, Side::RIGHT);
    const std::vector<PointF> turned = wide.getCorners();
    EXPECT_NEAR(40, turned[0].x, 1);
    EXPECT_NEAR(70, turned[0].y, 1);
    EXPECT_NEAR(60, turned[2].x, 1);
    EXPECT_NEAR(30, turned[2].y, 1);
}

// Every patch pixel shows the frame where getPoint says, on a slope that shows the place.
TEST(ObjectLocation, PatchAgreesWithPoints) {
    Image frame(Size(64, 48), COLOR_MODE_MONO);
    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 64; ++x) *frame.data(x, y) = static_cast<unsigned char>(3 * x + y);
    const Size patchSize(9, 7);
    for (float angle : {0.0f, 90.0f, 180.0f, 250.0f})
        for (Side::Value side : {Side::RIGHT, Side::LEFT}) {
            const ObjectLocation location(PointF(30, 20), SizeF(9, 7), angle, side);
            Image patch;
            location.getPatch(frame, patchSize, patch, true);
            ASSERT_EQ(patchSize, patch.size());
            for (int y = 0; y < 7; ++y)
                for (int x = 0; x < 9; ++x) {
                    const PointF p = location.getPoint(patchSize, PointF(float(x), float(y)));
                    ASSERT_NEAR(3 * p.x + p.y, *patch.data(x, y), 1.1f) << x << " " << y << angle;
                }
        }
}

TEST(ObjectLocation, DrawsItsOutline) {
    Image image(Size(40, 40), COLOR_MODE_MONO);
    zero(image);
    ObjectLocation(PointF(20.6f, 15.6f), SizeF(20, 10), 0, Side::RIGHT)
        .draw(image, Color::WHITE, 1);
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x) {
            const bool isInside = x >= 10 && x <= 29 && y >= 10 && y <= 19;
            const bool isEdge = x == 10 || x == 29 || y == 10 || y == 19;
            EXPECT_EQ(isInside && isEdge ? 255 : 0, *image.data(x, y)) << x << " " << y;
        }
}

TEST(RelativeLocation, CarriesTheFirstToTheSecond) {
    const ObjectLocation first(PointF(10, 20), SizeF(4, 8), 0, Side::RIGHT);
    const ObjectLocation second(PointF(18, 14), SizeF(6, 3), 25, Side::RIGHT);
    const RelativeLocation relative(first, second);
    EXPECT_EQ("RelativeLocation(1.5, PointF(2, -1.5), 25, 0.5, 2)", toStr(relative));
    EXPECT_EQ(toStr(second), toStr(relative.getLocationState(first)));

    const RelativeLocation keep(2, PointF(1, 0), 0, 0, 0);
    EXPECT_EQ(SizeF(8, 16), keep.getLocationState(first).size);
    EXPECT_EQ("RelativeLocation(1, PointF(0, 0), 0, 0, 0)", toStr(RelativeLocation()));
}

TEST(RelativeLocation, InverseUndoesTheMap) {
    for (float angle : ANGLES)
        for (Side::Value side : {Side::RIGHT, Side::LEFT}) {
            const ObjectLocation start = located(angle, side);
            const RelativeLocation relative(0.5f, PointF(0.3f, -0.7f), 20, 3, 1.5f);
            const ObjectLocation moved = relative.getLocationState(start);
            EXPECT_EQ(SizeF(25, 75), moved.size);
            // The shift is along the patch's axes: 0.3 widths of 20 patch pixels, and so on.
            expectNear(framePoint(start, PointF(9.5f + 6, 14.5f - 14)), moved.center);
            const ObjectLocation back = relative.getInverseLocationState(moved);
            expectNear(start.center, back.center, 2e-3f);
            EXPECT_EQ(start.size, back.size);
            EXPECT_FLOAT_EQ(angle, back.angle);
            EXPECT_EQ(side, back.side);
        }
}

TEST(RelativeLocation, ReverseTwiceRestores) {
    RelativeLocation relative(4, PointF(2, -8), 15, 3, 5);
    relative.reverse();
    EXPECT_EQ("RelativeLocation(0.25, PointF(-0.5, 2), -15, 3, 5)", toStr(relative));
    relative.reverse();
    EXPECT_EQ("RelativeLocation(4, PointF(2, -8), 15, 3, 5)", toStr(relative));
}

TEST(RelativeLocation, PatchPointInWidths) {
    const RelativeLocation relative(2, PointF(1, 10), 90, 0, 0);
    // 5 right and 2 below the centre, turned to (-2, 5), in units of 20 pixels, twice as large.
    expectNear(PointF(1 - 0.2f, 10 + 0.5f), relative.getPointInverse(PATCH, PointF(14.5f, 16.5f)));
}
