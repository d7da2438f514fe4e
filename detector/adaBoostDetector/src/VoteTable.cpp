#include "VoteTable.h"

#include <cstring>

#include "KZ_Assert.h"

namespace VoteTable {

KZ::SharedArray<signed char> unowned(const signed char* votes) {
    // Shared holders have no constant form; nothing is written through this one.
    return KZ::SharedArray<signed char>::unowned(const_cast<signed char*>(votes));
}

bool equal(const signed char* a, const signed char* b) {
    return a && b && std::memcmp(a, b, SIZE) == 0;
}

void save(std::ostream& stream, const signed char* votes) {
    KZ_ASSERT_POINTER(votes);
    for (int i = 0; i < SIZE; ++i) stream << +votes[i] << ' ';
}

KZ::SharedArray<signed char> load(std::istream& stream) {
    const KZ::SharedArray<signed char> votes(new signed char[SIZE]());
    for (int i = 0; i < SIZE && stream; ++i)
        votes[i] = static_cast<signed char>(readNumber(stream, -128, 127));
    return votes;
}

void writeRow(std::ostream& stream, const signed char* votes) {
    KZ_ASSERT_POINTER(votes);
    for (int i = 0; i < SIZE; ++i) stream << ',' << +votes[i];
    stream << "},\n";
}

int readNumber(std::istream& stream, int min, int max) {
    int value = 0;
    if (!(stream >> value)) return 0;
    if (min <= value && value <= max) return value;
    stream.setstate(std::ios::failbit);
    return 0;
}

void saveRect(std::ostream& stream, const KZ::Rect& rect) {
    stream << rect.top << ' ' << rect.left << ' ' << rect.right << ' ' << rect.bottom << '\t';
}

KZ::Rect loadRect(std::istream& stream) {
    KZ::Rect rect;
    for (int* side : {&rect.top, &rect.left, &rect.right, &rect.bottom})
        *side = readNumber(stream, -MAX_SIDE, MAX_SIDE);
    if (rect.left > rect.right || rect.top > rect.bottom) stream.setstate(std::ios::failbit);
    return rect;
}

void writeRect(std::ostream& stream, const KZ::Rect& rect) {
    stream << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom;
}

}  // namespace VoteTable
