#pragma once

#include <algorithm>
#include <vector>

#include "KZ_Truncate.h"

namespace KZ {

/// Source pixels of one target column or row, never empty.
struct Span {
    int from;
    int to;
    int length() const { return to - from; }
};

/// The pixels from `from` to `to`, cut off at a side of `side` pixels but for one pixel at least.
inline Span spanInside(int from, int to, int side) {
    const int begin = std::clamp(from, 0, std::max(side - 1, 0));
    return Span{begin, std::clamp(to, begin + 1, std::max(side, begin + 1))};
}

/// The footprints of target columns `from` to `to` in a picture larger by `zoom`.
inline std::vector<Span> footprints(int from, int to, float zoom, int side) {
    std::vector<Span> spans;
    for (int i = from; i < to; ++i)
        spans.push_back(spanInside(truncatedToInt(static_cast<float>(i) * zoom),
                                   truncatedToInt(static_cast<float>(i + 1) * zoom), side));
    return spans;
}

}  // namespace KZ
