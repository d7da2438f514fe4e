#pragma once

#include <cstdint>
#include <cstring>

#include "KZ_Image.h"

namespace KZ {

/// The kind of number of which an image's pixels consist.
enum class CellType { UINT8, UINT16, UINT32, FLOAT32 };

inline CellType cellType(ColorMode mode) {
    switch (mode) {
        case COLOR_MODE_MONO16:
        case COLOR_MODE_DEPTH:
        case COLOR_MODE_USHORT2:
            return CellType::UINT16;
        case COLOR_MODE_INTEGRAL:
        case COLOR_MODE_INTEGRAL_HOG_UNSIGNED6:
        case COLOR_MODE_INTEGRAL_HOG_SIGNED12:
            return CellType::UINT32;
        case COLOR_MODE_FLOAT:
        case COLOR_MODE_FLOAT2:
            return CellType::FLOAT32;
        default:
            return CellType::UINT8;
    }
}

inline int cellBytes(CellType type) {
    return type == CellType::UINT8 ? 1 : type == CellType::UINT16 ? 2 : 4;
}

/// Numbers a pixel.
inline int cellsPerPixel(const Image& image) {
    return image.depth() / cellBytes(cellType(image.colorMode()));
}

/// Cell `i` at `cells`, which need not be aligned.
template <typename T>
T cellAt(const unsigned char* cells, int i) {
    T value;
    std::memcpy(&value, cells + static_cast<size_t>(i) * sizeof(T), sizeof(T));
    return value;
}

/// The same as a number that holds every cell type exactly.
inline double cellNumber(const unsigned char* cells, CellType type, int i) {
    switch (type) {
        case CellType::UINT8:
            return cells[i];
        case CellType::UINT16:
            return cellAt<uint16_t>(cells, i);
        case CellType::UINT32:
            return cellAt<uint32_t>(cells, i);
        default:
            return static_cast<double>(cellAt<float>(cells, i));
    }
}

}  // namespace KZ
