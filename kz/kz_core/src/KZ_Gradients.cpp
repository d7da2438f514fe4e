#include "KZ_Gradients.h"

#include <cmath>
#include <cstdlib>

#include "KZ_Check.h"

namespace KZ {

namespace {

const double PI = 3.1415927410125732;

void gradientRow(const unsigned char* upper, const unsigned char* middle,
                 const unsigned char* lower, unsigned char* out, int count) {
    for (int x = 0; x < count; ++x) {
        const int v = (lower[x - 1] + 2 * lower[x] + lower[x + 1]) -
                      (upper[x - 1] + 2 * upper[x] + upper[x + 1]);
        const int u = (upper[x + 1] + 2 * middle[x + 1] + lower[x + 1]) -
                      (upper[x - 1] + 2 * middle[x - 1] + lower[x - 1]);
        const double direction = std::atan2(static_cast<double>(u), static_cast<double>(v));
        out[2 * x] = static_cast<unsigned char>(static_cast<int>(direction * 4 / PI + 4.5) % 4);
        out[2 * x + 1] = static_cast<unsigned char>((std::abs(u) + std::abs(v)) >> 3);
    }
}

}  // namespace

void computeGradients(const Image& mono, Image& gradient) {
    KZ_CHECK_COLOR_MODE(mono, COLOR_MODE_MONO);
    gradient.create(mono.size(), COLOR_MODE_GRADIENT);
    zero(gradient);
    if (mono.width() < 3) return;
    for (int y = 1; y < mono.height() - 1; ++y)
        gradientRow(mono.data(1, y - 1), mono.data(1, y), mono.data(1, y + 1), gradient.data(1, y),
                    mono.width() - 2);
}

}  // namespace KZ
