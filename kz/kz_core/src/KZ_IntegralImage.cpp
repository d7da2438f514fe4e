#include "KZ_IntegralImage.h"

#include <algorithm>
#include <cstdint>

#include "KZ_Check.h"

namespace KZ {

namespace {

// The running sum of a row joins the cells above it.
void integralRow(const unsigned char* src, const uint32_t* above, uint32_t* out, int count) {
    uint32_t sum = 0;
    for (int x = 0; x < count; ++x) {
        sum += src[x];
        out[x] = sum + above[x];
    }
}

void integrate(const Image& mono, Image& integral, const Rect& rect) {
    for (int y = 0; y < integral.height(); ++y) {
        uint32_t* out = integral.row<uint32_t>(y);
        if (y <= rect.top || y > rect.bottom || rect.width() <= 0) {
            std::fill(out, out + integral.width(), 0u);
            continue;
        }
        std::fill(out, out + rect.left + 1, 0u);
        integralRow(mono.data(rect.left, y - 1), integral.row<uint32_t>(y - 1) + rect.left + 1,
                    out + rect.left + 1, rect.width());
        std::fill(out + rect.right + 1, out + integral.width(), 0u);
    }
}

Size integralSize(const Image& image) {
    return Size(image.width() + 1, image.height() + 1);
}

void checkTight(const Image& image) {
    KZ_ASSERT(image.width() * image.depth() == image.stripLength(), "incorrect stripLength");
}

}  // namespace

void computeIntegral(const Image& mono, Image& integral) {
    computeIntegral(mono, integral, mono.rect());
}

void computeIntegral(const Image& image, Image& integral, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(image, COLOR_MODE_MONO);
    KZ_ASSERT(image.rect().contains(rect),
              "Rect must be inside image: rect = " << rect << ", image.rect() = " << image.rect());
    integral.create(integralSize(image), COLOR_MODE_INTEGRAL);
    integrate(image, integral, rect);
}

void computeIntegralOptimized(const Image& image, Image& integral) {
    KZ_CHECK_COLOR_MODE(image, COLOR_MODE_MONO);
    checkTight(image);
    integral.create(integralSize(image), COLOR_MODE_INTEGRAL);
    checkTight(integral);
    integrate(image, integral, image.rect());
}

void integral_image(const unsigned char* src, unsigned int* dst, int width, int height) {
    for (int y = 0; y < height; ++y, src += width, dst += width) {
        unsigned int sum = 0;
        for (int x = 0; x < width; ++x) {
            sum += src[x];
            dst[x] = y ? sum + dst[x - width] : sum;
        }
    }
}

Rect integralRect(const Image& integral) {
    return Rect(0, 0, integral.width() - 1, integral.height() - 1);
}

}  // namespace KZ
