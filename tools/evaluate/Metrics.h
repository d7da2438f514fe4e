#pragma once

#include <string>
#include <vector>

#include "Bootstrap.h"
#include "Outcome.h"

namespace evaluate {

/// One figure of a report.
struct Figure {
    std::string measure;    ///< what is measured: see MEASURES
    std::string group;      ///< by what the examples are sorted: "all", "macro", "source", ...
    std::string bin;        ///< which of the group; empty for "all" and "macro"
    int some = 0, all = 0;  ///< examples that count, of so many; of errors and latency all alone
    Interval interval;
};

/// Measures: shares of the examples of one kind, or quantiles over the palms found.
constexpr const char* RECALL = "recall";
constexpr const char* SCENE_ALARMS = "alarms on scenes";
constexpr const char* POSE_ALARMS = "alarms on other poses";

/// For each example -1 (takes no part), 0 or 1 (counts).
using Tally = std::vector<signed char>;

/// The share of those that count among the examples drawn.
double share(const Draw& draw, const Tally& tally);
/// The mean of the sources' shares.
double macroShare(const Draw& draw, const Tally& tally);

/// A row of a table of figures: the examples that belong to it.
struct Bin {
    std::string group, name;
    std::vector<bool> members;
};

/// How a kind of exhibits is sorted: all; by source; palms also by size, angle, side and
/// brightness.
std::vector<Bin> binsOf(const std::vector<PhotoOutcome>& outcomes);

/// What counts among the members; outcomes that are neither found nor missed take no part.
Tally tallyOf(const std::vector<PhotoOutcome>& outcomes, const Bin& bin);

/// Outcomes of one kind, without those with doubtful labels unless `withDoubtful`.
std::vector<PhotoOutcome> ofKind(const std::vector<PhotoOutcome>& outcomes, training::Kind kind,
                                 bool withDoubtful);
std::vector<Origin> originsOf(const std::vector<PhotoOutcome>& outcomes);
const char* measureOf(training::Kind kind);
/// Whether an outcome counts: a palm was found, or something reported where no palm is.
bool counts(const PhotoOutcome& outcome);

/// All figures of a run's photographs. A share of 0 or 1 gets the exact one-sided bound where the
/// draws show no spread, as if its examples were independent.
std::vector<Figure> figuresOf(const std::vector<PhotoOutcome>& outcomes, bool withDoubtful);

/// Processor time of frames in milliseconds.
struct FrameTimes {
    int frames = 0;
    double median = 0, p99 = 0;
};
FrameTimes timesOf(const std::vector<double>& milliseconds);

}  // namespace evaluate
