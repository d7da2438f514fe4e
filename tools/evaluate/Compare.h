#pragma once

#include <string>
#include <vector>

#include "Evaluation.h"
#include "Metrics.h"

namespace evaluate {

/// How a figure differs between two runs on the exhibits that both have.
struct Difference {
    std::string measure, group, bin;
    int all = 0;  ///< exhibits that take part in both runs
    double before = 0, after = 0;
    Interval change;            ///< of the same draws in both runs: after less before
    bool moreIsBetter = false;  ///< of recall; of alarms, errors and latency less is

    /// The interval leaves no change out.
    bool tells() const { return change.low > 0 || change.high < 0; }
    bool isBetter() const { return tells() && (change.value > 0) == moreIsBetter; }
};

/// The outcomes of two runs, pair by pair.
struct Comparison {
    int pairs = 0, onlyBefore = 0, onlyAfter = 0;  ///< exhibits
    std::vector<Difference> differences;
    /// Palms found and lost by the new run; alarms it has no more, and new ones.
    std::vector<PhotoOutcome> palmsGained, palmsLost, alarmsGone, alarmsNew;
    /// What a run has once, without an interval: losing stages, videos, times of a frame.
    struct Count {
        std::string what, before, after;
    };
    std::vector<Count> counts;
};

/// Throws Failure when the runs have no exhibit in common.
Comparison compare(const Evaluation& before, const Evaluation& after);

/// What got better, what got worse, and where the data cannot tell.
std::string textOf(const Comparison& comparison);

}  // namespace evaluate
