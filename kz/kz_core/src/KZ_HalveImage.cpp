#include <cstdint>
#include <cstring>

#include "KZ_Check.h"
#include "KZ_ResizeImage.h"

#if defined(__ARM_NEON)
#include <arm_neon.h>
#endif

namespace KZ {

namespace {

// Pixels of a block, whose mean is rounded down three times as halving adds do.
const int BLOCK = 16;

void blocksScalar(const unsigned char* upper, const unsigned char* lower, unsigned char* dst,
                  int count) {
    for (int x = 0; x < count; ++x) {
        const unsigned int top = (upper[2 * x] + upper[2 * x + 1]) >> 1;
        const unsigned int bottom = (lower[2 * x] + lower[2 * x + 1]) >> 1;
        dst[x] = static_cast<unsigned char>((top + bottom) >> 1);
    }
}

#if defined(__ARM_NEON)
void blocksNeon(const unsigned char* upper, const unsigned char* lower, unsigned char* dst,
                int count) {
    for (int x = 0; x < count; x += BLOCK) {
        const uint8x16x2_t top = vld2q_u8(upper + 2 * x);
        const uint8x16x2_t bottom = vld2q_u8(lower + 2 * x);
        vst1q_u8(dst + x, vhaddq_u8(vhaddq_u8(top.val[0], top.val[1]),
                                    vhaddq_u8(bottom.val[0], bottom.val[1])));
    }
}
#endif

// `BLOCKS` halves a multiple of 16 pixels.
template <void (*BLOCKS)(const unsigned char*, const unsigned char*, unsigned char*, int)>
void monoTwiceRow(const unsigned char* upper, const unsigned char* lower, unsigned char* dst,
                  int width) {
    const int blocks = (width >> 5) * BLOCK;
    BLOCKS(upper, lower, dst, blocks);
    for (int x = blocks; x < (width >> 1); ++x)
        dst[x] = static_cast<unsigned char>(
            (upper[2 * x] + upper[2 * x + 1] + lower[2 * x] + lower[2 * x + 1]) >> 2);
}

uint16_t cell16(const unsigned char* row, int x) {
    uint16_t value;
    std::memcpy(&value, row + 2 * x, sizeof(value));
    return value;
}

// Valid cells of up to two in a row.
struct ValidCells {
    unsigned int count = 0;
    unsigned int sum = 0;

