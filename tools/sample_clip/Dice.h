#pragma once

#include <cstdint>
#include <random>

namespace sample {

/// Random numbers that are the same with every standard library.
class Dice {
public:
    explicit Dice(uint32_t seed) : engine_(seed) {}

    /// Evenly from `low` to `high`.
    float between(float low, float high) {
        return low + (high - low) * float(engine_() >> 8) / float(1 << 24);
    }
    /// Evenly from `low` to `high`, both included.
    int whole(int low, int high) { return low + int(engine_() % uint32_t(high - low + 1)); }
    /// About normal, mean 0, deviation 1, never beyond 3.5.
    float normal() {
        // Bytes of one draw: four even numbers already sum to a good bell.
        const uint32_t bits = engine_();
        const int sum =
            int(bits & 255) + int(bits >> 8 & 255) + int(bits >> 16 & 255) + int(bits >> 24);
        return float(sum - 510) / 147.8f;
    }

private:
    std::mt19937 engine_;
};

}  // namespace sample
