#pragma once

#include <array>
#include <istream>
#include <ostream>

#include "KZ_BasePoint.h"
#include "KZ_BaseSize.h"
#include "KZ_SharedPtr.h"

/// One pixel of the RMCT image; its code is the index of the vote. Many of these are walked for
/// each window of a picture, so the fields of the scoring loop stay few and close together.
class WeakClassifierRmct {
public:
    /// Where each bit of a code goes when its neighbourhood is turned or mirrored, for whole codes.
    static const std::array<int, 256> bitRotationMatrix;
    static const std::array<int, 256> bitFlipMatrix;

    const signed char* data = nullptr;  ///< 256 votes
    signed char x;                      ///< position in the patch
    signed char y;
    KZ::SharedArray<signed char> storage;
    int offset = 0;  ///< x + y * strip: bytes from the window's corner, for one strip at a time

    explicit WeakClassifierRmct(KZ::BasePoint<signed char> p = KZ::BasePoint<signed char>())
        : x(p.x), y(p.y) {}

    void set(signed char newX, signed char newY) {
        x = newX;
        y = newY;
    }
    /// Constant votes of the caller's, which must outlive this classifier and its copies.
    void setData(const signed char* votes);
    const signed char* getData() const { return data; }

    int vote(const unsigned char* rmct) const { return data[rmct[offset]]; }

    /// The strip that `offset` was made for; 0 when row 0 does not tell.
    int strip() const { return y == 0 ? 0 : (offset - x) / y; }
    void setStrip(int strip) { offset = x + y * strip; }

    /// The classifier of a patch of `size` that was turned or mirrored.
    void rotate(const KZ::Size& size);
    void flip(const KZ::Size& size);
    /// Moves vote i to table[i], in a table of its own. `table` is a permutation of 0 to 255.
    void modifyData(const int* table);

    /// Equal position and votes; one without votes is equal to nothing.
    bool operator==(const WeakClassifierRmct& other) const;

    /// One line of a `.ring` file.
    void basicSave(std::ostream& stream) const;
    void basicLoad(std::istream& stream);
    /// One row of generated source.
    void writeWeakClassifier(std::ostream& stream) const;

private:
    void transform(const KZ::Point& moved, const std::array<int, 256>& codes);
};