    void add(uint16_t cell) {
        const bool valid = static_cast<uint16_t>(cell - 1) < 4999;
        count += valid;
        sum += valid ? cell : 0u;
    }
};

void depthTwiceRow(const unsigned char* upper, const unsigned char* lower, unsigned char* dst,
                   int width) {
    // A single column has no right neighbour.
    const int columns = width < 2 ? 1 : 2;
    for (int x = 0; x < (width < 2 ? 1 : width / 2); ++x) {
        ValidCells cells;
        for (int i = 0; i < columns; ++i) {
            cells.add(cell16(upper, 2 * x + i));
            cells.add(cell16(lower, 2 * x + i));
        }
        const uint16_t mean = static_cast<uint16_t>(cells.count ? cells.sum / cells.count : 0);
        std::memcpy(dst + 2 * x, &mean, sizeof(mean));
    }
}

void interleavedTwiceRow(const unsigned char* upper, const unsigned char* lower, unsigned char* dst,
                         int width, int channels) {
    for (int x = 0; x < width / 2; ++x, upper += 2 * channels, lower += 2 * channels)
        for (int c = 0; c < channels; ++c)
            *dst++ = static_cast<unsigned char>(
                (upper[c] + upper[c + channels] + lower[c] + lower[c + channels]) >> 2);
}

// Calls `halveRow(upper, lower, dst)` for each row of the half.
template <typename HalveRow>
void halveRows(int height, const unsigned char* src, unsigned char* dst, int srcStride,
               int dstStride, HalveRow halveRow) {
    for (int y = 0; y < height / 2;
         ++y, src += 2 * static_cast<int64_t>(srcStride), dst += dstStride)
        halveRow(src, src + srcStride, dst);
}

int downToEven(int value) {
    return value / 2 * 2;
}

// A pointer to pixels that are only read through the image.
unsigned char* readOnly(const Image& image, const Rect& rect) {
    return const_cast<unsigned char*>(image.data(rect.left, rect.top));
}

}  // namespace

const std::vector<MonoTwiceVariant>& zoomMonoTwiceVariants() {
    static const std::vector<MonoTwiceVariant> variants = {
        {"scalar", monoTwiceRow<blocksScalar>},
#if defined(__ARM_NEON)
        {"neon", monoTwiceRow<blocksNeon>},
#endif
    };
    return variants;
}

void zoomMonoTwice(int width, int height, const unsigned char* src, unsigned char* dst,
                   int srcStride, int dstStride) {
    const auto run = zoomMonoTwiceVariants().back().run;
    halveRows(height, src, dst, srcStride, dstStride,
              [&](const unsigned char* upper, const unsigned char* lower, unsigned char* to) {
                  run(upper, lower, to, width);
              });
}

void zoomDepthTwice(int width, int height, const unsigned char* src, unsigned char* dst,
                    int srcStride, int dstStride) {
    if (width < 1) return;
    halveRows(height, src, dst, srcStride, dstStride,
              [&](const unsigned char* upper, const unsigned char* lower, unsigned char* to) {
                  depthTwiceRow(upper, lower, to, width);
              });
}

void zoomImageTwice(int width, int height, const unsigned char* src, unsigned char* dst,
                    int srcStride, int dstStride, int channels) {
    halveRows(height, src, dst, srcStride, dstStride,
              [&](const unsigned char* upper, const unsigned char* lower, unsigned char* to) {
                  interleavedTwiceRow(upper, lower, to, width, channels);
              });
}

void zoomImageTwice(const Image& source, Image& target, Rect rect) {
    target.create(Size(source.width() / 2, source.height() / 2), source.colorMode());
    if (rect.area() == 0) rect = target.rect();
    KZ_CHECK_CONTAINS(target.rect(), rect);
    if (rect.area() == 0) return;
    const int width = rect.width() * 2;
    const int height = rect.height() * 2;
    const unsigned char* from = source.data(rect.left * 2, rect.top * 2);
    unsigned char* to = target.data(rect.left, rect.top);
    switch (source.colorMode()) {
        case COLOR_MODE_MONO:
            return zoomMonoTwice(width, height, from, to, source.stripLength(),
                                 target.stripLength());
        case COLOR_MODE_DEPTH:
            return zoomDepthTwice(width, height, from, to, source.stripLength(),
                                  target.stripLength());
        default:
            return zoomImageTwice(width, height, from, to, source.stripLength(),
                                  target.stripLength(), source.depth());
    }
}

void scale_half(int height, int width, unsigned char* src, unsigned char* dst, int srcStride,
                int dstStride) {
    Image source, target;
    source.createRef(src, Size(width, height), COLOR_MODE_MONO,
                     static_cast<unsigned int>(srcStride));
    target.createRef(dst, Size(width / 2, height / 2), COLOR_MODE_MONO,
                     static_cast<unsigned int>(dstStride));
    zoomImageTwice(source, target);
}

void scaleHalfImage(const Image& source, Image& target, Rect rect) {
    if (rect.area() == 0) rect = source.rect();
    KZ_CHECK_CONTAINS(source.rect(), rect);
    rect = Rect(downToEven(rect.left), downToEven(rect.top), downToEven(rect.right),
                downToEven(rect.bottom));
    target.create(Size(source.width() / 2, source.height() / 2), source.colorMode());
    if (target.size().area() == 0) return;

    unsigned char* to = target.data(rect.left / 2, rect.top / 2);
    switch (source.colorMode()) {
        case COLOR_MODE_DEPTH:
            return zoomDepthTwice(rect.width(), rect.height(), source.data(rect.left, rect.top), to,
                                  source.stripLength(), target.stripLength());
        case COLOR_MODE_MONO:
            return scale_half(rect.height(), rect.width(), readOnly(source, rect), to,
                              source.stripLength(), target.stripLength());
        default:
            KZ_ASSERT(0, "have " << colorModeName(source.colorMode())
                                 << ", but need COLOR_MODE_MONO or COLOR_MODE_DEPTH");
    }
}

}  // namespace KZ
