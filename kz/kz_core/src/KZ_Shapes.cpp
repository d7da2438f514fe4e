#include <cmath>

#include "KZ_Assert.h"
#include "KZ_Geometry.h"
#include "KZ_Math.h"

// Areas, shapes of several points and weights over them.

namespace KZ {

namespace {

float triangleArea(const PointF& p0, const PointF& p1, const PointF& p2) {
    return ((p1.x - p0.x) * (p2.y - p0.y) - (p1.y - p0.y) * (p2.x - p0.x)) * 0.5f;
}

}  // namespace

float getTriangleArea(const std::vector<PointF>& points) {
    KZ_ASSERT_GE(points.size(), size_t{3});
    return triangleArea(points[0], points[1], points[2]);
}

float getQuadArea(const std::vector<PointF>& points) {
    KZ_ASSERT_GE(points.size(), size_t{4});
    return triangleArea(points[0], points[1], points[2]) +
           triangleArea(points[0], points[2], points[3]);
}

float getPolylineArea(const std::vector<PointF>& points) {
    if (points.size() < 3) return 0;
    float sum = 0;
    for (size_t i = 1; i < points.size(); ++i)
        sum += points[i - 1].x * points[i].y - points[i].x * points[i - 1].y;
    return 0.5f * sum;
}

bool isPointInsideShape(const PointF& p, const std::vector<PointF>& shape, float tolerance) {
    if (shape.empty()) return false;
    float smallest = maxValue<float>();
    float largest = minValue<float>();
    for (size_t i = 0; i < shape.size(); ++i) {
        const PointF& from = shape[i];
        const PointF& to = shape[(i + 1) % shape.size()];
        const float distance = getSignedDistanceToLine(p, from, to - from);
        if (distance < smallest) smallest = distance;
        if (distance > largest) largest = distance;
    }
    return (smallest >= 0) == (largest >= 0) || std::fabs(smallest) < tolerance ||
           std::fabs(largest) < tolerance;
}

bool isShapeConvex(const std::vector<PointF>& shape, float tolerance) {
    const size_t n = shape.size();
    if (n < 4) return true;
    bool isSignKnown = false;
    bool isPositive = false;
    for (size_t i = 0; i < n; ++i) {
        const PointF& before = shape[(i + n - 1) % n];
        const PointF& after = shape[(i + 1) % n];
        const float distance = getSignedDistanceToLine(shape[i], before, after - before);
        if (std::fabs(distance) < tolerance) continue;
        if (isSignKnown && isPositive != (distance >= 0)) return false;
        isSignKnown = true;
        isPositive = distance >= 0;
    }
    return true;
}

void getBaryCoordsN(int n, const PointF& p, const std::vector<PointF>& points,
                    std::vector<float>& out) {
    KZ_ASSERT_GT(n, 0);
    KZ_ASSERT_GE(points.size(), static_cast<size_t>(n));
    const PointF last = points[static_cast<size_t>(n) - 1];
    Matrix edges(Size(n - 1, 2));
    for (int i = 0; i < n - 1; ++i) {
        const PointF edge = points[static_cast<size_t>(i)] - last;
        edges.at(0, i) = edge.x;
        edges.at(1, i) = edge.y;
    }
    Matrix square;
    XXT(edges, square);
    const Matrix weightsOf = pseudoInverse2x2(square) * edges;

    const PointF offset = p - last;
    out.assign(static_cast<size_t>(n), 0.0f);
    float sum = 0;
    for (int i = 0; i < n - 1; ++i) {
        const float weight = weightsOf.at(0, i) * offset.x + weightsOf.at(1, i) * offset.y;
        out[static_cast<size_t>(i)] = weight;
        sum += weight;
    }
    out.back() = 1 - sum;
}

void getBaryCoordsTriangle(const PointF& p, const std::vector<PointF>& points,
                           std::vector<float>& out) {
    getBaryCoordsN(3, p, points, out);
}

void getBaryCoordsQuad(const PointF& p, const std::vector<PointF>& points,
                       std::vector<float>& out) {
    getBaryCoordsN(4, p, points, out);
}

}  // namespace KZ
