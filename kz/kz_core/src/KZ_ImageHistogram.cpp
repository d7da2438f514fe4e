#include "KZ_ImageHistogram.h"

#include "KZ_PixelRows.h"

namespace KZ {

void ImageHistogram::compute(const Image& image, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(image, COLOR_MODE_MONO);
    const Rect region = regionOf(image, rect);
    *this = ImageHistogram();
    for (int y = region.top; y < region.bottom; ++y) {
        const unsigned char* row = image.data(0, y);
        for (int x = region.left; x < region.right; ++x) ++counts_[row[x]];
    }
    for (unsigned int count : counts_) total_ += count;
}

unsigned int ImageHistogram::count(int value) const {
    KZ_ASSERT_GE(value, 0);
    KZ_ASSERT_LT(value, NUM_BINS + 0);
    return counts_[value];
}

int ImageHistogram::percentile(float fraction) const {
    if (total_ == 0) return 0;
    const float wanted = fraction * static_cast<float>(total_);
    unsigned int below = counts_[0];
    int value = 0;
    while (value + 1 < NUM_BINS && static_cast<float>(below) < wanted) below += counts_[++value];
    return value;
}

int ImageHistogram::minValue() const {
    for (int value = 0; value < NUM_BINS; ++value)
        if (counts_[value] != 0) return value;
    return 0;
}

int ImageHistogram::maxValue() const {
    for (int value = NUM_BINS - 1; value > 0; --value)
        if (counts_[value] != 0) return value;
    return 0;
}

void equalizeHistogram(const Image& source, Image& target, const Rect& rect) {
    const ImageHistogram histogram(source, rect);
    const uint64_t lowest = histogram.count(histogram.minValue());
    const uint64_t range = histogram.total() - lowest;
    unsigned char table[ImageHistogram::NUM_BINS];
    uint64_t below = 0;
    for (int value = 0; value < ImageHistogram::NUM_BINS; ++value) {
        below += histogram.count(value);
        const uint64_t above = below > lowest ? below - lowest : 0;
        table[value] = static_cast<unsigned char>(range == 0 ? static_cast<uint64_t>(value)
                                                             : above * 255 / range);
    }
    target.create(source.size(), COLOR_MODE_MONO);
    mapCells<unsigned char, unsigned char>(source, target, regionOf(source, rect),
                                           [&table](unsigned char s) { return table[s]; });
}

}  // namespace KZ
