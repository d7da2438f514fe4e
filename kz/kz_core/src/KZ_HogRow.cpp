#include <cstdint>
#include <cstring>

#include "KZ_IntegralHog.h"

namespace KZ {

namespace {

// The definition.
template <int BINS>
void hogRowScalar(const unsigned char* bins, const unsigned char* magnitudes,
                  const unsigned int* above, unsigned int* out, unsigned int* sums, int count) {
    for (int x = 0; x < count; ++x, above += BINS + 1, out += BINS + 1) {
        sums[bins[x]] += magnitudes[x];
        sums[BINS] += magnitudes[x];
        for (int k = 0; k <= BINS; ++k) out[k] = above[k] + sums[k];
    }
}

#if defined(__GNUC__)
// Four lanes in the compiler's own terms: one text for SSE2 and NEON. The sums stay in registers; a
// lane takes the magnitude when its number is the pixel's bin.
typedef uint32_t Lanes __attribute__((vector_size(16)));

inline void addRow(const Lanes& sums, const unsigned int* above, unsigned int* out) {
    Lanes cells;
    std::memcpy(&cells, above, sizeof(cells));
    cells += sums;
    std::memcpy(out, &cells, sizeof(cells));
}

// Seven channels are two groups of four that share channel 3.
void hogRowLanes6(const unsigned char* bins, const unsigned char* magnitudes,
                  const unsigned int* above, unsigned int* out, unsigned int* sums, int count) {
    const Lanes lowNumbers = {0, 1, 2, 3}, highNumbers = {3, 4, 5, 6}, total = {0, 0, 0, ~0u};
    Lanes low, high;
    std::memcpy(&low, sums, sizeof(low));
    std::memcpy(&high, sums + 3, sizeof(high));
    for (int x = 0; x < count; ++x, above += 7, out += 7) {
        const uint32_t bin = bins[x], magnitude = magnitudes[x];
        low += reinterpret_cast<Lanes>(lowNumbers == bin) & magnitude;
        high += (reinterpret_cast<Lanes>(highNumbers == bin) | total) & magnitude;
        addRow(low, above, out);
        addRow(high, above + 3, out + 3);
    }
    std::memcpy(sums, &low, sizeof(low));
    std::memcpy(sums + 3, &high, sizeof(high));
}

// Twelve bins in three groups of four, and the total by itself.
void hogRowLanes12(const unsigned char* bins, const unsigned char* magnitudes,
                   const unsigned int* above, unsigned int* out, unsigned int* sums, int count) {
    const Lanes numbers = {0, 1, 2, 3};
    Lanes groups[3];
    std::memcpy(groups, sums, sizeof(groups));
    unsigned int total = sums[12];
    for (int x = 0; x < count; ++x, above += 13, out += 13) {
        const uint32_t bin = bins[x], magnitude = magnitudes[x];
        for (uint32_t i = 0; i < 3; ++i) {
            groups[i] += reinterpret_cast<Lanes>(numbers == bin - 4 * i) & magnitude;
            addRow(groups[i], above + 4 * i, out + 4 * i);
        }
        total += magnitude;
        out[12] = above[12] + total;
    }
    std::memcpy(sums, groups, sizeof(groups));
    sums[12] = total;
}
#endif

}  // namespace

const std::vector<HogRowVariant>& hogRowVariants() {
    static const std::vector<HogRowVariant> variants = {
        {"scalar", hogRowScalar<6>, hogRowScalar<12>},
#if defined(__GNUC__)
        {"lanes", hogRowLanes6, hogRowLanes12},
#endif
    };
    return variants;
}

}  // namespace KZ
