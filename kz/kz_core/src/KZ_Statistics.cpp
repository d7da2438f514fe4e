#include "KZ_Statistics.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "KZ_Assert.h"

namespace KZ {

template <typename T>
T nthElement(std::vector<T>& array, int n) {
    const int data_size = static_cast<int>(array.size());
    KZ_ASSERT(n >= 0 && n < data_size, "n = " << n << ", size = " << data_size);
    T* data = array.data();
    int left = 0;
    int right = data_size - 1;
    while (left < right) {
        const T pivot = data[(left + right) / 2];
        int i = left;
        int j = right;
        do {
            while (data[i] < pivot) ++i;
            while (pivot < data[j]) --j;
            if (i <= j) std::swap(data[i++], data[j--]);
        } while (i <= j);
        // Between j and i lie only elements equal to the pivot.
        if (j < n) left = i;
        if (n < i) right = j;
    }
    return data[n];
}

template <typename T>
T quantile(std::vector<T>& array, float q) {
    const int arraySize = static_cast<int>(array.size());
    KZ_ASSERT(arraySize > 0, "zero array size");
    if (!(q > 0)) return nthElement(array, 0);
    if (q >= 1) return nthElement(array, arraySize - 1);
    const int rank = static_cast<int>(static_cast<float>(arraySize) * q);
    return nthElement(array, std::min(rank, arraySize - 1));
}

template <typename T>
T median(std::vector<T>& array) {
    KZ_ASSERT(array.size() != 0, "Array doesn't exist");
    return quantile(array, 0.5f);
}

template float nthElement(std::vector<float>&, int);
template unsigned char nthElement(std::vector<unsigned char>&, int);
template float quantile(std::vector<float>&, float);
template unsigned char quantile(std::vector<unsigned char>&, float);
template float median(std::vector<float>&);
template unsigned char median(std::vector<unsigned char>&);

float variance(const float* values, int n) {
    if (n < 2) return 0;
    float sum = 0;
    float squares = 0;
    for (int i = 0; i < n; ++i) {
        sum += values[i];
        squares += values[i] * values[i];
    }
    const float count = static_cast<float>(n);
    return (squares - sum * sum / count) / (count - 1);
}

float variance(const std::vector<Point>& points) {
    if (points.size() < 2) return 0;
    // Unsigned, so that sums beyond 32 bits wrap.
    uint32_t sx = 0, sy = 0, sxx = 0, syy = 0;
    for (const Point& p : points) {
        const uint32_t x = static_cast<uint32_t>(p.x), y = static_cast<uint32_t>(p.y);
        sx += x;
        sy += y;
        sxx += x * x;
        syy += y * y;
    }
    const auto wide = [](uint32_t sum) { return static_cast<int64_t>(static_cast<int32_t>(sum)); };
    const float n = static_cast<float>(points.size());
    const float squares = static_cast<float>(wide(sxx) + wide(syy)) / n;
    return squares - static_cast<float>(wide(sx) * wide(sx) + wide(sy) * wide(sy)) / n / n;
}

namespace {

int coordinates(const PointF& p, float* out) {
    out[0] = p.x;
    out[1] = p.y;
    return 2;
}

int coordinates(const Point3d& p, float* out) {
    out[0] = p.x;
    out[1] = p.y;
    out[2] = p.z;
    return 3;
}

// `weights` is null for equal weights of 1.
template <typename P>
void weightedCovariance(const std::vector<P>& points, const float* weights, const P& mean,
                        Matrix& matrix) {
    float middle[3];
    const int n = coordinates(mean, middle);
    matrix.makeZero(n);
    float sumOfWeights = 0;
    for (size_t i = 0; i < points.size(); ++i) {
        const float weight = weights ? weights[i] : 1.0f;
        float d[3];
        coordinates(points[i], d);
        for (int k = 0; k < n; ++k) d[k] -= middle[k];
        for (int y = 0; y < n; ++y)
            for (int x = y; x < n; ++x) matrix.at(y, x) += d[y] * d[x] * weight;
        sumOfWeights += weight;
    }
    if (points.empty()) return;
    for (int y = 0; y < n; ++y)
        for (int x = y; x < n; ++x) matrix.at(x, y) = matrix.at(y, x) /= sumOfWeights;
}

}  // namespace

void covariance(const std::vector<PointF>& points, const PointF& mean, Matrix& matrix) {
    weightedCovariance(points, nullptr, mean, matrix);
}

void covariance(const std::vector<Point3d>& points, const Point3d& mean, Matrix& matrix) {
    weightedCovariance(points, nullptr, mean, matrix);
}

void covariance(const std::vector<PointF>& points, const std::vector<float>& weights,
                const PointF& mean, Matrix& matrix) {
    KZ_ASSERT_EQ(points.size(), weights.size());
    weightedCovariance(points, weights.data(), mean, matrix);
}

void covariance(const std::vector<Point3d>& points, const std::vector<float>& weights,
                const Point3d& mean, Matrix& matrix) {
    KZ_ASSERT_EQ(points.size(), weights.size());
    weightedCovariance(points, weights.data(), mean, matrix);
}

}  // namespace KZ
