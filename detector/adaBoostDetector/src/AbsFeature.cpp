#include "AbsFeature.h"

#include <algorithm>
#include <cstdint>

#include "KZ_Assert.h"
#include "KZ_Limits.h"

namespace {

int clamped(int64_t sum) {
    return static_cast<int>(std::clamp<int64_t>(sum, KZ::minValue<int>(), KZ::maxValue<int>()));
}

}  // namespace

AbsFeature::AbsFeature(const WeakClassifierHaar& haar, int threshold) : rect(haar.allRect) {
    KZ_ASSERT_POINTER(haar.data);
    const int size = WeakClassifierHaar::TABLE_SIZE;
    int lowest = size;
    int highest = 0;
    for (int i = 0; i < size; ++i) {
        if (haar.data[i] < threshold) continue;
        if (lowest == size) lowest = i;
        highest = i;
    }
    // The inverse of index = sum / (2 * area) + 127.
    const int middle = (size - 1) >> 1;
    const int64_t area = int64_t{rect.width()} * rect.height();
    minValue = clamped(2 * area * (lowest - middle));
    maxValue = clamped(2 * area * (highest - middle + 1) - 1);
}

void AbsFeature::setStripLength(unsigned short stripBytes) {
    const int strip = stripBytes >> 2;
    width = rect.right - rect.left;
    start = rect.left + rect.top * strip;
    heightLen = rect.height() * strip;
}
