#include <cmath>
#include <utility>

#include "KZ_Assert.h"
#include "KZ_Matrix.h"

namespace KZ {

Matrix operator+(const Matrix& a, const Matrix& b) {
    Matrix result(a);
    return result += b;
}

Matrix operator-(const Matrix& a, const Matrix& b) {
    Matrix result(a);
    return result -= b;
}

Matrix operator*(const Matrix& a, float k) {
    Matrix result(a);
    return result *= k;
}

Matrix operator*(float k, const Matrix& a) {
    return a * k;
}

Matrix operator/(const Matrix& a, float k) {
    Matrix result(a);
    return result /= k;
}

Matrix operator*(const Matrix& a, const Matrix& b) {
    Matrix result;
    multiply(a, b, result);
    return result;
}

void multiply(const Matrix& a, const Matrix& b, Matrix& out) {
    KZ_ASSERT_EQ(a.size().width, b.size().height);
    Matrix product(Size(b.size().width, a.size().height));
    for (int y = 0; y < a.size().height; ++y)
        for (int x = 0; x < b.size().width; ++x) {
            float sum = 0;
            for (int k = 0; k < a.size().width; ++k) sum += a.at(y, k) * b.at(k, x);
            product.at(y, x) = sum;
        }
    out = std::move(product);
}

void XTX(const Matrix& x, Matrix& out) {
    multiply(x.transpose(), x, out);
}

void XXT(const Matrix& x, Matrix& out) {
    multiply(x, x.transpose(), out);
}

void XTXW(const Matrix& x, const Matrix& weights, Matrix& out) {
    KZ_ASSERT_EQ(weights.size().area(), x.size().height);
    Matrix weighted(x);
    for (int y = 0; y < x.size().height; ++y) weighted.multiplyRow(y, weights[y]);
    multiply(x.transpose(), weighted, out);
}

Matrix rotationMatrix2d(float radians) {
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    const float cells[] = {c, -s, s, c};
    return Matrix(Size(2, 2), cells);
}

Matrix rotation3dX(float radians) {
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    const float cells[] = {1, 0, 0, 0, c, -s, 0, s, c};
    return Matrix(Size(3, 3), cells);
}

Matrix rotation3dY(float radians) {
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    const float cells[] = {c, 0, s, 0, 1, 0, -s, 0, c};
    return Matrix(Size(3, 3), cells);
}

Matrix rotation3dZ(float radians) {
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    const float cells[] = {c, -s, 0, s, c, 0, 0, 0, 1};
    return Matrix(Size(3, 3), cells);
}

Matrix mirrorOY() {
    const float cells[] = {-1, 0, 0, 0, 1, 0, 0, 0, 1};
    return Matrix(Size(3, 3), cells);
}

Matrix transformToCS(const PointF& origin, float radians) {
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    const float cells[] = {
        c, s, -(c * origin.x + s * origin.y), -s, c, s * origin.x - c * origin.y, 0, 0, 1};
    return Matrix(Size(3, 3), cells);
}

}  // namespace KZ
