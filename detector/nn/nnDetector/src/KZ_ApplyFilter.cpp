#include "KZ_ApplyFilter.h"

#include "KZ_Check.h"

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
void row3x3(const float* __restrict src, int pitch, const float* __restrict f, float bias,
            float* __restrict dst, int count) {
    const float f0 = f[0], f1 = f[1], f2 = f[2], f3 = f[3], f4 = f[4], f5 = f[5], f6 = f[6],
                f7 = f[7], f8 = f[8];
    const float* __restrict above = src;
    const float* __restrict middle = src + pitch;
    const float* __restrict below = src + 2 * pitch;
    for (int x = 0; x < count; ++x) {
        float sum = bias;
        sum += f0 * above[x];
        sum += f1 * above[x + 1];
        sum += f2 * above[x + 2];
        sum += f3 * middle[x];
        sum += f4 * middle[x + 1];
        sum += f5 * middle[x + 2];
        sum += f6 * below[x];
        sum += f7 * below[x + 1];
        sum += f8 * below[x + 2];
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
    if (stride != 1) {
        rowScalar(src, pitch, filter, bias, stride, dst, count);
    } else if (filter.width == 3 && filter.height == 3) {
        row3x3(src, pitch, filter.values, bias, dst, count);
    } else {
        rowStride1(src, pitch, filter, bias, dst, count);
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
    const int width = (srcWidth - filterWidth) / stride + 1;
    const int height = (srcHeight - filterHeight) / stride + 1;
    for (int y = 0; y < height; ++y) {
        rowByColumns(src + y * stride * srcWidth, srcWidth, plane, bias, stride, dst + y * width,
                     width);
    }
}

void applyFilterAdd(const Image& src, Image& dst, const Image& filter, Image& temporary, float bias,
                    int stride) {
    KZ_CHECK_COLOR_MODE(src, COLOR_MODE_FLOAT);
    temporary.create(dst.size(), COLOR_MODE_FLOAT);
    const FilterPlane plane = {filter.row<float>(0), filter.width(), filter.height()};
    const int pitch = src.stripLength() / static_cast<int>(sizeof(float));
    for (int y = 0; y < dst.height(); ++y) {
        float* sums = temporary.row<float>(y);
        rowByColumns(src.row<float>(y * stride), pitch, plane, bias, stride, sums, dst.width());
        float* target = dst.row<float>(y);
        for (int x = 0; x < dst.width(); ++x) target[x] += sums[x];
    }
}

}  // namespace KZ
