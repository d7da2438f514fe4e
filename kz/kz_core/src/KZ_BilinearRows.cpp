#include "KZ_BilinearRows.h"

#include <algorithm>

namespace KZ {

namespace {

void bilinearRow(const unsigned char* upper, const unsigned char* lower, int fractionY,
                 const std::vector<BilinearTap>& columns, int channels, unsigned char* out) {
    for (const BilinearTap& tap : columns) {
        const int first = tap.first * channels;
        const int second = tap.second * channels;
        const int fx = tap.fraction;
        for (int c = 0; c < channels; ++c) {
            const int top = (256 - fx) * upper[first + c] + fx * upper[second + c];
            const int bottom = (256 - fx) * lower[first + c] + fx * lower[second + c];
            *out++ =
                static_cast<unsigned char>(((256 - fractionY) * top + fractionY * bottom) >> 16);
        }
    }
}

}  // namespace

BilinearTap bilinearTap(int position256, int side) {
    if (position256 < 0) return BilinearTap{0, 0, 0};
    const int first = position256 / 256;
    if (first >= side - 1) return BilinearTap{side - 1, side - 1, 0};
    return BilinearTap{first, first + 1, position256 % 256};
}

void scaleBilinearBytes(const Image& source, Image& target, const Rect& rect,
                        const std::vector<BilinearTap>& columns,
                        const std::vector<BilinearTap>& rows) {
    for (int y = 0; y < rect.height(); ++y) {
        const BilinearTap& row = rows[static_cast<size_t>(y)];
        bilinearRow(source.data(0, row.first), source.data(0, row.second), row.fraction, columns,
                    source.depth(), target.data(rect.left, rect.top + y));
    }
}

}  // namespace KZ
