#include "KZ_DotProduct.h"

namespace KZ {

namespace {

float addTail(const float* a, const float* b, int from, int n, float sum) {
    for (int i = from; i < n; ++i) sum += a[i] * b[i];
    return sum;
}

// Eight lanes as plain floats: this states the order of summation, and compilers map it onto two
// vector registers.
float dotScalar(const float* a, const float* b, int n, float init) {
    const int blocks = n - n % 8;
    if (blocks == 0) return addTail(a, b, 0, n, init);
    float lane[8] = {};
    for (int i = 0; i < blocks; i += 8) {
        for (int k = 0; k < 8; ++k) lane[k] += a[i + k] * b[i + k];
    }
    for (int k = 0; k < 4; ++k) lane[k] += lane[k + 4];
    return addTail(a, b, blocks, n, ((lane[0] + lane[2]) + (lane[1] + lane[3])) + init);
}

}  // namespace

const std::vector<DotProductVariant>& dotProductVariants() {
    static const std::vector<DotProductVariant> variants = {{"scalar", dotScalar}};
    return variants;
}

float dotProduct(const float* a, const float* b, int n, float init) {
    return dotScalar(a, b, n, init);
}

}  // namespace KZ
