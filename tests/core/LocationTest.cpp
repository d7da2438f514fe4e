#include <gtest/gtest.h>

#include <cmath>
#include <complex>

#include "KZ_ObjectLocation.h"
#include "KZ_RelativeLocation.h"
#include "KZ_Utils.h"

using namespace KZ;

namespace {

const Size PATCH(20, 30);

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

template <typename Check>
void forEachTurn(Check check) {
    for (const float angle : {0.f, 30.f, 90.f, -45.f, 200.f, 359.f})
        for (const Side::Value side : {Side::RIGHT, Side::LEFT}) check(located(angle, side));
}

}  // namespace

TEST(ObjectLocation, MapsPointsAndLocationsAndBack) {
    const ObjectLocation inner(PointF(4, 6), SizeF(8, 2), 15, Side::RIGHT);
    forEachTurn([&](const ObjectLocation& outer) {
        const PointF p(3, 25);
        expectNear(framePoint(outer, p), outer.getPoint(PATCH, p));
        expectNear(p, outer.getPointInverse(PATCH, outer.getPoint(PATCH, p)));

        const ObjectLocation mapped = outer.getLocationState(PATCH, inner);
        expectNear(framePoint(outer, inner.center), mapped.center);
        EXPECT_EQ(SizeF(20, 5), mapped.size);
        EXPECT_EQ(outer.angle + 15, mapped.angle);
        EXPECT_EQ(outer.side, mapped.side);
        const ObjectLocation back = outer.getLocationStateInverse(PATCH, mapped);
        expectNear(inner.center, back.center);
        EXPECT_EQ(inner.size, back.size);
        EXPECT_EQ(15, back.angle);
        EXPECT_EQ(Side::RIGHT, back.side);
    });
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
    EXPECT_EQ((std::vector<PointF>{{9, 9}, {9, 12}, {12, 12}, {12, 9}}), location.getCorners());
    // The offsets of 1.5 are truncated to 1, the centre to 10. The sine of a full turn in floats is
    // not quite 0, which costs one coordinate of each corner another pixel.
    location.angle = 360;
    EXPECT_EQ((std::vector<PointF>{{9, 10}, {10, 11}, {11, 10}, {10, 9}}), location.getCorners());
}

// Every patch pixel shows the frame where getPoint says, on a slope that shows the place.
TEST(ObjectLocation, PatchAgreesWithPoints) {
    Image frame(Size(64, 48), COLOR_MODE_MONO), patch;
    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 64; ++x) *frame.data(x, y) = static_cast<unsigned char>(3 * x + y);
    forEachTurn([&](ObjectLocation location) {
        location.center = PointF(30, 20);
        location.size = SizeF(9, 7);
        location.getPatch(frame, Size(9, 7), patch, true);
        ASSERT_EQ(Size(9, 7), patch.size());
        for (int y = 0; y < 7; ++y)
            for (int x = 0; x < 9; ++x) {
                const PointF p = location.getPoint(Size(9, 7), PointF(float(x), float(y)));
                ASSERT_NEAR(3 * p.x + p.y, *patch.data(x, y), 1.2f) << x << " " << y << location;
            }
    });
}

TEST(ObjectLocation, FromRectAndBack) {
    EXPECT_FALSE(ObjectLocation(PointF(), SizeF(1e-7f, 1), 0, Side::RIGHT).isSet());
    const ObjectLocation location(RectF(10, 20, 14, 30));
    EXPECT_TRUE(location.isSet());
    EXPECT_EQ("ObjectLocation(PointF(12, 25), Size(4, 10), 0, RIGHT)", toStr(location));
    EXPECT_EQ(RectF(10, 20, 14, 30), location.getRect());
}

TEST(RelativeLocation, CarriesTheFirstToTheSecond) {
    const ObjectLocation first(PointF(10, 20), SizeF(4, 8), 0, Side::RIGHT);
    const ObjectLocation second(PointF(18, 14), SizeF(6, 3), 25, Side::RIGHT);
    RelativeLocation relative(first, second);
    EXPECT_EQ("RelativeLocation(1.5, PointF(2, -1.5), 25, 0.5, 2)", toStr(relative));
    EXPECT_EQ(toStr(second), toStr(relative.getLocationState(first)));
    EXPECT_EQ(SizeF(8, 16), RelativeLocation(2, PointF(), 0, 0, 0).getLocationState(first).size);

    relative = RelativeLocation(4, PointF(2, -8), 15, 3, 5);
    relative.reverse();
    EXPECT_EQ("RelativeLocation(0.25, PointF(-0.5, 2), -15, 3, 5)", toStr(relative));
}

TEST(RelativeLocation, InverseUndoesTheMap) {
    const RelativeLocation relative(0.5f, PointF(0.3f, -0.7f), 20, 3, 1.5f);
    forEachTurn([&](const ObjectLocation& start) {
        const ObjectLocation moved = relative.getLocationState(start);
        EXPECT_EQ(SizeF(25, 75), moved.size);
        // The shift is along the patch's axes: 0.3 widths of 20 patch pixels, and so on.
        expectNear(framePoint(start, PointF(9.5f + 6, 14.5f - 14)), moved.center);
        const ObjectLocation back = relative.getInverseLocationState(moved);
        expectNear(start.center, back.center, 2e-3f);
        EXPECT_EQ(start.size, back.size);
        EXPECT_FLOAT_EQ(start.angle, back.angle);
        EXPECT_EQ(start.side, back.side);
    });
    // 5 right and 2 below the centre, turned to (-2, 5), in units of 20 pixels, twice as large.
    expectNear(
        PointF(1 - 0.2f, 10 + 0.5f),
        RelativeLocation(2, PointF(1, 10), 90, 0, 0).getPointInverse(PATCH, PointF(14.5f, 16.5f)));
}
