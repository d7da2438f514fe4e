#include "KZ_Matrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <sstream>

#include "KZ_DrawRegression.h"
#include "KZ_Math.h"
#include "KZ_Utils.h"
#include "LogCapture.h"

using namespace KZ;
using testing_support::assertionOf;
using testing_support::conditionOf;

namespace {

Matrix matrix(int columns, int rows, const std::vector<float>& cells) {
    return Matrix(Size(columns, rows), cells.data());
}

Matrix randomMatrix(int columns, int rows, std::mt19937& random) {
    std::uniform_real_distribution<float> value(-2, 2);
    Matrix m(Size(columns, rows));
    for (int i = 0; i < m.size().area(); ++i) m[i] = value(random);
    return m;
}

float distance(const Matrix& a, const Matrix& b) {
    EXPECT_EQ(a.size(), b.size());
    float largest = 0;
    for (int i = 0; i < a.size().area(); ++i) largest = std::max(largest, std::fabs(a[i] - b[i]));
    return largest;
}

}  // namespace

TEST(Matrix, CopiesAreDeepAndSizesChecked) {
    Matrix m = matrix(2, 2, {1, 2, 3, 4});
    m.create(Size(2, 2));
    EXPECT_EQ(3, m[2]);
    const Matrix copy(m);
    m[0] = 50;
    EXPECT_EQ(1, copy[0]);
    m = Point3d(7, 8, 9);
    EXPECT_EQ(Point3d(7, 8, 9), Point3d(m));
    EXPECT_THROW(m.create(Size(1 << 16, 1 << 16)), std::bad_alloc);
    EXPECT_THROW(m.create(Size(-1, -5)), std::bad_alloc);
}

TEST(Matrix, Refusals) {
    Matrix m = matrix(3, 2, {1, 2, 3, 4, 5, 6}), out;
    EXPECT_EQ("6 >= 6\n", assertionOf([&] { m[6] = 0; }));
    EXPECT_EQ("-1\n", assertionOf([&] { m[-1] = 0; }));
    EXPECT_EQ("matrix is not square\n", assertionOf([&] { invert(m, out); }));
    EXPECT_EQ("rowEnd > size_.width;\n", assertionOf([&] { m.deleteRows(0, 2); }));
    EXPECT_EQ("3 != 2\n", assertionOf([&] { m *= m; }));
    EXPECT_EQ("row >= 0 && row < size_.height", conditionOf([&] { m.swapRows(0, 2); }));
}

TEST(Matrix, ArithmeticByHand) {
    const Matrix a = matrix(3, 2, {1, 2, 3, 4, 5, 6});
    const Matrix b = matrix(2, 3, {1, 0, 2, 1, 0, 3});
    EXPECT_EQ(0, distance(matrix(2, 2, {5, 11, 14, 23}), a * b));
    EXPECT_EQ(0, distance(matrix(3, 2, {1.5f, 3, 4.5f, 6, 7.5f, 9}), a + a / 2));
    EXPECT_EQ(0, distance(a, 2 * a - a));
    EXPECT_EQ(0, distance(matrix(2, 3, {1, 4, 2, 5, 3, 6}), a.transpose()));
    Matrix out = a;
    XTX(out, out);
    EXPECT_EQ(0, distance(matrix(3, 3, {17, 22, 27, 22, 29, 36, 27, 36, 45}), out));
    XXT(a, out);
    EXPECT_EQ(0, distance(matrix(2, 2, {14, 32, 32, 77}), out));
    XTXW(b, matrix(1, 3, {1, 10, 100}), out);
    EXPECT_EQ(0, distance(matrix(2, 2, {41, 20, 20, 910}), out));

    Matrix rows = matrix(2, 4, {0, 1, 2, 3, 4, 5, 6, 7});
    rows.addRow(0, 3, 2);
    rows.swapRows(0, 1);
    rows.multiplyRow(3, -1);
    EXPECT_EQ(0, distance(matrix(2, 4, {2, 3, 12, 15, 4, 5, -6, -7}), rows));
    rows.deleteRows(1, 2);
    rows.deleteColumns(0, 0);
    EXPECT_EQ(0, distance(matrix(1, 2, {3, -7}), rows));
}

TEST(Matrix, Inverses) {
    std::mt19937 random(761);
    for (int n = 1; n <= 6; ++n)
        for (int round = 0; round < 20; ++round) {
            Matrix m = randomMatrix(n, n, random);
            for (int i = 0; i < n; ++i) m.at(i, i) += m.at(i, i) < 0 ? -6 : 6;
            if (n > 2) m.swapRows(0, n - 1);  // a first pivot that is not the best one
            Matrix inverse = m;
            ASSERT_TRUE(inverse.invert());
            Matrix identity;
            identity.makeIdentity(n);
            EXPECT_LT(distance(identity, m * inverse), 1e-4f);
        }
    Matrix zeroPivot = matrix(3, 3, {0, 1, 0, 1, 0, 0, 0, 0, 2});
    EXPECT_TRUE(zeroPivot.invert());
    EXPECT_EQ(0, distance(matrix(3, 3, {0, 1, 0, 1, 0, 0, 0, 0, 0.5f}), zeroPivot));

    for (const Matrix& m : {matrix(2, 2, {1, 2, 2, 4}), matrix(1, 1, {0}), Matrix()}) {
        Matrix out = m;
        EXPECT_FALSE(out.invert());
        EXPECT_EQ(0, distance(m, out));
    }
    EXPECT_FLOAT_EQ(-2, matrix(2, 2, {1, 2, 3, 4}).determinant());
    EXPECT_FLOAT_EQ(-99, matrix(3, 3, {2, 0, 3, 1, 4, 5, 7, 1, -1}).determinant());
}

