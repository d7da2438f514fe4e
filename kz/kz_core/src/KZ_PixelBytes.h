#pragma once

#include <cstring>
#include <type_traits>

#include "KZ_Assert.h"

namespace KZ {

/// Calls `move(std::integral_constant<int, N>())` with N the bytes a pixel, so that loops over
/// pixels of any mode are compiled for each size.
template <typename Move>
void forPixelBytes(int depth, Move move) {
    switch (depth) {
        case 1:
            return move(std::integral_constant<int, 1>());
        case 2:
            return move(std::integral_constant<int, 2>());
        case 3:
            return move(std::integral_constant<int, 3>());
        case 4:
            return move(std::integral_constant<int, 4>());
        case 8:
            return move(std::integral_constant<int, 8>());
        case 28:
            return move(std::integral_constant<int, 28>());
        case 52:
            return move(std::integral_constant<int, 52>());
        default:
            KZ_ASSERT(false, "no pixels of " << depth << " bytes");
    }
}

/// One pixel of `BYTES` bytes, without demands on alignment.
template <int BYTES>
void copyPixel(const unsigned char* from, unsigned char* to) {
    std::memcpy(to, from, BYTES);
}

}  // namespace KZ
