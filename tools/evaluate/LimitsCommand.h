#pragma once

#include <string>

namespace evaluate {

struct LimitsOptions {
    std::string picture;  ///< file to write, .png or .jpg
    std::string json;     ///< file to write with all shares; empty: none
    std::string mesh;     ///< the rigged hand
};

/// Shows rendered hands to the engine, one property varied at a time, and writes what it found.
/// Throws training::Failure when the hand is missing or this build cannot read it.
void drawLimits(const LimitsOptions& options);

}  // namespace evaluate