// The four conditions that define the pseudo-inverse, for full and deficient rank.
TEST(Matrix, PseudoInverses) {
    const auto expectInverse = [](const Matrix& a, const Matrix& x) {
        EXPECT_LT(distance(a * x * a, a), 2e-3f);
        EXPECT_LT(distance(x * a * x, x), 2e-3f);
        EXPECT_LT(distance((a * x).transpose(), a * x), 2e-3f);
        EXPECT_LT(distance((x * a).transpose(), x * a), 2e-3f);
    };
    std::mt19937 random(762);
    for (const Size& size : {Size(2, 2), Size(4, 2), Size(2, 5), Size(1, 3)}) {
        const Matrix m = randomMatrix(size.width, size.height, random);
        expectInverse(m, pseudoInverseIterative(m));
    }
    const Matrix deficient = matrix(3, 3, {1, 2, 3, 2, 4, 6, 1, 0, 1});
    expectInverse(deficient, pseudoInverseIterative(deficient));
    for (const std::vector<float>& cells :
         {std::vector<float>{4, 1, 2, 3}, {1, 2, 2, 4}, {0, 3, 0, 1}, {0, 0, 0, 0}})
        expectInverse(matrix(2, 2, cells), pseudoInverse2x2(matrix(2, 2, cells)));
}

TEST(Matrix, TransformationsOfPoints) {
    const float quarter = 1.5707963f;
    // Where the axes y, z, x go under a quarter turn about x, y, z: to the next axis.
    const Matrix x(Point3d(1, 0, 0)), y(Point3d(0, 1, 0)), z(Point3d(0, 0, 1));
    EXPECT_LT(distance(z, rotation3dX(quarter) * y), 1e-6f);
    EXPECT_LT(distance(x, rotation3dY(quarter) * z), 1e-6f);
    EXPECT_LT(distance(y, rotation3dZ(quarter) * x), 1e-6f);
    EXPECT_EQ(PointF(-3, 4), applyAffineTransformation(PointF(3, 4), mirrorOY()));

    const Matrix toSystem = transformToCS(PointF(10, 20), quarter);
    const PointF inSystem = applyAffineTransformation(PointF(10, 23), toSystem);
    EXPECT_NEAR(3, inSystem.x, 1e-5f);
    EXPECT_NEAR(0, inSystem.y, 1e-5f);
    EXPECT_EQ(PointF(5, 2.5f),
              applyHomography(PointF(9, 4), matrix(3, 3, {1, 0, 1, 0, 1, 1, 0, 0.25f, 1})));
}

TEST(Regression, RecoversLinesAndCoefficients) {
    float slope = 0, intercept = 0;
    ASSERT_TRUE(regression({{1000, 1}, {1001, 3}, {1002, 2}, {1003, 4}}, slope, intercept));
    EXPECT_FLOAT_EQ(0.8f, slope);
    EXPECT_FLOAT_EQ(-798.7f, intercept);
    EXPECT_FALSE(regression({{1, 1}, {1, 3}}, slope, intercept));

    std::mt19937 random(763);
    const Matrix x = randomMatrix(3, 30, random);
    const Matrix truth = matrix(2, 3, {1, -2, 0.5f, 4, 3, 0});
    Matrix found;
    ASSERT_TRUE(linearRegressionMat(x, x * truth, found));
    EXPECT_LT(distance(truth, found), 1e-4f);
    EXPECT_FLOAT_EQ(0.5f, computeR2({1, 2, 3}, {2, 2, 3}));
    EXPECT_FLOAT_EQ(0, computeR2({5, 5}, {5, 6}));
}

// A steep line leaves the image above and below; one far away leaves it untouched.
TEST(Regression, LineIsDrawnInsideTheImage) {
    const float rows[][3] = {{0.5f, 2, 32}, {-1e6f, 16e6f, 20}, {0, 1e9f, 0}};
    for (const auto& row : rows) {  // slope, intercept, pixels
        Image image(Size(32, 20), COLOR_MODE_MONO);
        zero(image);
        drawRegression(image, {{0, row[1]}, {64, 64 * row[0] + row[1]}}, Color::WHITE, 1);
        EXPECT_EQ(row[2], std::count(image.data(), image.data() + 640, 255)) << row[0];
    }
}

TEST(Matrix, TextFormReadsBackExactly) {
    std::mt19937 random(764);
    Matrix m = randomMatrix(3, 4, random);
    m[0] = std::nanf("");
    m[1] = -INFINITY;
    m[2] = 1e-42f;
    Matrix back;
    std::istringstream stream(toStr(m));
    stream >> back;
    EXPECT_EQ(toStr(m), toStr(back));
    EXPECT_EQ(m[5], back[5]);
    for (const char* text : {"Size(2, 2)\n1 2 3", "Size(-1, 2)\n", "Size(30000, 30000)\n1 2"}) {
        std::istringstream input(text);
        EXPECT_NE("no failure", conditionOf([&] { input >> back; })) << text;
        EXPECT_EQ(toStr(m), toStr(back));
    }
}
