#include <cstring>

#include "KZ_Assert.h"
#include "KZ_Image.h"

namespace KZ {

namespace {

// Total of the four bilinear weights.
const int FULL_WEIGHT = 65536;

unsigned int cell16(const unsigned char* p) {
    uint16_t value;
    std::memcpy(&value, p, sizeof(value));
    return value;
}

bool isValidDepth(unsigned int depth) {
    return depth - 1 < 4999u;
}

}  // namespace

int Image::fractionalValueDepth(int x, int y) const {
    const int fx = x - 256 * (x / 256);
    const int fy = y - 256 * (y / 256);
    const unsigned char* p = data(x >> 8, y >> 8);
    const unsigned int cells[4] = {cell16(p), cell16(p + depth_), cell16(p + stripLength_),
                                   cell16(p + stripLength_ + depth_)};
    const int weights[4] = {(256 - fx) * (256 - fy), fx * (256 - fy), (256 - fx) * fy, fx * fy};
    int weight = 0, sum = 0;
    for (int i = 0; i < 4; ++i) {
        if (!isValidDepth(cells[i])) continue;
        weight += weights[i];
        sum += weights[i] * static_cast<int>(cells[i]);
    }
    if (weight < FULL_WEIGHT / 2) return 0;
    return static_cast<int>(65536.0f / static_cast<float>(weight) * static_cast<float>(sum));
}

int Image::fractionalValue256(int x256, int y256) const {
    switch (colorMode_) {
        case COLOR_MODE_MONO:
            return fractionalValueMono(x256, y256);
        case COLOR_MODE_DEPTH:
            return fractionalValueDepth(x256, y256);
        default:
            KZ_ASSERT(0, "only COLOR_MODE_MONO, COLOR_MODE_DEPTH are implemented."
                             << "Got " << colorModeName(colorMode_));
            return 0;
    }
}

int Image::fractionalPixel(float x, float y) const {
    return fractionalPixel256(static_cast<int>(x * 256.0f), static_cast<int>(y * 256.0f));
}

float Image::fractionalPixelFloat(float x, float y) const {
    const int value =
        fractionalValue256(static_cast<int>(x * 256.0f), static_cast<int>(y * 256.0f));
    return static_cast<float>(value) * 1.5258789e-5f;
}

void Image::fractionalPixel256(int x, int y, unsigned char* out) const {
    switch (colorMode_) {
        case COLOR_MODE_BGR:
        case COLOR_MODE_RGB:
        case COLOR_MODE_YUV: {
            const int fx = x - 256 * (x / 256);
            const int fy = y - 256 * (y / 256);
            const unsigned char* above = data(x >> 8, y >> 8);
            const unsigned char* below = above + stripLength_;
            for (int c = 0; c < 3; ++c) {
                const int top = (256 - fx) * above[c] + fx * above[c + 3];
                const int bottom = (256 - fx) * below[c] + fx * below[c + 3];
                out[c] = static_cast<unsigned char>((top * (256 - fy) + bottom * fy) >> 16);
            }
            return;
        }
        case COLOR_MODE_DEPTH: {
            const uint16_t depth = static_cast<uint16_t>(fractionalValueDepth(x, y) >> 16);
            std::memcpy(out, &depth, sizeof(depth));
            return;
        }
        case COLOR_MODE_MONO:
            *out = static_cast<unsigned char>(fractionalValueMono(x, y) >> 16);
            return;
        default:
            KZ_ASSERT(0,
                      "only COLOR_MODE_MONO, COLOR_MODE_BGR, COLOR_MODE_RGB, COLOR_MODE_YUV, "
                      "COLOR_MODE_DEPTH are implemented."
                          << "Got " << colorModeName(colorMode_));
    }
}

void Image::fractionalPixel(float x, float y, unsigned char* out) const {
    fractionalPixel256(static_cast<int>(x * 256.0f), static_cast<int>(y * 256.0f), out);
}

}  // namespace KZ
