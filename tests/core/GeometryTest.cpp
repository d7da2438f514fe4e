#include "KZ_Geometry.h"

#include <gtest/gtest.h>

#include <cmath>

#include "KZ_Utils.h"
#include "LogCapture.h"

using namespace KZ;
using testing_support::assertionOf;

namespace {

const float PI = 3.14159265f;

void expectNear(const PointF& expected, const PointF& p, float tolerance = 1e-4f) {
    EXPECT_NEAR(expected.x, p.x, tolerance);
    EXPECT_NEAR(expected.y, p.y, tolerance);
}

}  // namespace

TEST(Angles, NormaliseAndConvert) {
    const int rows[][2] = {{180, -180},  {179, 179}, {-181, 179},      {360, 0},
                           {-540, -180}, {539, 179}, {2147483647, 127}};
    for (const auto& row : rows) {
        int angle = row[0];
        normalizeAngle(angle);
        EXPECT_EQ(row[1], angle) << row[0];
    }
    EXPECT_FLOAT_EQ(1.5f * PI, degreeToRadian(-90));
    EXPECT_FLOAT_EQ(270, radianToDegree(-PI / 2));
    EXPECT_FLOAT_EQ(-PI / 2, getAngle(PointF(0, 5), PointF(3, 0)));
    EXPECT_FLOAT_EQ(180, normalizePeriodic(-180, -180, 180)) << "the upper end belongs to it";
    EXPECT_FLOAT_EQ(-170, normalizePeriodic(550, -180, 180));
    EXPECT_FLOAT_EQ(360, mixPeriodic(0.5f, 350, 10, 360));
    EXPECT_FLOAT_EQ(365, mixPeriodic(0.25f, 10, 350, 360));
    EXPECT_FLOAT_EQ(15, mixPeriodic(0.25f, 10, 30, 360));
    EXPECT_FLOAT_EQ(1e20f, mixPeriodic(0, 1e20f, -1e20f, 1)) << "a walk without progress ends";
}

TEST(Angles, RangeContainsItsEndsAndWraps) {
    const AngleRange narrow(-30, 30), behind(170, -170), all, one(365);
    EXPECT_TRUE(narrow.contains(-30) && narrow.contains(30) && !narrow.contains(31));
    EXPECT_TRUE(behind.contains(-175) && behind.contains(175) && !behind.contains(0));
    EXPECT_TRUE(all.contains(-180) && !all.contains(180));
    EXPECT_TRUE(one.contains(5) && !one.contains(4));
}

// The two overloads turn in opposite senses; whole-number results are truncated.
TEST(Rotation, OfPointsAndRectangles) {
    const float sixth = PI / 6;
    expectNear(PointF(10 * std::cos(sixth) - 4 * std::sin(sixth),
                      10 * std::sin(sixth) + 4 * std::cos(sixth)),
               rotate(PointF(10, 4), sixth));
    EXPECT_EQ(Point(10, -1), rotate(Point(10, 4), sixth));  // 10.66, -1.54
    EXPECT_EQ(2147483647, rotate(Point(2147483647, 2147483647), PI / 4).x) << "held in range";

    // Offsets (+-20, +-10) from (30, 30): the left corners come to x = 17.2 and 7.7, the top ones
    // to y = 11.6 and 30.8, and so on.
    EXPECT_EQ(Rect(7, 11, 52, 48), rotateRect(Rect(10, 20, 50, 40), 0.5f));
    // At half a turn the "left" corners are on the right; the box comes out inverted.
    const Rect half = rotateRect(Rect(0, 0, 40, 20), 3.1415927f);
    EXPECT_GT(half.left, half.right);
    EXPECT_GT(half.top, half.bottom);
}

TEST(Rects, ShiftInBoundary) {
    const Rect boundary(10, 10, 30, 20);
    const Rect rows[][2] = {{Rect(0, 0, 5, 5), Rect(10, 10, 15, 15)},
                            {Rect(28, 18, 38, 26), Rect(20, 12, 30, 20)},
                            {Rect(15, 5, 35, 15), Rect(10, 10, 30, 20)}};
    for (const auto& row : rows) {
        Rect rect = row[0];
        rect.shiftInBoundary(boundary);
        EXPECT_EQ(row[1], rect);
    }
    Rect wide(0, 0, 21, 1);
    EXPECT_EQ("sizes of current rect can't be higher then rectBoundary sizes\n",
              assertionOf([&] { wide.shiftInBoundary(boundary); }));
}

TEST(Plane, LinesShapesAndRoots) {
    PointF out, center;
    float radius = 0, x1 = 7, x2 = 7;
    expectNear(PointF(3, 2), projectPointOnLine(PointF(3, 9), PointF(0, 2), PointF(70, 0)));
    EXPECT_FLOAT_EQ(-3, getSignedDistanceToLine(PointF(3, 9), PointF(0, 2), PointF(0, 5)));
    expectNear(PointF(4, 0), getNearestPointOnSegment(PointF(6, 5), PointF(0, 0), PointF(4, 0)));
    EXPECT_TRUE(intersectLines(PointF(0, 1), PointF(2, 1), PointF(4, 0), PointF(0, 3), out));
    expectNear(PointF(4, 3), out);
    EXPECT_TRUE(
        makeCircleThrough3Points(PointF(6, 2), PointF(1, 7), PointF(-4, 2), center, radius));
    expectNear(PointF(1, 2), center);
    EXPECT_FLOAT_EQ(5, radius);

    const std::vector<PointF> square = {{2, 0}, {6, 0}, {6, 4}, {2, 4}};
    EXPECT_FLOAT_EQ(8, getTriangleArea(square));
    EXPECT_FLOAT_EQ(16, getQuadArea(square));
    EXPECT_FLOAT_EQ(20, getPolylineArea(square)) << "open: back through another corner";
    EXPECT_TRUE(isShapeConvex(square, 0.01f));
    EXPECT_FALSE(isShapeConvex({{0, 0}, {4, 0}, {1, 1}, {0, 4}}, 0.01f));
    EXPECT_FALSE(isPointInsideShape(PointF(1, 3), square, 0.01f));
    EXPECT_TRUE(isPointInsideShape(PointF(1, 3), square, 1.1f));

    EXPECT_TRUE(solveQuadraticEquation(-1, 5, -6, x1, x2, 0));
    EXPECT_EQ(PointF(3, 2), PointF(x1, x2));
    EXPECT_FALSE(solveQuadraticEquation(1, 2, 1.001f, x1, x2, 0));
    EXPECT_EQ(PointF(-1, -1), PointF(x1, x2));
}

TEST(Plane, BaryCoordinatesRestoreThePoint) {
    const std::vector<PointF> points = {{3, 1},   {310, -5}, {299, 203},
                                        {4, 196}, {500, 90}, {9, 400}};
    for (int n = 3; n <= 6; ++n) {
        std::vector<float> weights;
        getBaryCoordsN(n, PointF(100, 80), points, weights);
        ASSERT_EQ(size_t(n), weights.size());
        PointF mean;
        for (size_t i = 0; i < weights.size(); ++i) mean = mean + points[i] * weights[i];
        expectNear(PointF(100, 80), mean, 0.02f);
    }
}
