#include "KZ_RmctTransform.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "KZ_Check.h"

namespace KZ {

namespace {

void clearBorder(Image& rmct) {
    const size_t width = static_cast<size_t>(rmct.width());
    const int last = rmct.height() - 1;
    std::memset(rmct.data(0, 0), 0, width);
    std::memset(rmct.data(0, last), 0, width);
    for (int y = 1; y < last; ++y) {
        *rmct.data(0, y) = 0;
        *rmct.data(rmct.width() - 1, y) = 0;
    }
}

void computeInterior(const Image& mono, Image& rmct) {
    const auto run = rmctRowVariants().back().run;
    for (int y = 1; y < mono.height() - 1; ++y)
        run(mono.data(1, y - 1), mono.data(1, y), mono.data(1, y + 1), rmct.data(1, y),
            mono.width() - 2);
}

// Rows before columns, so that a corner takes the code of its diagonal neighbour.
void repeatBorder(Image& rmct, const Rect& rect) {
    const int width = rmct.width();
    const int height = rmct.height();
    const size_t bytes = static_cast<size_t>(rect.width());
    if (rect.top == 0) std::memcpy(rmct.data(rect.left, 0), rmct.data(rect.left, 1), bytes);
    if (rect.bottom == height)
        std::memcpy(rmct.data(rect.left, height - 1), rmct.data(rect.left, height - 2), bytes);
    for (int y = rect.top; y < rect.bottom; ++y) {
        if (rect.left == 0) *rmct.data(0, y) = *rmct.data(1, y);
        if (rect.right == width) *rmct.data(width - 1, y) = *rmct.data(width - 2, y);
    }
}

std::array<unsigned char, 256> countBits() {
    std::array<unsigned char, 256> numbits{};
    for (size_t i = 1; i < numbits.size(); ++i)
        numbits[i] = static_cast<unsigned char>(numbits[i / 2] + i % 2);
    return numbits;
}

}  // namespace

void computeRmct(const Image& mono, Image& rmct) {
    computeRmct(mono, rmct, mono.rect());
}

void computeRmct(const Image& mono, Image& rmct, Rect rect) {
    KZ_CHECK_COLOR_MODE(mono, COLOR_MODE_MONO);
    rmct.create(mono.size(), COLOR_MODE_RMCT);
    if (mono.width() < 3 || mono.height() < 3) {
        zero(rmct);
        return;
    }
    clearBorder(rmct);
    computeInterior(mono, rmct);
    rect = rect.clipped(mono.rect());
    if (rect.width() >= 3 && rect.height() >= 3) repeatBorder(rmct, rect);
}

unsigned int computeRmctPixel(const unsigned char* pixel, const int* offsets) {
    unsigned int sum = 20;
    for (int i = 0; i < 8; ++i) sum += pixel[offsets[i]];
    const unsigned int mean = sum >> 3;
    unsigned int code = 0;
    for (int i = 0; i < 8; ++i) code = code << 1 | (mean < pixel[offsets[i]] ? 1u : 0u);
    return code;
}

void bitDiff(const Image& a, const Image& b, Image& out, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(a, COLOR_MODE_RMCT);
    KZ_CHECK_COLOR_MODE(b, COLOR_MODE_RMCT);
    KZ_CHECK_SIZE(b, a.size());
    const Rect area = rect.area() == 0 ? a.rect() : rect;
    KZ_CHECK_CONTAINS(a.rect(), area);
    out.create(a.size(), COLOR_MODE_MONO);
    zero(out);
    const unsigned char* numbits = getNumbits256();
    for (int y = area.top; y < area.bottom; ++y) {
        const unsigned char* rowA = a.data(0, y);
        const unsigned char* rowB = b.data(0, y);
        unsigned char* rowOut = out.data(0, y);
        for (int x = area.left; x < area.right; ++x) rowOut[x] = numbits[rowA[x] ^ rowB[x]];
    }
}

unsigned int bitDiffSum(const Image& source1, const Image& source2) {
    KZ_CHECK_COLOR_MODE(source1, (source2).colorMode());
    KZ_CHECK_SIZE(source1, (source2).size());
    return bitDiffSum(source1, source2, 0, 0, 0, 0, source1.width(), source1.height());
}

unsigned int bitDiffSum(const Image& source1, const Image& source2, int x1, int y1, int x2, int y2,
                        int width, int height) {
    KZ_CHECK_CONTAINS(source1.rect(), Rect(x1, y1, x1 + width, y1 + height));
    KZ_CHECK_CONTAINS(source2.rect(), Rect(x2, y2, x2 + width, y2 + height));
    const unsigned char* numbits = getNumbits256();
    unsigned int sum = 0;
    for (int y = 0; y < height; ++y) {
        const unsigned char* row1 = source1.data(x1, y1 + y);
        const unsigned char* row2 = source2.data(x2, y2 + y);
        for (int x = 0; x < width; ++x) sum += numbits[row1[x] ^ row2[x]];
    }
    return sum;
}

const unsigned char* getNumbits256() {
    static const std::array<unsigned char, 256> numbits = countBits();
    return numbits.data();
}

}  // namespace KZ
