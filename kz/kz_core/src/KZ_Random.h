#pragma once

#include <cstdint>

#include "KZ_BaseRange.h"

// The library's own generator, so that runs repeat on every platform: multiplier 48271, modulus
// 2^31 - 1. One state serves all functions; it belongs to one thread at a time.

namespace KZ {

/// The state. Multiples of 2^31 - 1, such as the initial 0, are a fixed point: all draws are 0.
extern int32_t randomSeed;

void setRandomSeed(long seed);
/// 0 to 2^31 - 2.
int rand();
/// 0 to about 1.
float randomUniform();
float randomUniform(float a, float b);
float randomUniform(const RangeF& range);
/// 0 to n - 1; `n` must be positive.
int randomUniformInt(int n);
/// Standard normal. At the state's fixed point, which yields no pair of use, an assertion.
float randomNormal();
float randomNormal(float mean, float sigma);

}  // namespace KZ
