#include "KZ_Matrix.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>
#include <utility>

#include "KZ_Assert.h"
#include "KZ_Limits.h"
#include "KZ_Math.h"

namespace KZ {

Matrix::Matrix(Matrix&& other) noexcept : size_(other.size_), data_(std::move(other.data_)) {
    other.size_ = Size();
}

void Matrix::create(const Size& size) {
    if (size == size_) return;
    const int64_t count = static_cast<int64_t>(size.width) * size.height;
    if (size.width < 0 || size.height < 0 || count > maxValue<int>()) throw std::bad_alloc();
    reset();
    data_.reset(new float[static_cast<size_t>(count)]);
    size_ = size;
}

void Matrix::create(const Size& size, const float* values) {
    create(size);
    std::copy_n(values, cells(), data_.get());
}

void Matrix::create(const Point3d& p) {
    const float values[] = {p.x, p.y, p.z};
    create(Size(1, 3), values);
}

void Matrix::create(const PointF& p) {
    const float values[] = {p.x, p.y};
    create(Size(1, 2), values);
}

void Matrix::create(float value) {
    create(Size(1, 1), &value);
}

void Matrix::create(const Matrix& other) {
    if (this == &other) return;
    if (other.isEmpty()) return reset();
    create(other.size_, other.data_.get());
}

Matrix& Matrix::operator=(const Matrix& other) {
    create(other);
    return *this;
}

Matrix& Matrix::operator=(Matrix&& other) noexcept {
    std::swap(size_, other.size_);
    std::swap(data_, other.data_);
    return *this;
}

Matrix& Matrix::operator=(const Point3d& p) {
    create(p);
    return *this;
}

Matrix& Matrix::operator=(const PointF& p) {
    create(p);
    return *this;
}

Matrix& Matrix::operator=(float value) {
    create(value);
    return *this;
}

void Matrix::reset() {
    size_ = Size();
    data_.reset();
}

float& Matrix::operator[](int k) {
    KZ_ASSERT(k < size_.area(), k << " >= " << size_.area());
    KZ_ASSERT(k >= 0, k);
    return data_[static_cast<size_t>(k)];
}

float Matrix::operator[](int k) const {
    KZ_ASSERT(k < size_.area(), k << " >= " << size_.area());
    KZ_ASSERT(k >= 0, k);
    return data_[static_cast<size_t>(k)];
}

void Matrix::fill(float value) {
    std::fill_n(data_.get(), cells(), value);
}

void Matrix::makeZero(const Size& size) {
    create(size);
    zero();
}

void Matrix::makeZero(int n) {
    makeZero(Size(n, n));
}

void Matrix::makeIdentity(int n) {
    makeZero(n);
    for (int i = 0; i < n; ++i) at(i, i) = 1;
}

bool Matrix::isIdentity(int n) const {
    if (size_ != Size(n, n)) return false;
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x)
            if (!(std::fabs(at(y, x) - (x == y ? 1 : 0)) <= 1e-6f)) return false;
    return true;
}

Matrix Matrix::transpose() const {
    Matrix result(Size(size_.height, size_.width));
    for (int y = 0; y < size_.height; ++y)
        for (int x = 0; x < size_.width; ++x) result.at(x, y) = at(y, x);
    return result;
}

void Matrix::checkRow(int row) const {
    KZ_ASSERT(row >= 0 && row < size_.height, "no row " << row << " in a matrix of " << size_);
}

void Matrix::addRow(int to, int from, float factor) {
    checkRow(to);
    checkRow(from);
    for (int x = 0; x < size_.width; ++x) at(to, x) += factor * at(from, x);
}

void Matrix::multiplyRow(int row, float factor) {
    checkRow(row);
    for (int x = 0; x < size_.width; ++x) at(row, x) *= factor;
}

void Matrix::swapRows(int a, int b) {
    checkRow(a);
    checkRow(b);
    for (int x = 0; x < size_.width; ++x) std::swap(at(a, x), at(b, x));
}

void Matrix::deleteRows(int rowBegin, int rowEnd) {
    if (!(rowEnd < size_.height)) KZ_FAIL_("rowEnd < (int) size_.height", "rowEnd > size_.width;");
    KZ_ASSERT(rowBegin >= 0 && rowBegin <= rowEnd, rowBegin << " to " << rowEnd);
    Matrix result(Size(size_.width, size_.height - (rowEnd - rowBegin + 1)));
    for (int y = 0; y < result.size_.height; ++y)
        for (int x = 0; x < size_.width; ++x)
            result.at(y, x) = at(y < rowBegin ? y : y + rowEnd - rowBegin + 1, x);
    *this = std::move(result);
}

void Matrix::deleteColumns(int colBegin, int colEnd) {
    KZ_ASSERT(colEnd < (int)size_.width, "colEnd > size_.width;");
    KZ_ASSERT(colBegin >= 0 && colBegin <= colEnd, colBegin << " to " << colEnd);
    Matrix result(Size(size_.width - (colEnd - colBegin + 1), size_.height));
    for (int y = 0; y < size_.height; ++y)
        for (int x = 0; x < result.size_.width; ++x)
            result.at(y, x) = at(y, x < colBegin ? x : x + colEnd - colBegin + 1);
    *this = std::move(result);
}

bool Matrix::invert() {
    return KZ::invert(*this, *this);
}

float Matrix::determinant() const {
    const float* m = data_.get();
    if (size_ == Size(2, 2)) return m[0] * m[3] - m[1] * m[2];
    if (size_ == Size(3, 3))
        return m[0] * (m[4] * m[8] - m[5] * m[7]) - m[1] * (m[3] * m[8] - m[5] * m[6]) +
               m[2] * (m[3] * m[7] - m[4] * m[6]);
    KZ_ASSERT(false, "no determinant of a matrix of " << size_);
    return 0;
}

Matrix& Matrix::operator+=(const Matrix& other) {
    KZ_ASSERT_EQ(size_, other.size_);
    for (size_t i = 0; i < cells(); ++i) data_[i] += other.data_[i];
    return *this;
}

Matrix& Matrix::operator-=(const Matrix& other) {
    KZ_ASSERT_EQ(size_, other.size_);
    for (size_t i = 0; i < cells(); ++i) data_[i] -= other.data_[i];
    return *this;
}

Matrix& Matrix::operator*=(float k) {
    for (size_t i = 0; i < cells(); ++i) data_[i] *= k;
    return *this;
}

Matrix& Matrix::operator*=(const Matrix& other) {
    multiply(*this, other, *this);
    return *this;
}

Matrix& Matrix::operator/=(float k) {
    for (size_t i = 0; i < cells(); ++i) data_[i] /= k;
    return *this;
}

Matrix::operator Point3d() const {
    KZ_ASSERT(size_.area() == 3, size_);
    return Point3d(data_[0], data_[1], data_[2]);
}

Matrix::operator PointF() const {
    KZ_ASSERT(size_.area() == 2, size_);
    return PointF(data_[0], data_[1]);
}

}  // namespace KZ
