#include "KZ_Random.h"

#include <cmath>

#include "KZ_Assert.h"

namespace KZ {

namespace {

const int32_t MODULUS = 2147483647;

}  // namespace

int32_t randomSeed = 0;

void setRandomSeed(long seed) {
    randomSeed = static_cast<int32_t>(seed);
}

int rand() {
    // Schrage's split keeps the product within 32 bits.
    const int32_t hi = randomSeed / 44488;
    const int32_t lo = randomSeed - hi * 44488;
    int32_t next = 48271 * lo - 3399 * hi;
    if (next < 1) next += MODULUS;
    randomSeed = next;
    return next % MODULUS;
}

float randomUniform() {
    return static_cast<float>(rand()) * 4.656613e-10f;
}

float randomUniform(float a, float b) {
    return a + (b - a) * randomUniform();
}

float randomUniform(const RangeF& range) {
    return randomUniform(range.min, range.max);
}

int randomUniformInt(int n) {
    KZ_ASSERT_GT(n, 0);
    return rand() % n;
}

float randomNormal() {
    KZ_ASSERT(randomSeed % MODULUS != 0, "random seed is not set");
    for (;;) {
        const float u1 = randomUniform();
        const float u2 = randomUniform();
        const float x = 2 * u1 - 1;
        const float y = 2 * u2 - 1;
        const float s = x * x + y * y;
        if (!(s < 1.1920929e-7f || s > 0.9999999f)) return x * std::sqrt(-2 * std::log(s) / s);
    }
}

float randomNormal(float mean, float sigma) {
    const float value = randomNormal();
    return mean + value * sigma;
}

}  // namespace KZ
