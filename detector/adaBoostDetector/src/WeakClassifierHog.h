#pragma once

#include <cstdint>
#include <istream>
#include <ostream>

#include "KZ_BaseRect.h"
#include "KZ_BaseSize.h"
#include "KZ_SharedPtr.h"

/// How much of a block's gradient energy lies in one orientation sector of one cell, in 256ths: the
/// index of the vote.
class WeakClassifierHog {
public:
    static const int TABLE_SIZE = 256;
    static const int NUM_SECTORS = 6;

    KZ::Rect cell;                      ///< numerator, inside `block`
    KZ::Rect block;                     ///< denominator
    signed char sector = 0;             ///< 0 to 5
    const signed char* data = nullptr;  ///< 256 votes
    KZ::SharedArray<signed char> storage;
    // Elements of an integral HOG with NUM_SECTORS + 1 sums a pixel, the last one their total.
    int blockStart = 0;
    int blockHeightLen = 0;
    int cellStart = 0;
    int cellHeightLen = 0;
    int blockTotalOffset = 0;
    int cellSectorOffset = 0;

    WeakClassifierHog() = default;

    void setCell(const KZ::Rect& rect) { cell = rect; }
    void setBlock(const KZ::Rect& rect) { block = rect; }
    void setSector(signed char newSector) { sector = newSector; }
    /// Constant votes of the caller's, which must outlive this classifier and its copies.
    void setData(const signed char* votes);
    const signed char* getData() const { return data; }

    /// Where in the table the window's vote is: 0 to 255. `integralHog` is the first sum of an
    /// integral HOG of the strip at hand, in whose coordinates the rectangles are.
    int index(const unsigned int* integralHog) const;
    int vote(const unsigned int* integralHog) const { return data[index(integralHog)]; }

    /// Makes the offsets for rows of `elements` sums.
    void setStrip(int elements);

    /// The classifier of a patch of `size` that was turned or mirrored.
    void rotate(const KZ::Size& size);
    void flip(const KZ::Size& size);

    /// Equal rectangles, sector and votes; one without votes is equal to nothing.
    bool operator==(const WeakClassifierHog& other) const;

    /// One line of a `.ring` file.
    void basicSave(std::ostream& stream) const;
    void basicLoad(std::istream& stream);
    /// One row of generated source.
    void writeWeakClassifier(std::ostream& stream) const;

private:
    int strip() const;
};

inline int WeakClassifierHog::index(const unsigned int* integralHog) const {
    const unsigned int* cellTop = integralHog + cellStart;
    const unsigned int* cellBottom = cellTop + cellHeightLen;
    const unsigned int energy = cellBottom[cellSectorOffset] + cellTop[sector] -
                                cellTop[cellSectorOffset] - cellBottom[sector];
    const unsigned int* blockTop = integralHog + blockStart;
    const unsigned int* blockBottom = blockTop + blockHeightLen;
    const unsigned int total = blockTop[NUM_SECTORS] + blockBottom[blockTotalOffset] + 1 -
                               blockTop[blockTotalOffset] - blockBottom[NUM_SECTORS];
    // 32 bits are enough below 2^24, and that division is a fraction of the long one.
    if (energy < 1u << 24) return static_cast<int>((energy << 8) / total);
    return static_cast<int>(uint64_t{energy} * 256 / total);
}
