#pragma once

#include <vector>

#include "KZ_BasePoint.h"
#include "KZ_Matrix.h"

namespace KZ {

/// The inverse of `input`, which may be `output` itself. False, with `output` as it was, when the
/// matrix is singular; one that is not square is an assertion.
bool invert(const Matrix& input, Matrix& output);

/// Moore-Penrose inverse of a 2 by 2 matrix, by formulas; another size is an assertion.
Matrix pseudoInverse2x2(const Matrix& matrix);
/// Moore-Penrose inverse of any matrix, by Newton's iteration in double precision.
Matrix pseudoInverseIterative(const Matrix& matrix);

/// Both take a point of the plane; a homography is 3 by 3 and divides by the third coordinate, an
/// affine transformation has 3 columns and 2 or 3 rows. Other sizes are assertions. The form for
/// vectors leaves out the shift.
PointF applyHomography(const PointF& point, const Matrix& matrix);
PointF applyAffineTransformation(const PointF& point, const Matrix& matrix);
PointF applyAffineTransformationToVec(const PointF& point, const Matrix& matrix);

/// The line y = slope * x + intercept of least squares; false, without touching the outputs, when
/// the points do not differ in x.
bool regression(const std::vector<PointF>& points, float& slope, float& intercept);
/// Coefficients `out` of least squares with x * out close to y: one row of `x` and `y` a sample,
/// one column of `x` a feature. False, without touching `out`, when the features depend on each
/// other.
bool linearRegressionMat(const Matrix& x, const Matrix& y, Matrix& out);
/// Coefficient of determination of predictions: 1 for perfect ones, 0 for those no better than the
/// mean. Values that are all equal give 1 when they are met exactly, else 0. The vectors must be
/// of one length.
float computeR2(const std::vector<float>& values, const std::vector<float>& predictions);

}  // namespace KZ
