#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Evaluation.h"

/// Recall and false groups at one setting of the last thresholds.
struct OperatingPoint {
    int shift = 0;
    double recall = 0, leading = 0, groupsPerScene = 0;
};

/// All that one run of the evaluation found out.
struct CascadeReport {
    std::string ring;
    Measurement measurement;  ///< at the ring's own thresholds
    std::vector<OperatingPoint> points;
    StageRates rates;
    double milliseconds = 0;

    nlohmann::ordered_json json() const;
    /// A table to read.
    std::string text() const;
};
