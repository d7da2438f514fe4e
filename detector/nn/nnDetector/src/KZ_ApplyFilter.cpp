#include "KZ_ApplyFilter.h"

#include "KZ_BaseSize.h"

namespace KZ {

namespace {

void rowScalar(const float* src, int pitch, const FilterPlane& filter, float bias, int stride,
               float* dst, int count) {
    for (int x = 0; x < count; ++x) {
        float sum = bias;
        for (int fy = 0; fy < filter.height; ++fy) {
            const float* cells = src + fy * pitch + x * stride;
            const float* weights = filter.values + fy * filter.width;
            for (int fx = 0; fx < filter.width; ++fx) sum += weights[fx] * cells[fx];
        }
        dst[x] = sum;
    }
}

// The hot case of both networks. The outputs of a row do not depend on each other, so compilers
// work on several at once, and the sum of each keeps its order.
template <int STRIDE>
void row3x3(const float* __restrict src, int pitch, const float* __restrict f, float bias,
            float* __restrict dst, int count) {
    const float f0 = f[0], f1 = f[1], f2 = f[2], f3 = f[3], f4 = f[4], f5 = f[5], f6 = f[6],
                f7 = f[7], f8 = f[8];
    const float* __restrict above = src;
    const float* __restrict middle = src + pitch;
    const float* __restrict below = src + 2 * pitch;
    for (int x = 0; x < count; ++x) {
        const int i = STRIDE * x;
        float sum = bias;
        sum += f0 * above[i];
        sum += f1 * above[i + 1];
        sum += f2 * above[i + 2];
        sum += f3 * middle[i];
        sum += f4 * middle[i + 1];
        sum += f5 * middle[i + 2];
        sum += f6 * below[i];
        sum += f7 * below[i + 1];
        sum += f8 * below[i + 2];
        dst[x] = sum;
    }
}

void rowStride1(const float* __restrict src, int pitch, const FilterPlane& filter, float bias,
                float* __restrict dst, int count) {
    for (int x = 0; x < count; ++x) dst[x] = bias;
    for (int fy = 0; fy < filter.height; ++fy) {
        for (int fx = 0; fx < filter.width; ++fx) {
            const float weight = filter.values[fy * filter.width + fx];
            const float* __restrict cells = src + fy * pitch + fx;
            for (int x = 0; x < count; ++x) dst[x] += weight * cells[x];
        }
    }
}

void rowByColumns(const float* src, int pitch, const FilterPlane& filter, float bias, int stride,
                  float* dst, int count) {
    const bool is3x3 = filter.width == 3 && filter.height == 3;
    if (is3x3 && stride == 1) {
        row3x3<1>(src, pitch, filter.values, bias, dst, count);
    } else if (is3x3 && stride == 2) {
        row3x3<2>(src, pitch, filter.values, bias, dst, count);
    } else if (stride != 1) {
        rowScalar(src, pitch, filter, bias, stride, dst, count);
    } else {
        rowStride1(src, pitch, filter, bias, dst, count);
    }
}

// With stride 1 a whole plane is one long row: the outputs between two rows, whose cells lie on
// both, are computed too and never used. Long rows leave no tails.
void planeSums(const float* src, int pitch, const Size& size, const FilterPlane& filter, float bias,
               int stride, float* sums, int sumsPitch) {
    if (stride == 1 && sumsPitch == pitch) {
        rowByColumns(src, pitch, filter, bias, 1, sums, (size.height - 1) * pitch + size.width);
        return;
    }
    for (int y = 0; y < size.height; ++y) {
        rowByColumns(src + y * stride * pitch, pitch, filter, bias, stride, sums + y * sumsPitch,
                     size.width);
    }
}

}  // namespace

const std::vector<FilterRowVariant>& filterRowVariants() {
    static const std::vector<FilterRowVariant> variants = {{"scalar", rowScalar},
                                                           {"columns", rowByColumns}};
    return variants;
}

template <>
void applyFilter<float>(const float* src, float* dst, int srcWidth, int srcHeight,
                        const float* filter, int filterWidth, int filterHeight, float bias,
                        int stride) {
    const FilterPlane plane = {filter, filterWidth, filterHeight};
    const Size size((srcWidth - filterWidth) / stride + 1, (srcHeight - filterHeight) / stride + 1);
    planeSums(src, srcWidth, size, plane, bias, stride, dst, size.width);
}

void applyFilterAdd(const float* src, float* dst, int srcWidth, int srcHeight, const float* filter,
                    int filterWidth, int filterHeight, float* temporary, float bias, int stride) {
    const FilterPlane plane = {filter, filterWidth, filterHeight};
    const Size size((srcWidth - filterWidth) / stride + 1, (srcHeight - filterHeight) / stride + 1);
    const int pitch = stride == 1 ? srcWidth : size.width;
    planeSums(src, srcWidth, size, plane, bias, stride, temporary, pitch);
    for (int y = 0; y < size.height; ++y) {
        const float* __restrict sums = temporary + y * pitch;
        float* __restrict target = dst + y * size.width;
        for (int x = 0; x < size.width; ++x) target[x] += sums[x];
    }
}

}  // namespace KZ
