#pragma once

#include <vector>

namespace KZ {

/// Returns init + a[0] * b[0] + ... + a[n - 1] * b[n - 1] in single precision.
///
/// The order of summation is part of the contract: blocks of 8 go into two 4-lane accumulators,
/// which are added lane by lane and reduced (0 + 2) + (1 + 3); `init` is added to that, then the
/// last n % 8 products one by one. No alignment is needed; `n` may be 0.
float dotProduct(const float* a, const float* b, int n, float init);

struct DotProductVariant {
    const char* name;
    float (*run)(const float* a, const float* b, int n, float init);
};

/// First the scalar definition, last the one that `dotProduct` calls. All give the same bits.
const std::vector<DotProductVariant>& dotProductVariants();

}  // namespace KZ
