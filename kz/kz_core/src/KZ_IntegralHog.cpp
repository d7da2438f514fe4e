#include "KZ_IntegralHog.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "KZ_Assert.h"

namespace KZ {

namespace {

const int MAX_BINS = 12;

// Columns that are looked up at a time.
const int CHUNK = 64;

struct HogForm {
    int bins;
    GradientTable orientation;
    GradientTable magnitudes;
    HogRow addRow;

    int channels() const { return bins + 1; }
};

HogForm hogForm(ColorMode mode) {
    const HogRowVariant& row = hogRowVariants().back();
    switch (mode) {
        case COLOR_MODE_INTEGRAL_HOG_UNSIGNED6:
            return HogForm{6, getHogUnsigned6(), getMagnitudes(), row.unsigned6};
        case COLOR_MODE_INTEGRAL_HOG_SIGNED12:
            return HogForm{12, getHogSigned12(), getMagnitudes(), row.signed12};
        default:
            KZ_ASSERT(0, "incorrect color mode: " << static_cast<int>(mode));
            return HogForm{};
    }
}

// Cells of the gradient tables for `count` pixels of a row: horizontal difference, then vertical.
void tableCells(const unsigned char* upper, const unsigned char* middle, const unsigned char* lower,
                int* cells, int count) {
    for (int x = 0; x < count; ++x) {
        const int gx = (upper[x + 1] + 2 * middle[x + 1] + lower[x + 1]) -
                       (upper[x - 1] + 2 * middle[x - 1] + lower[x - 1]);
        const int gy = (lower[x - 1] + 2 * lower[x] + lower[x + 1]) -
                       (upper[x - 1] + 2 * upper[x] + upper[x + 1]);
        cells[x] = (gx / 4 + 256) * 512 + gy / 4 + 256;
    }
}

// One row of sums from `count` pixels at `src` on; `sums` ends as the row's totals.
void addRow(const HogForm& form, const unsigned char* src, int stripLength,
            const unsigned int* above, unsigned int* out, unsigned int* sums, int count) {
    int cells[CHUNK];
    unsigned char bins[CHUNK], magnitudes[CHUNK];
    const unsigned char* orientationCells = form.orientation[0];
    const unsigned char* magnitudeCells = form.magnitudes[0];
    for (int start = 0; start < count; start += CHUNK) {
        const int part = std::min(CHUNK, count - start);
        const unsigned char* row = src + start;
        tableCells(row - stripLength, row, row + stripLength, cells, part);
        for (int x = 0; x < part; ++x) {
            bins[x] = orientationCells[cells[x]];
            magnitudes[x] = magnitudeCells[cells[x]];
        }
        const int offset = start * form.channels();
        form.addRow(bins, magnitudes, above + offset, out + offset, sums, part);
    }
}

// The rows that pixels of the inside reach: 2 to h - 1. Columns 0 and 1 are left of all of them.
void addRows(const HogForm& form, const unsigned char* corner, int stripLength, Image& out) {
    const int width = out.width() - 1;
    const int height = out.height() - 1;
    const int channels = form.channels();
    const int first = 2 * channels;
    const int last = width * channels;
    const unsigned char* src = corner + stripLength + 1;
    for (int y = 1; y < height - 1; ++y, src += stripLength) {
        unsigned int sums[MAX_BINS + 1] = {};
        const unsigned int* above = out.row<unsigned int>(y);
        unsigned int* row = out.row<unsigned int>(y + 1);
        std::fill(row, row + first, 0u);
        addRow(form, src, stripLength, above + first, row + first, sums, width - 2);
        for (int k = 0; k < channels; ++k) row[last + k] = above[last + k] + sums[k];
    }
}

}  // namespace

void computeIntegralHog(const Image& mono, Image& out, const Rect& rect, ColorMode mode) {
    computeIntegralHog(mono.data(), mono.stripLength(), out, rect, mode);
}

void computeIntegralHog(const unsigned char* data, int stripLength, Image& out, const Rect& rect,
                        ColorMode mode) {
    const HogForm form = hogForm(mode);
    const int width = rect.right - rect.left;
    const int height = rect.bottom - rect.top;
    out.create(Size(width + 1, height + 1), mode);
    if (width < 3 || height < 3) {
        zero(out);
        return;
    }
    const size_t bytes = static_cast<size_t>(out.width()) * static_cast<size_t>(out.depth());
    std::memset(out.data(0, 0), 0, bytes);
    std::memset(out.data(0, 1), 0, bytes);
    addRows(form, data + static_cast<ptrdiff_t>(rect.top) * stripLength + rect.left, stripLength,
            out);
    std::memcpy(out.data(0, height), out.data(0, height - 1), bytes);
}

}  // namespace KZ
