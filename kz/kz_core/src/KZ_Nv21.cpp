#include "KZ_Nv21.h"

#include <algorithm>
#include <cstring>

#include "KZ_Check.h"

namespace KZ {

namespace {

using Row = unsigned char* __restrict;
using ConstRow = const unsigned char* __restrict;

void writePixel(unsigned char* pixel, unsigned char y, const unsigned char* vu) {
    pixel[0] = y;
    pixel[1] = vu[1];
    pixel[2] = vu[0];
}

// One row of `width` pixels; a (V, U) pair serves two of them.
void yuvRow(ConstRow luma, ConstRow chroma, Row target, int width) {
    for (int x = 0; x < width; x += 2) {
        writePixel(target + 3 * x, luma[x], chroma + x);
        writePixel(target + 3 * x + 3, luma[x + 1], chroma + x);
    }
}

void yuvRowFlip(ConstRow luma, ConstRow chroma, Row target, int width) {
    for (int x = 0; x < width; x += 2) {
        unsigned char* pixel = target + 3 * (width - 2 - x);
        writePixel(pixel + 3, luma[x], chroma + x);
        writePixel(pixel, luma[x + 1], chroma + x);
    }
}

// One row of `width / 2` pixels from the even columns of a luma row of `width`.
void yuvRowZoom2(ConstRow luma, ConstRow chroma, Row target, int width) {
    for (int x = 0; x < width / 2; ++x) writePixel(target + 3 * x, luma[2 * x], chroma + 2 * x);
}

void yuvRowZoom2Flip(ConstRow luma, ConstRow chroma, Row target, int width) {
    for (int x = 0; x < width / 2; ++x)
        writePixel(target + 3 * (width / 2 - 1 - x), luma[2 * x], chroma + 2 * x);
}

using YuvRowKernel = void (*)(ConstRow, ConstRow, Row, int);

// Runs `kernel` over every `lumaStep`-th luma row with its chroma row.
void unpackYuv(const unsigned char* data, const Size& size, Image& target, int lumaStep,
               YuvRowKernel kernel) {
    const size_t width = static_cast<size_t>(size.width);
    const unsigned char* chroma = data + width * static_cast<size_t>(size.height);
    for (int y = 0; y < target.height(); ++y) {
        const int lumaRow = y * lumaStep;
        kernel(data + width * static_cast<size_t>(lumaRow),
               chroma + width * static_cast<size_t>(lumaRow / 2), target.data(0, y), size.width);
    }
}

}  // namespace

void nv21ToMono(const unsigned char* data, const Size& size, Image& target) {
    KZ_ASSERT(size.height % 2 == 0, "height must be even: " << size.height);
    KZ_ASSERT(size.width % 2 == 0, "width must be even: " << size.width);
    target.create(size, COLOR_MODE_MONO);
    const size_t width = static_cast<size_t>(size.width);
    if (width == 0) return;
    for (int y = 0; y < size.height; ++y, data += width)
        std::memcpy(target.data(0, y), data, width);
}

void nv21ToMonoFlip(const unsigned char* data, const Size& size, Image& target) {
    KZ_ASSERT(size.height % 2 == 0, "height must be even: " << size.height);
    KZ_ASSERT(size.width % 2 == 0, "width must be even: " << size.width);
    target.create(size, COLOR_MODE_MONO);
    for (int y = 0; y < size.height; ++y, data += size.width)
        std::reverse_copy(data, data + size.width, target.data(0, y));
}

void nv21ToYuv(const unsigned char* data, const Size& size, Image& target) {
    const int height = size.height, width = size.width;
    KZ_ASSERT(height % 2 == 0, "height must be even: " << height);
    KZ_ASSERT(width % 2 == 0, "width must be even: " << width);
    target.create(size, COLOR_MODE_YUV);
    unpackYuv(data, size, target, 1, yuvRow);
}

void nv21ToYuvFlip(const unsigned char* data, const Size& size, Image& target) {
    const int height = size.height, width = size.width;
    KZ_ASSERT(height % 2 == 0, "height must be even: " << height);
    KZ_ASSERT(width % 2 == 0, "width must be even: " << width);
    target.create(size, COLOR_MODE_YUV);
    unpackYuv(data, size, target, 1, yuvRowFlip);
}

void nv21ToYuvZoom2(const unsigned char* data, const Size& size, Image& target) {
    KZ_ASSERT(size.height % 2 == 0, "height must be even: " << size.height);
    KZ_ASSERT(size.width % 2 == 0, "width must be even: " << size.width);
    target.create(Size(size.width / 2, size.height / 2), COLOR_MODE_YUV);
    unpackYuv(data, size, target, 2, yuvRowZoom2);
}

void nv21ToYuvZoom2Flip(const unsigned char* data, const Size& size, Image& target) {
    KZ_ASSERT(size.height % 2 == 0, "height must be even: " << size.height);
    KZ_ASSERT(size.width % 2 == 0, "width must be even: " << size.width);
    target.create(Size(size.width / 2, size.height / 2), COLOR_MODE_YUV);
    unpackYuv(data, size, target, 2, yuvRowZoom2Flip);
}

void yuvToNv21(const Image& yuv, SharedArray<unsigned char>& out) {
    KZ_CHECK_COLOR_MODE(yuv, COLOR_MODE_YUV);
    const int width = yuv.width() / 2 * 2, height = yuv.height() / 2 * 2;
    const size_t lumaBytes = static_cast<size_t>(width) * static_cast<size_t>(height);
    out = SharedArray<unsigned char>(new unsigned char[lumaBytes * 3 / 2]);
    unsigned char* luma = out.get();
    unsigned char* chroma = luma + lumaBytes;
    for (int y = 0; y < height; ++y, luma += width) {
        const unsigned char* row = yuv.data(0, y);
        for (int x = 0; x < width; ++x) luma[x] = row[3 * x];
        if (y % 2 != 0) continue;
        for (int x = 0; x < width; x += 2) {
            chroma[x] = row[3 * x + 2];
            chroma[x + 1] = row[3 * x + 1];
        }
        chroma += width;
    }
}

void yuvToYuy2(const Image& yuv, SharedArray<unsigned char>& out) {
    KZ_CHECK_COLOR_MODE(yuv, COLOR_MODE_YUV);
    const size_t rowBytes = static_cast<size_t>(yuv.width()) * 2;
    out =
        SharedArray<unsigned char>(new unsigned char[rowBytes * static_cast<size_t>(yuv.height())]);
    unsigned char* packed = out.get();
    for (int y = 0; y < yuv.height(); ++y) {
        const unsigned char* row = yuv.data(0, y);
        for (int x = 0; x + 1 < yuv.width(); x += 2, row += 6, packed += 4) {
            packed[0] = row[0];
            packed[1] = static_cast<unsigned char>((row[1] + row[4]) >> 1);
            packed[2] = row[3];
            packed[3] = static_cast<unsigned char>((row[2] + row[5]) >> 1);
        }
        if (yuv.width() % 2 == 0) continue;
        *packed++ = row[0];
        *packed++ = row[1];
    }
}

}  // namespace KZ
