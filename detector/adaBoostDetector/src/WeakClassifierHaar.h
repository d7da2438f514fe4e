#pragma once

#include <cstdint>
#include <istream>
#include <ostream>

#include "KZ_BaseRect.h"
#include "KZ_BaseSize.h"
#include "KZ_SharedPtr.h"

/// Contrast of a rectangle against the rest of a larger one, or plain brightness when the inner
/// rectangle has no width: half the difference of the means, plus 127, is the index of the vote.
class WeakClassifierHaar {
public:
    static const int TABLE_SIZE = 256;

    const signed char* data = nullptr;  ///< 256 votes
    KZ::Rect allRect;                   ///< in pixels of the patch
    KZ::Rect posRect;                   ///< inside `allRect`
    int64_t allArea = 0;                ///< factors of the sums over the two rectangles, and what
    int64_t posArea = 0;                ///< divides their difference
    int64_t denominator = 0;
    uint16_t posWidth = 0;
    uint16_t allWidth = 0;
    uint16_t stripLength = 0;  ///< of the integral image, in elements
    int allStart = 0;          ///< elements from the window's corner
    int allHeightLen = 0;      ///< elements from a rectangle's top row to below its last
    int posStart = 0;
    int posHeightLen = 0;
    KZ::SharedArray<signed char> storage;

    WeakClassifierHaar() = default;

    /// The third argument, a byte of the generated tables, has no use.
    void set(const KZ::Rect& newAllRect, const KZ::Rect& newPosRect, int);
    /// Derives the numbers of the score from the rectangles.
    void set();
    /// Constant votes of the caller's, which must outlive this classifier and its copies.
    void setData(const signed char* votes);
    const signed char* getData() const { return data; }

    /// Where in the table the window's vote is: 0 to 254 for 8-bit pixels. `integral` is the
    /// window's corner in an integral image of the strip at hand. Always 0 when `allRect` has more
    /// than 8 million pixels.
    int index(const unsigned int* integral) const;
    int vote(const unsigned int* integral) const { return data[index(integral)]; }

    /// Makes the offsets for rows of `elements` sums.
    void setStrip(int elements);

    /// `master` for a layer that is `zoom` times smaller than the integral image; shares its votes.
    void resize(const WeakClassifierHaar& master, float zoom);
    /// The classifier of a patch of `size` that was turned or mirrored.
    void rotate(const KZ::Size& size);
    void flip(const KZ::Size& size);

    /// Equal rectangles and votes; one without votes is equal to nothing.
    bool operator==(const WeakClassifierHaar& other) const;

    /// One line of a `.ring` file.
    void basicSave(std::ostream& stream) const;
    void basicLoad(std::istream& stream);
    /// One row of generated source.
    void writeWeakClassifier(std::ostream& stream) const;

private:
    void setOnStoredStrip();
};

inline int WeakClassifierHaar::index(const unsigned int* integral) const {
    if (denominator == 0) return 0;
    const unsigned int* pos = integral + posStart;
    const unsigned int* all = integral + allStart;
    // Sums wrap at 32 bits; the difference of four corners is right since it fits itself.
    const int32_t posSum = static_cast<int32_t>(pos[0] + pos[posHeightLen + posWidth] -
                                                pos[posHeightLen] - pos[posWidth]);
    const int32_t allSum = static_cast<int32_t>(all[0] + all[allHeightLen + allWidth] -
                                                all[allHeightLen] - all[allWidth]);
    const int64_t contrast = allArea * posSum - posArea * allSum;
    // Most fit 32 bits, where a division costs a fraction. The divisor is even, thus never -1.
    if (contrast == static_cast<int32_t>(contrast) &&
        denominator == static_cast<int32_t>(denominator))
        return static_cast<int32_t>(contrast) / static_cast<int32_t>(denominator) + 127;
    return static_cast<int>(contrast / denominator) + 127;
}
