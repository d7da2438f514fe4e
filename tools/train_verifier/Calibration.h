#pragma once

#include <string>
#include <vector>

namespace training {

/// Margins "palm" minus "no palm" of both verifiers for the same patches.
struct ChainMargins {
    std::vector<float> first, second;
};

/// Thresholds on the margins of both verifiers, and what passes them.
struct OperatingPoint {
    float first = 0, second = 0;
    double keptByFirst = 0, keptByBoth = 0;  ///< shares of the palms
    double alarms = 0;  ///< mean of the shares of scenes and of hands that pass both

    std::string text() const;
};

/// The pair of thresholds with the fewest alarms of those that keep `kept` of the palms, with
/// neither verifier losing more than three quarters of what may be lost.
OperatingPoint chooseOperatingPoint(const ChainMargins& palms, const ChainMargins& scenes,
                                    const ChainMargins& hands, double kept);

/// The margin at which a palm's share of the two logits' softmax is `score`.
float marginAt(double score);

}  // namespace training
