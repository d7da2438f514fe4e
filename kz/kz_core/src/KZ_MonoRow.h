#pragma once

#include <vector>

namespace KZ {

/// Studio-range luma 16 + ((66 R + 129 G + 25 B) >> 8) of `count` pixels of three bytes.
using MonoRow = void (*)(const unsigned char* pixels, unsigned char* mono, int count);
struct MonoRowVariant {
    const char* name;
    MonoRow bgr;
    MonoRow rgb;
};

/// The variants in this binary: first the scalar definition, last the one in use.
const std::vector<MonoRowVariant>& monoRowVariants();

}  // namespace KZ
