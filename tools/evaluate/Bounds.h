#pragma once

#include <string>
#include <vector>

#include "Evaluation.h"

namespace evaluate {

/// Shares that a run over a fixed set of exhibits reached.
struct Reached {
    double recall = 0, poseAlarms = 0, sceneAlarms = 0;
};
/// A share without an exhibit is 0.
Reached reachedBy(const std::vector<PhotoOutcome>& outcomes);

/// A fixed set of exhibits and the shares that the engine has to keep on them.
struct Bounds {
    std::string split;
    Reached recorded;
    std::vector<std::string> exhibits;  ///< their keys

    /// Of the palms every sixth, of other poses every 18th, of scenes every 8th: those that a core
    /// shows within half a minute.
    static std::vector<Exhibit> choose(const Exhibits& exhibits);

    /// Throws Failure, naming the file, for anything but what `text` gives.
    static Bounds read(const std::string& path);
    std::string text() const;

    /// The listed ones; throws Failure when one is missing in the data.
    std::vector<Exhibit> select(const Exhibits& all) const;

    /// What the share of a kind may lose.
    double slack(training::Kind kind) const;

    /// A line for each share that is beyond its bound; empty when all hold. A single photograph of
    /// each kind may turn, for another processor's picture decoder may round differently.
    std::vector<std::string> violations(const Reached& reached) const;
};

}  // namespace evaluate
