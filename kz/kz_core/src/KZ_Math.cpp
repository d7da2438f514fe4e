#include "KZ_Math.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "KZ_Assert.h"

namespace KZ {

namespace {

bool invert2x2(const Matrix& m, Matrix& output) {
    const float determinant = m.determinant();
    if (determinant == 0 || !std::isfinite(determinant)) return false;
    const float cells[] = {m[3] / determinant, -m[1] / determinant, -m[2] / determinant,
                           m[0] / determinant};
    output.create(m.size(), cells);
    return true;
}

float largestCell(const Matrix& m) {
    float largest = 0;
    for (int i = 0; i < m.size().area(); ++i) largest = std::max(largest, std::fabs(m[i]));
    return largest;
}

// The row at or below `column` with the largest cell of that column.
int pivotRow(const Matrix& m, int column) {
    int best = column;
    for (int y = column + 1; y < m.size().height; ++y)
        if (std::fabs(m.at(y, column)) > std::fabs(m.at(best, column))) best = y;
    return best;
}

bool invertByElimination(Matrix m, Matrix& output) {
    const int n = m.size().height;
    // What elimination leaves of a row that depends on the others.
    const float rounding = largestCell(m) * 1.1920929e-7f * static_cast<float>(n);
    Matrix inverse;
    inverse.makeIdentity(n);
    for (int column = 0; column < n; ++column) {
        const int pivot = pivotRow(m, column);
        if (!(std::fabs(m.at(pivot, column)) > rounding)) return false;
        m.swapRows(column, pivot);
        inverse.swapRows(column, pivot);
        const float scale = 1 / m.at(column, column);
        m.multiplyRow(column, scale);
        inverse.multiplyRow(column, scale);
        for (int row = 0; row < n; ++row) {
            if (row == column) continue;
            const float factor = -m.at(row, column);
            m.addRow(row, column, factor);
            inverse.addRow(row, column, factor);
        }
    }
    output = std::move(inverse);
    return true;
}

void checkAffine(const Matrix& matrix) {
    KZ_ASSERT(matrix.size() == Size(3, 2) || matrix.size() == Size(3, 3), matrix.size());
}

}  // namespace

bool invert(const Matrix& input, Matrix& output) {
    const Matrix inputMatrix(input);
    KZ_ASSERT(inputMatrix.size().width == inputMatrix.size().height, "matrix is not square");
    if (inputMatrix.size() == Size(2, 2)) return invert2x2(inputMatrix, output);
    return !inputMatrix.isEmpty() && invertByElimination(inputMatrix, output);
}

Matrix pseudoInverse2x2(const Matrix& matrix) {
    KZ_ASSERT_EQ(matrix.size(), Size(2, 2));
    const double a = matrix[0], b = matrix[1], c = matrix[2], d = matrix[3];
    const double determinant = a * d - b * c;
    const double squares = a * a + b * b + c * c + d * d;
    Matrix result;
    result.makeZero(2);
    if (!(squares > 0)) return result;
    // Below this share the determinant is what the rounding of the cells left of 0. A matrix of
    // rank one has its transpose over its squares for an inverse.
    const bool isRegular = std::fabs(determinant) > 1e-7 * squares;
    const double scale = 1 / (isRegular ? determinant : squares);
    result[0] = static_cast<float>((isRegular ? d : a) * scale);
    result[1] = static_cast<float>((isRegular ? -b : c) * scale);
    result[2] = static_cast<float>((isRegular ? -c : b) * scale);
    result[3] = static_cast<float>((isRegular ? a : d) * scale);
    return result;
}

PointF applyHomography(const PointF& point, const Matrix& matrix) {
    KZ_ASSERT(matrix.size() == Size(3, 3), matrix.size());
    const float* m = matrix.data();
    const float w = m[6] * point.x + m[7] * point.y + m[8];
    return PointF((m[0] * point.x + m[1] * point.y + m[2]) / w,
                  (m[3] * point.x + m[4] * point.y + m[5]) / w);
}

PointF applyAffineTransformation(const PointF& point, const Matrix& matrix) {
    checkAffine(matrix);
    const float* m = matrix.data();
    return PointF(m[0] * point.x + m[1] * point.y + m[2], m[3] * point.x + m[4] * point.y + m[5]);
}

PointF applyAffineTransformationToVec(const PointF& point, const Matrix& matrix) {
    checkAffine(matrix);
    const float* m = matrix.data();
    return PointF(m[0] * point.x + m[1] * point.y, m[3] * point.x + m[4] * point.y);
}

}  // namespace KZ
