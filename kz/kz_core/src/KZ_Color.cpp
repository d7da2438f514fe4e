#include "KZ_Color.h"

#include "KZ_Assert.h"

namespace KZ {

namespace {

uint32_t packed(int first, int second, int third, int alpha) {
    return static_cast<uint32_t>(first) | static_cast<uint32_t>(second) << 8 |
           static_cast<uint32_t>(third) << 16 | static_cast<uint32_t>(alpha) << 24;
}

}  // namespace

uint32_t Color::prepareColor(ColorMode mode) const {
    switch (mode) {
        case COLOR_MODE_MONO: {
            const int grey = (11 * r() + 16 * g() + 5 * b()) >> 5;
            return packed(grey, grey, grey, a());
        }
        case COLOR_MODE_BGR:
            return packed(b(), g(), r(), a());
        case COLOR_MODE_RGB:
        case COLOR_MODE_RGBA:
            return packed(r(), g(), b(), a());
        case COLOR_MODE_YUV:
            // No rounding term, unlike the conversions of whole images.
            return packed(16 + ((66 * r() + 129 * g() + 25 * b()) >> 8),
                          128 + ((-38 * r() - 74 * g() + 112 * b()) >> 8),
                          128 + ((112 * r() - 94 * g() - 18 * b()) >> 8), a());
        default:
            KZ_ASSERT(0, "wrong color mode: " << colorModeName(mode));
            return 0;
    }
}

}  // namespace KZ
