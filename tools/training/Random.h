#pragma once

#include <cmath>
#include <cstdint>
#include <initializer_list>

namespace training {

/// One step of the splitmix64 generator: also a good hash of its argument.
inline uint64_t mix(uint64_t x) {
    x += 0x9E3779B97F4A7C15ull;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ull;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBull;
    return x ^ (x >> 31);
}

/// A small generator whose draws are the same with every standard library. Work items are seeded
/// by what they are (stage, cascade, index), never by the order in which threads reach them.
class Random {
public:
    explicit Random(uint64_t seed) : state_(mix(seed)) {}
    Random(std::initializer_list<uint64_t> parts) {
        for (const uint64_t part : parts) state_ = mix(state_ ^ mix(part));
    }

    uint64_t next() {
        state_ += 0x9E3779B97F4A7C15ull;
        return mix(state_);
    }
    /// In [0, 1).
    double unit() { return static_cast<double>(next() >> 11) * 0x1p-53; }
    double uniform(double low, double high) { return low + (high - low) * unit(); }
    double logUniform(double low, double high) {
        return low * std::exp(std::log(high / low) * unit());
    }
    /// In 0 to `count - 1`; `count` is at least 1.
    int below(int count) { return static_cast<int>(next() % static_cast<uint64_t>(count)); }
    bool chance(double probability) { return unit() < probability; }

private:
    uint64_t state_ = 0;
};

}  // namespace training
