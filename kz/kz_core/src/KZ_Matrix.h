#pragma once

#include <istream>
#include <memory>
#include <ostream>
#include <string>

#include "KZ_BasePoint.h"
#include "KZ_BaseSize.h"

namespace KZ {

/// A dense matrix of floats, row after row. `size().width` counts columns, `size().height` rows.
/// Copies are deep. Operands of unequal sizes are assertions.
class Matrix {
public:
    Matrix() = default;
    /// Cells are not initialised.
    explicit Matrix(const Size& size) { create(size); }
    Matrix(const Size& size, const float* values) { create(size, values); }
    /// One column of three or two cells, or a single cell.
    explicit Matrix(const Point3d& p) { create(p); }
    explicit Matrix(const PointF& p) { create(p); }
    explicit Matrix(float value) { create(value); }
    Matrix(const Matrix& other) { create(other); }
    Matrix(Matrix&& other) noexcept;

    /// The present size keeps the cells; another one allocates without clearing. A negative side
    /// or more than 2^31 - 1 cells is `std::bad_alloc`.
    void create(const Size& size);
    void create(const Size& size, const float* values);
    void create(const Point3d& p);
    void create(const PointF& p);
    void create(float value);
    void create(const Matrix& other);

    Matrix& operator=(const Matrix& other);
    Matrix& operator=(Matrix&& other) noexcept;
    Matrix& operator=(const Point3d& p);
    Matrix& operator=(const PointF& p);
    Matrix& operator=(float value);

    void reset();
    bool isEmpty() const { return size_ == Size(); }
    const Size& size() const { return size_; }
    float* data() { return data_.get(); }
    const float* data() const { return data_.get(); }
    /// Cell `k` in row-major order; one out of range is an assertion.
    float& operator[](int k);
    float operator[](int k) const;
    /// Unchecked.
    float& at(int row, int column) { return data_[offset(row, column)]; }
    float at(int row, int column) const { return data_[offset(row, column)]; }

    void fill(float value);
    void zero() { fill(0); }
    void makeZero(const Size& size);
    /// Square forms.
    void makeZero(int n);
    void makeIdentity(int n);
    /// Within 1e-6 a cell.
    bool isIdentity(int n) const;

    Matrix transpose() const;
    /// row `to` += factor * row `from`.
    void addRow(int to, int from, float factor);
    void multiplyRow(int row, float factor);
    void swapRows(int a, int b);
    /// Both ends count.
    void deleteRows(int rowBegin, int rowEnd);
    void deleteColumns(int colBegin, int colEnd);

    /// Inverts in place; false, with the cells as they were, when the matrix is singular. One that
    /// is not square is an assertion.
    bool invert();
    /// Of a 2 by 2 or 3 by 3 matrix; other sizes are an assertion.
    float determinant() const;

    Matrix& operator+=(const Matrix& other);
    Matrix& operator-=(const Matrix& other);
    Matrix& operator*=(float k);
    Matrix& operator*=(const Matrix& other);
    Matrix& operator/=(float k);

    /// The cells of a matrix of three or two cells; any other is an assertion.
    explicit operator Point3d() const;
    explicit operator PointF() const;

    /// The text form in a file. A file that cannot be opened or is malformed is an assertion.
    void save(const std::string& path) const;
    void load(const std::string& path);

private:
    size_t offset(int row, int column) const {
        return static_cast<size_t>(row) * static_cast<size_t>(size_.width) +
               static_cast<size_t>(column);
    }
    size_t cells() const {
        return static_cast<size_t>(size_.width) * static_cast<size_t>(size_.height);
    }
    void checkRow(int row) const;

    Size size_;
    std::unique_ptr<float[]> data_;
};

Matrix operator+(const Matrix& a, const Matrix& b);
Matrix operator-(const Matrix& a, const Matrix& b);
Matrix operator*(const Matrix& a, float k);
Matrix operator*(float k, const Matrix& a);
Matrix operator/(const Matrix& a, float k);
/// The matrix product; the columns of `a` must count as the rows of `b`.
Matrix operator*(const Matrix& a, const Matrix& b);
/// The same into `out`, which may be one of the factors.
void multiply(const Matrix& a, const Matrix& b, Matrix& out);

/// x^T x, x x^T, and x^T w x with a diagonal `w` of one weight a row. `out` may be `x`.
void XTX(const Matrix& x, Matrix& out);
void XXT(const Matrix& x, Matrix& out);
void XTXW(const Matrix& x, const Matrix& weights, Matrix& out);

/// Rows (cos, -sin) and (sin, cos).
Matrix rotationMatrix2d(float radians);
/// Rotations about the three axes of space.
Matrix rotation3dX(float radians);
Matrix rotation3dY(float radians);
Matrix rotation3dZ(float radians);
/// The 3 by 3 matrix that negates x: of the plane in homogeneous coordinates, or of space.
Matrix mirrorOY();
/// The 3 by 3 affine transformation of a point of the plane to its coordinates in the system at
/// `origin` whose x axis is turned by `radians`.
Matrix transformToCS(const PointF& origin, float radians);

/// Text form: the line "Size(columns, rows)", then one line of numbers a row, which reads back
/// exactly. Reading anything else is an assertion.
std::ostream& operator<<(std::ostream& stream, const Matrix& matrix);
std::istream& operator>>(std::istream& stream, Matrix& matrix);

}  // namespace KZ
