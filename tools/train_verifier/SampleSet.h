#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "LocationScan.h"

namespace training {

/// Where a patch comes from. A placed one lies where the scan could have reported the hand.
enum class Origin : uint8_t {
    SCANNED_PALM,
    JITTERED_PALM,
    PLACED_PALM,
    SCANNED_HAND,
    PLACED_HAND,
    SCENE
};

inline bool isPalm(Origin origin) {
    return origin <= Origin::PLACED_PALM;
}

/// How a location differs from the labelled palm that it is on.
struct Deviation {
    float x = 0, y = 0;    ///< palm widths
    float logScale = 0;    ///< of its width over the window's that fits the palm
    float angle = 0;       ///< degrees
    int32_t sameSide = 1;  ///< the scan takes a right hand for a right one
};

/// Written to files as it is, hence without gaps.
struct Sample {
    Origin origin = Origin::SCENE;
    bool heldOut = false;
    bool crop = false;    ///< of a crop of a hand, not of a whole photograph
    bool loose = false;   ///< reported at the loosened threshold
    Deviation deviation;  ///< of SCANNED_PALM
};
static_assert(sizeof(Sample) == 24);

/// Labelled patches for both verifiers.
class SampleSet {
public:
    void add(const Sample& sample, const PatchPair& patches);
    void append(const SampleSet& other);

    int size() const { return static_cast<int>(samples_.size()); }
    const Sample& operator[](int i) const { return samples_[i]; }
    /// The patch of sample `i` for network number `verifier`.
    const uint8_t* patch(int i, int verifier) const;

    /// The file holds `key` too: reading with another one returns false and changes nothing.
    void write(const std::string& path, const std::string& key) const;
    bool read(const std::string& path, const std::string& key);

private:
    std::vector<Sample> samples_;
    std::vector<uint8_t> pixels_[VERIFIERS];
};

}  // namespace training
