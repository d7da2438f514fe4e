#pragma once

#include <vector>

#include "KZ_AngleRange.h"
#include "KZ_BasePoint.h"
#include "KZ_BaseRect.h"

// Angles, rotations and plane geometry. Where a direction is asked for, its length does not matter,
// but one of length 1.1920929e-7 or less counts as the zero vector.

namespace KZ {

/// Degrees to radians; negative angles above -360 come out in the positive half, 0 to 2 pi.
float degreeToRadian(float degrees);
/// Radians to degrees; negative angles above -2 pi come out in the positive half, 0 to 360.
float radianToDegree(float radians);

/// `a + (b - a) * t` the short way round: when `a` and `b` are more than half a period apart, the
/// smaller is first moved up by whole periods.
float mixPeriodic(float t, float a, float b, float period);
/// `value` moved by multiples of `b - a` into (a, b]; `a < b` is asserted.
float normalizePeriodic(float value, float a, float b);
/// Signed angle in radians from `a` to `b`, in -pi to pi.
float getAngle(const PointF& a, const PointF& b);

/// (cos x - sin y, sin x + cos y).
PointF rotate(const PointF& p, float radians);
/// Turns the other way, (cos x + sin y, cos y - sin x), and truncates.
Point rotate(const Point& p, float radians);
/// Turns the corners about the truncated centre. The left side is that of the two left corners, and
/// so on for each side: not the bounding box of all four.
Rect rotateRect(const Rect& rect, float radians);

/// The foot of the perpendicular from `p` to the line through `a` along `direction`.
PointF projectPointOnLine(const PointF& p, const PointF& a, const PointF& direction);
/// The common point of two lines; false, without touching `out`, when they are parallel.
bool intersectLines(const PointF& p1, const PointF& d1, const PointF& p2, const PointF& d2,
                    PointF& out);
/// The circle through three points; false when they lie on a line.
bool makeCircleThrough3Points(const PointF& a, const PointF& b, const PointF& c, PointF& center,
                              float& radius);
/// A quarter turn: (-y, x).
PointF getOrthogonal(const PointF& v);
/// Where `p` projects on the line through `a` and `b`: 0 at `a`, 1 at `b`. `a == b` gives a NaN or
/// an infinity.
float getPositionPointOnSegment(const PointF& p, const PointF& a, const PointF& b);
PointF getNearestPointOnSegment(const PointF& p, const PointF& a, const PointF& b);
float getSignedDistanceToLine(const PointF& p, const PointF& a, const PointF& direction);

/// Signed areas of the first three or four points.
float getTriangleArea(const std::vector<PointF>& points);
float getQuadArea(const std::vector<PointF>& points);
/// Signed area under an open polyline: there is no edge from the last point to the first, so a
/// closed shape must repeat its first point. 0 for fewer than three points.
float getPolylineArea(const std::vector<PointF>& points);
/// Whether `p` lies on one side of all edges of a closed convex shape, or within `tolerance` of the
/// nearest or farthest of their lines. False for an empty shape.
bool isPointInsideShape(const PointF& p, const std::vector<PointF>& shape, float tolerance);
/// Vertices within `tolerance` of the line through their neighbours do not count.
bool isShapeConvex(const std::vector<PointF>& shape, float tolerance);

/// Weights, with sum 1, that give `p` as a mean of `n` points: exact for a triangle, of least
/// squares for more. `out` gets `n` values; fewer than `n` points are an assertion.
void getBaryCoordsN(int n, const PointF& p, const std::vector<PointF>& points,
                    std::vector<float>& out);
void getBaryCoordsTriangle(const PointF& p, const std::vector<PointF>& points,
                           std::vector<float>& out);
void getBaryCoordsQuad(const PointF& p, const std::vector<PointF>& points, std::vector<float>& out);

/// Roots of a x^2 + b x + c, for a > 0 the smaller first. A discriminant down to -`eps` counts as
/// 0; below, both outputs get b / (-2a), the vertex, and the result is false.
bool solveQuadraticEquation(float a, float b, float c, float& x1, float& x2, float eps);

}  // namespace KZ
