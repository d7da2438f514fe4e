#include "KZ_Geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "KZ_BaseRange.h"
#include "KZ_Side.h"
#include "KZ_Utils.h"
#include "LogCapture.h"

using namespace KZ;
using testing_support::assertionOf;
using testing_support::conditionOf;

namespace {

const float PI = 3.14159265f;

void expectNear(const PointF& expected, const PointF& p, float tolerance = 1e-4f) {
    EXPECT_NEAR(expected.x, p.x, tolerance);
    EXPECT_NEAR(expected.y, p.y, tolerance);
}

}  // namespace

TEST(Angles, Normalise) {
    const int rows[][2] = {{180, -180},  {179, 179}, {-181, 179},      {360, 0},
                           {-540, -180}, {539, 179}, {2147483647, 127}};
    for (const auto& row : rows) {
        int angle = row[0];
        normalizeAngle(angle);
        EXPECT_EQ(row[1], angle) << row[0];
    }
}

TEST(Angles, RangeContainsItsEndsAndWraps) {
    struct Row {
        AngleRange range;
        int angle;
        bool inside;
    };
    const Row rows[] = {
        {AngleRange(-30, 30), 0, true},      {AngleRange(-30, 30), 31, false},
        {AngleRange(-30, 30), -30, true},    {AngleRange(170, -170), 175, true},
        {AngleRange(170, -170), -175, true}, {AngleRange(170, -170), 0, false},
        {AngleRange(), -180, true},          {AngleRange(), 180, false},
        {AngleRange(365), 5, true},          {AngleRange(365), 4, false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.inside, row.range.contains(row.angle)) << row.range << " " << row.angle;
    EXPECT_EQ("AngleRange(-170, -160)", toStr(AngleRange(190, 200)));
}

TEST(Angles, ConvertIntoThePositiveHalf) {
    EXPECT_FLOAT_EQ(PI, degreeToRadian(180));
    EXPECT_FLOAT_EQ(1.5f * PI, degreeToRadian(-90));
    EXPECT_FLOAT_EQ(270, radianToDegree(-PI / 2));
    EXPECT_FLOAT_EQ(45, radianToDegree(PI / 4));
    EXPECT_FLOAT_EQ(-PI / 2, getAngle(PointF(0, 5), PointF(3, 0)));
    EXPECT_EQ(0, getAngle(PointF(1e-8f, 0), PointF(0, 1)));
}

TEST(Angles, PeriodicMixAndNormalisation) {
    EXPECT_FLOAT_EQ(360, mixPeriodic(0.5f, 350, 10, 360));
    EXPECT_FLOAT_EQ(365, mixPeriodic(0.25f, 10, 350, 360));
    EXPECT_FLOAT_EQ(15, mixPeriodic(0.25f, 10, 30, 360));
    EXPECT_FLOAT_EQ(1e20f, mixPeriodic(0, 1e20f, -1e20f, 1)) << "a walk without progress ends";
    EXPECT_FLOAT_EQ(7, mixPeriodic(0, 7, 1, -3));

    EXPECT_FLOAT_EQ(180, normalizePeriodic(-180, -180, 180)) << "the upper end belongs to it";
    EXPECT_FLOAT_EQ(-170, normalizePeriodic(550, -180, 180));
    EXPECT_EQ("a < b", conditionOf([] { normalizePeriodic(0, 1, 1); }));
}

// The two overloads turn in opposite senses; whole-number results are truncated.
TEST(Rotation, OfPoints) {
    const float sixth = PI / 6;
    expectNear(PointF(10 * std::cos(sixth) - 4 * std::sin(sixth),
                      10 * std::sin(sixth) + 4 * std::cos(sixth)),
               rotate(PointF(10, 4), sixth));
    EXPECT_EQ(Point(10, -1), rotate(Point(10, 4), sixth));  // 10.66, -1.54
    EXPECT_EQ(2147483647, rotate(Point(2147483647, 2147483647), PI / 4).x) << "held in range";
}

TEST(Rotation, OfRectangles) {
    EXPECT_EQ(Rect(10, 20, 50, 40), rotateRect(Rect(10, 20, 50, 40), 0));
    // Offsets (+-20, +-10) from (30, 30): the left corners come to x = 17.2 and 7.7, the top ones
    // to y = 11.6 and 30.8, and so on.
    EXPECT_EQ(Rect(7, 11, 52, 48), rotateRect(Rect(10, 20, 50, 40), 0.5f));
    // At half a turn the "left" corners are on the right; the box comes out inverted.
    const Rect half = rotateRect(Rect(0, 0, 40, 20), 3.1415927f);
    EXPECT_GT(half.left, half.right);
    EXPECT_GT(half.top, half.bottom);
}

TEST(Rects, ShiftInBoundary) {
    struct Row {
        Rect rect, expected;
    };
    const Rect boundary(10, 10, 30, 20);
    const Row rows[] = {
        {Rect(0, 0, 5, 5), Rect(10, 10, 15, 15)},
        {Rect(28, 18, 38, 26), Rect(20, 12, 30, 20)},
        {Rect(12, 11, 13, 12), Rect(12, 11, 13, 12)},
        {Rect(15, 5, 35, 15), Rect(10, 10, 30, 20)},
    };
    for (const Row& row : rows) {
        Rect rect = row.rect;
        rect.shiftInBoundary(boundary);
        EXPECT_EQ(row.expected, rect);
    }
    Rect wide(0, 0, 21, 1);
    EXPECT_EQ("sizes of current rect can't be higher then rectBoundary sizes\n",
              assertionOf([&] { wide.shiftInBoundary(boundary); }));
}

TEST(TextForms, OfValueTypes) {
    EXPECT_EQ("Size(3, 4)", toStr(Size(3, 4)));
    EXPECT_EQ("Rect(1, 2, 3, 4)", toStr(Rect(1, 2, 3, 4)));
    EXPECT_EQ("PointF(1.5, -2)", toStr(PointF(1.5f, -2)));
    EXPECT_EQ("Point3dF(1, 2, 0.25)", toStr(Point3d(1, 2, 0.25f)));
    EXPECT_EQ("RangeF(-3.40282e+38, 3.40282e+38)", toStr(RangeF()));
    EXPECT_STREQ("BOTH", sideName(Side::BOTH));
    EXPECT_TRUE(RangeF(1000000, 1) == RangeF(1000001, 1));
    EXPECT_FALSE(RangeF(1000000, 1) == RangeF(1000002, 1));
}

TEST(Lines, ProjectionsDistancesAndCrossings) {
    expectNear(PointF(3, 2), projectPointOnLine(PointF(3, 9), PointF(0, 2), PointF(70, 0)));
    expectNear(PointF(0, 2), projectPointOnLine(PointF(3, 9), PointF(0, 2), PointF(1e-8f, 0)));
    EXPECT_FLOAT_EQ(7, getSignedDistanceToLine(PointF(3, 9), PointF(0, 2), PointF(5, 0)));
    EXPECT_FLOAT_EQ(-3, getSignedDistanceToLine(PointF(3, 9), PointF(0, 2), PointF(0, 5)));
    EXPECT_FLOAT_EQ(1.5f, getPositionPointOnSegment(PointF(6, 5), PointF(0, 0), PointF(4, 0)));
    expectNear(PointF(4, 0), getNearestPointOnSegment(PointF(6, 5), PointF(0, 0), PointF(4, 0)));
    expectNear(PointF(1, 0), getNearestPointOnSegment(PointF(1, 5), PointF(0, 0), PointF(4, 0)));

    PointF out(-1, -1);
    EXPECT_TRUE(intersectLines(PointF(0, 1), PointF(2, 1), PointF(4, 0), PointF(0, 3), out));
    expectNear(PointF(4, 3), out);
    EXPECT_FALSE(intersectLines(PointF(0, 1), PointF(2, 1), PointF(4, 0), PointF(4, 2), out));
    expectNear(PointF(4, 3), out);

    PointF center;
    float radius = 0;
    EXPECT_TRUE(
        makeCircleThrough3Points(PointF(6, 2), PointF(1, 7), PointF(-4, 2), center, radius));
    expectNear(PointF(1, 2), center);
    EXPECT_FLOAT_EQ(5, radius);
    EXPECT_FALSE(
        makeCircleThrough3Points(PointF(0, 0), PointF(1, 1), PointF(3, 3), center, radius));
}

TEST(Shapes, AreasAndSides) {
    const std::vector<PointF> square = {{0, 0}, {4, 0}, {4, 4}, {0, 4}};
    const std::vector<PointF> arrow = {{0, 0}, {4, 0}, {1, 1}, {0, 4}};
    EXPECT_FLOAT_EQ(8, getTriangleArea(square));
    EXPECT_FLOAT_EQ(16, getQuadArea(square));
    // Open, the missing edge leads back through a corner that is not the origin.
    EXPECT_FLOAT_EQ(20, getPolylineArea({{2, 0}, {6, 0}, {6, 4}, {2, 4}}));
    EXPECT_FLOAT_EQ(16, getPolylineArea({{2, 0}, {6, 0}, {6, 4}, {2, 4}, {2, 0}}));
    EXPECT_EQ(0, getPolylineArea({{2, 0}, {6, 0}}));
    EXPECT_EQ("2 < 3\n", assertionOf([] { getTriangleArea({{0, 0}, {1, 1}}); }));

    EXPECT_TRUE(isShapeConvex(square, 0.01f));
    EXPECT_FALSE(isShapeConvex(arrow, 0.01f));
    EXPECT_TRUE(isShapeConvex(arrow, 2)) << "the dent is 1.41 deep";
    EXPECT_TRUE(isPointInsideShape(PointF(1, 3), square, 0.01f));
    EXPECT_FALSE(isPointInsideShape(PointF(-1, 3), square, 0.01f));
    EXPECT_TRUE(isPointInsideShape(PointF(-1, 3), square, 1.1f));
    EXPECT_FALSE(isPointInsideShape(PointF(), {}, 1));
}

TEST(Shapes, BaryCoordinatesRestoreThePoint) {
    std::mt19937 random(71);
    std::uniform_real_distribution<float> value(-50, 50);
    for (int round = 0; round < 100; ++round)
        for (int n = 3; n <= 6; ++n) {
            // Corners far apart, moved a little at random.
            std::vector<PointF> points = {{0, 0},   {300, 0},  {300, 200},
                                          {0, 200}, {500, 90}, {9, 400}};
            for (PointF& point : points) point = point + PointF(value(random), value(random));
            const PointF p(100 + value(random), 80 + value(random));
            std::vector<float> weights;
            getBaryCoordsN(n, p, points, weights);
            ASSERT_EQ(size_t(n), weights.size());
            PointF mean;
            float sum = 0;
            for (int i = 0; i < n; ++i) {
                mean = mean + points[size_t(i)] * weights[size_t(i)];
                sum += weights[size_t(i)];
            }
            EXPECT_NEAR(1, sum, 1e-5f);
            expectNear(p, mean, 0.02f);
        }
    std::vector<float> weights;
    EXPECT_EQ("(points.size()) >= (static_cast<size_t>(n))", conditionOf([&] {
                  getBaryCoordsQuad(PointF(), {{0, 0}}, weights);
              }));
}

TEST(Quadratic, RootsOfEveryKind) {
    struct Row {
        float a, b, c, eps;
        bool solved;
        float x1, x2;
    };
    const Row rows[] = {
        {1, -5, 6, 0, true, 2, 3},        {-1, 5, -6, 0, true, 3, 2},
        {0, 2, -8, 0, true, 4, 4},        {0, 0, 1, 0, false, 7, 7},
        {1, 2, 5, 0, false, -1, -1},      {1, 2, 1.001f, 1, true, -1, -1},
        {1, 2, 1.001f, 0, false, -1, -1},
    };
    for (const Row& row : rows) {
        float x1 = 7, x2 = 7;
        EXPECT_EQ(row.solved, solveQuadraticEquation(row.a, row.b, row.c, x1, x2, row.eps));
        EXPECT_FLOAT_EQ(row.x1, x1);
        EXPECT_FLOAT_EQ(row.x2, x2);
    }
}
