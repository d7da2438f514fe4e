#pragma once

#include <vector>

namespace KZ {

/// Cross-correlation of one plane with one filter plane, all tight, row-major floats. The target
/// has (srcWidth - filterWidth) / stride + 1 columns and the like number of rows. Each output is
/// `bias`, plus the products row by row and column by column of the filter, one after the other.
template <typename T>
void applyFilter(const T* src, T* dst, int srcWidth, int srcHeight, const T* filter,
                 int filterWidth, int filterHeight, T bias, int stride);

/// The same sum from `bias` on, added to what `dst` holds. `temporary` has room for the sums: as
/// many floats as the source.
void applyFilterAdd(const float* src, float* dst, int srcWidth, int srcHeight, const float* filter,
                    int filterWidth, int filterHeight, float* temporary, float bias, int stride);

/// What a row kernel needs of a filter.
struct FilterPlane {
    const float* values;  ///< row-major
    int width;
    int height;
};

/// Writes `count` outputs of one row: output x is `bias` plus the products with the source cells
/// from column x * stride on, in the filter's order. `pitch`: floats between the source's rows.
struct FilterRowVariant {
    const char* name;
    void (*run)(const float* src, int pitch, const FilterPlane& filter, float bias, int stride,
                float* dst, int count);
};

/// First the scalar definition, last the one in use. All give the same bits.
const std::vector<FilterRowVariant>& filterRowVariants();

}  // namespace KZ
