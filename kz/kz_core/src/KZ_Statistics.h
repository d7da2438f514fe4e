#pragma once

#include <vector>

#include "KZ_BasePoint.h"
#include "KZ_Matrix.h"

// Order statistics reorder the vector that they are given. T is float or unsigned char.

namespace KZ {

/// The element of rank `n`, counted from the smallest; a rank out of range is an assertion.
template <typename T>
T nthElement(std::vector<T>& array, int n);
/// The element of rank trunc(size * q), held inside the array; no elements are an assertion.
template <typename T>
T quantile(std::vector<T>& array, float q);
/// The middle element, of an even count the upper one; no elements are an assertion.
template <typename T>
T median(std::vector<T>& array);

extern template float nthElement(std::vector<float>&, int);
extern template unsigned char nthElement(std::vector<unsigned char>&, int);
extern template float quantile(std::vector<float>&, float);
extern template unsigned char quantile(std::vector<unsigned char>&, float);
extern template float median(std::vector<float>&);
extern template unsigned char median(std::vector<unsigned char>&);

/// With n - 1 in the denominator; 0 for fewer than two values.
float variance(const float* values, int n);
/// Mean squared distance from the centre of gravity; 0 for fewer than two points. The sums
/// of coordinates and of their squares must stay within 32 bits.
float variance(const std::vector<Point>& points);

/// Mean products of the deviations from `mean`, 2 by 2 or 3 by 3; zero for an empty list. With
/// weights, one a point, the weighted mean.
void covariance(const std::vector<PointF>& points, const PointF& mean, Matrix& matrix);
void covariance(const std::vector<Point3d>& points, const Point3d& mean, Matrix& matrix);
void covariance(const std::vector<PointF>& points, const std::vector<float>& weights,
                const PointF& mean, Matrix& matrix);
void covariance(const std::vector<Point3d>& points, const std::vector<float>& weights,
                const Point3d& mean, Matrix& matrix);

}  // namespace KZ
