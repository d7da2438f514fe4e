#include <algorithm>
#include <cmath>
#include <memory>

#include "KZ_IntegralHog.h"

namespace KZ {

namespace {

// Pi and its double as floats; the trained data rely on these values.
const double PI = 3.1415927410125732;
const double TWO_PI = 6.2831854820251465;

struct Table {
    unsigned char cells[512][512];

    unsigned char& at(int a, int b) { return cells[a + 256][b + 256]; }
};

template <typename Fill>
std::unique_ptr<const Table> filledTable(Fill fill) {
    std::unique_ptr<Table> table(new Table());
    for (int a = -255; a <= 255; ++a)
        for (int b = -255; b <= 255; ++b) table->at(a, b) = fill(*table, a, b);
    return table;
}

unsigned char magnitude(Table&, int a, int b) {
    const float root = std::sqrt(static_cast<float>(a * a + b * b));
    return static_cast<unsigned char>(std::min(root, 255.0f));
}

// The quadrant of a <= 0, b <= 0, from which the others are mirrored. It comes first in the order
// of filling, and each mirror of a cell before the cell.
unsigned char quadrantBin(int a, int b, int bins, double circle) {
    const double direction = std::atan2(static_cast<double>(a), static_cast<double>(b));
    return static_cast<unsigned char>(static_cast<int>(direction * bins / circle + bins + 0.5) %
                                      bins);
}

unsigned char unsignedBin(Table& table, int a, int b) {
    if (a <= 0 && b <= 0) return quadrantBin(a, b, 6, PI);
    if (a < 0) return static_cast<unsigned char>((6 - table.at(a, -b)) % 6);
    if (a == 0) return table.at(0, -b);
    if (b >= 0) return table.at(-a, -b);
    return static_cast<unsigned char>((6 - table.at(-a, b)) % 6);
}

unsigned char signedBin(Table& table, int a, int b) {
    if (a <= 0 && b <= 0) return quadrantBin(a, b, 12, TWO_PI);
    if (a < 0) return static_cast<unsigned char>((18 - table.at(a, -b)) % 12);
    if (a == 0) return static_cast<unsigned char>(table.at(0, -b) - 6);
    if (b >= 0) return static_cast<unsigned char>(table.at(-a, -b) - 6);
    return static_cast<unsigned char>((12 - table.at(-a, b)) % 12);
}

}  // namespace

GradientTable getMagnitudes() {
    static const std::unique_ptr<const Table> table = filledTable(magnitude);
    return table->cells;
}

GradientTable getHogUnsigned6() {
    static const std::unique_ptr<const Table> table = filledTable(unsignedBin);
    return table->cells;
}

GradientTable getHogSigned12() {
    static const std::unique_ptr<const Table> table = filledTable(signedBin);
    return table->cells;
}

}  // namespace KZ
