#include "WeakClassifierRmct.h"

#include "PatchTransform.h"
#include "VoteTable.h"

namespace {

// Maps a whole code, given the new place of each bit from bit 0 on.
constexpr std::array<int, 256> codesFrom(const std::array<int, 8>& newBit) {
    std::array<int, 256> codes{};
    for (size_t code = 0; code < codes.size(); ++code)
        for (size_t bit = 0; bit < newBit.size(); ++bit)
            if (code >> bit & 1) codes[code] |= 1 << newBit[bit];
    return codes;
}

}  // namespace

// Bits from 7 to 0 are the neighbours in reading order. A turn takes the top left one to the bottom
// left, a flip to the top right.
const std::array<int, 256> WeakClassifierRmct::bitRotationMatrix =
    codesFrom({5, 3, 0, 6, 1, 7, 4, 2});
const std::array<int, 256> WeakClassifierRmct::bitFlipMatrix = codesFrom({2, 1, 0, 4, 3, 7, 6, 5});

void WeakClassifierRmct::setData(const signed char* votes) {
    storage = VoteTable::unowned(votes);
    data = votes;
}

void WeakClassifierRmct::rotate(const KZ::Size& size) {
    transform(rotatePointOnSize(KZ::Point(x, y), size), bitRotationMatrix);
}

void WeakClassifierRmct::flip(const KZ::Size& size) {
    transform(flipPointOnSize(KZ::Point(x, y), size), bitFlipMatrix);
}

void WeakClassifierRmct::transform(const KZ::Point& moved, const std::array<int, 256>& codes) {
    const int oldStrip = strip();
    set(static_cast<signed char>(moved.x), static_cast<signed char>(moved.y));
    modifyData(codes.data());
    setStrip(oldStrip);
}

void WeakClassifierRmct::modifyData(const int* table) {
    KZ_ASSERT_POINTER(data);
    const KZ::SharedArray<signed char> moved(new signed char[VoteTable::SIZE]);
    for (int i = 0; i < VoteTable::SIZE; ++i) moved[table[i]] = data[i];
    storage = moved;
    data = storage.get();
}

bool WeakClassifierRmct::operator==(const WeakClassifierRmct& other) const {
    return x == other.x && y == other.y && VoteTable::equal(data, other.data);
}

void WeakClassifierRmct::basicSave(std::ostream& stream) const {
    stream << +x << ' ' << +y << ' ';
    VoteTable::save(stream, data);
    stream << '\n';
}

void WeakClassifierRmct::basicLoad(std::istream& stream) {
    x = static_cast<signed char>(VoteTable::readNumber(stream, -128, 127));
    y = static_cast<signed char>(VoteTable::readNumber(stream, -128, 127));
    storage = VoteTable::load(stream);
    data = storage.get();
}

void WeakClassifierRmct::writeWeakClassifier(std::ostream& stream) const {
    stream << "\t{" << +x << ", " << +y;
    VoteTable::writeRow(stream, data);
}
