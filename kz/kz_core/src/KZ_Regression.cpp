#include <algorithm>
#include <cmath>
#include <vector>

#include "KZ_Assert.h"
#include "KZ_Math.h"

namespace KZ {

namespace {

// Row-major cells in double precision: the iteration doubles rounding errors at every step in the
// directions that the matrix does not reach.
struct DoubleMatrix {
    size_t rows;
    size_t columns;
    std::vector<double> cells;

    DoubleMatrix(size_t height, size_t width)
        : rows(height), columns(width), cells(height * width) {}

    DoubleMatrix operator*(const DoubleMatrix& other) const {
        DoubleMatrix product(rows, other.columns);
        for (size_t y = 0; y < rows; ++y)
            for (size_t k = 0; k < columns; ++k)
                for (size_t x = 0; x < other.columns; ++x)
                    product.cells[y * other.columns + x] +=
                        cells[y * columns + k] * other.cells[k * other.columns + x];
        return product;
    }
};

// The transpose over a bound of the largest singular value's square, from which the iteration
// converges.
DoubleMatrix startOfIteration(const DoubleMatrix& a) {
    std::vector<double> rowSums(a.rows), columnSums(a.columns);
    DoubleMatrix start(a.columns, a.rows);
    for (size_t y = 0; y < a.rows; ++y)
        for (size_t x = 0; x < a.columns; ++x) {
            const double cell = a.cells[y * a.columns + x];
            rowSums[y] += std::fabs(cell);
            columnSums[x] += std::fabs(cell);
            start.cells[x * a.rows + y] = cell;
        }
    const double bound = *std::max_element(rowSums.begin(), rowSums.end()) *
                         *std::max_element(columnSums.begin(), columnSums.end());
    if (!(bound > 0)) return DoubleMatrix(a.columns, a.rows);
    for (double& cell : start.cells) cell /= bound;
    return start;
}

// x becomes 2x - x a x; returns how far its cells moved in all.
double iterate(const DoubleMatrix& a, DoubleMatrix& x) {
    const DoubleMatrix xax = x * a * x;
    double moved = 0;
    for (size_t i = 0; i < x.cells.size(); ++i) {
        moved += std::fabs(x.cells[i] - xax.cells[i]);
        x.cells[i] = 2 * x.cells[i] - xax.cells[i];
    }
    return moved;
}

double sumOfMagnitudes(const DoubleMatrix& m) {
    double sum = 0;
    for (double cell : m.cells) sum += std::fabs(cell);
    return sum;
}

}  // namespace

Matrix pseudoInverseIterative(const Matrix& matrix) {
    const Size size = matrix.size();
    Matrix result;
    if (size.area() == 0) return result;
    DoubleMatrix a(static_cast<size_t>(size.height), static_cast<size_t>(size.width));
    std::copy_n(matrix.data(), a.cells.size(), a.cells.begin());

    // Singular values of a float matrix that are more than noise settle within about 50 steps.
    DoubleMatrix x = startOfIteration(a);
    for (int step = 0; step < 60; ++step)
        if (!(iterate(a, x) > 1e-9 * sumOfMagnitudes(x))) break;

    result.create(Size(size.height, size.width));
    for (int i = 0; i < size.area(); ++i)
        result[i] = static_cast<float>(x.cells[static_cast<size_t>(i)]);
    return result;
}

bool regression(const std::vector<PointF>& points, float& slope, float& intercept) {
    if (points.empty()) return false;
    const double n = static_cast<double>(points.size());
    double meanX = 0, meanY = 0;
    for (const PointF& p : points) {
        meanX += p.x / n;
        meanY += p.y / n;
    }
    double xx = 0, xy = 0;
    for (const PointF& p : points) {
        xx += (p.x - meanX) * (p.x - meanX);
        xy += (p.x - meanX) * (p.y - meanY);
    }
    if (!(xx > 0)) return false;
    slope = static_cast<float>(xy / xx);
    intercept = static_cast<float>(meanY - xy / xx * meanX);
    return true;
}

bool linearRegressionMat(const Matrix& x, const Matrix& y, Matrix& out) {
    KZ_ASSERT_EQ(x.size().height, y.size().height);
    Matrix inverse;
    XTX(x, inverse);
    if (!inverse.invert()) return false;
    out = inverse * (x.transpose() * y);
    return true;
}

float computeR2(const std::vector<float>& values, const std::vector<float>& predictions) {
    KZ_ASSERT_EQ(values.size(), predictions.size());
    double mean = 0;
    for (float value : values) mean += value / static_cast<double>(values.size());
    double total = 0, residual = 0;
    for (size_t i = 0; i < values.size(); ++i) {
        const double error = static_cast<double>(values[i]) - predictions[i];
        residual += error * error;
        total += (values[i] - mean) * (values[i] - mean);
    }
    if (!(total > 0)) return residual > 0 ? 0.0f : 1.0f;
    return static_cast<float>(1 - residual / total);
}

}  // namespace KZ
