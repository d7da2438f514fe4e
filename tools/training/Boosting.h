#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "Features.h"
#include "Random.h"

namespace training {

/// A feature with its table of votes.
struct WeakClassifier {
    Feature feature;
    std::array<int8_t, 256> votes{};
};

struct BoostingSettings {
    int weakCount = 0;  ///< weak classifiers to choose
    /// Features of each kind tried in a round: a fresh random choice when the table has more.
    int triedRmct = 0, triedHaar = 0, triedHog = 0;
    /// Weight that smoothing adds to each bin of each class, in examples. The lesser the number of
    /// examples that still weigh something, the more it counts.
    double smoothing = 10;
    /// Share of a vote's full size that is given: below 1, more rounds learn less by heart.
    double shrinkage = 1;
    /// RMCT codes that differ in one bit share half of their weight.
    bool shareCodes = false;
};

/// Votes per unit of half the logarithm of the odds.
constexpr double VOTE_SCALE = 40;

/// Real-valued boosting with tables: each round takes the feature whose 256 bins part the weighted
/// classes best, gives every bin half the logarithm of its smoothed odds as a vote of -127 to 127,
/// and weighs the examples anew by the sum of their votes so far. Weights and sums are integers,
/// so that the outcome depends on no order of addition.
class Booster {
public:
    /// Windows 0 to `positives - 1` of the table are palms to learn from, the next `negatives` are
    /// not palms; those that follow are scored along, unseen by the learning.
    Booster(const FeatureTable& table, int positives, int negatives,
            const BoostingSettings& settings, int threads);

    /// Chooses and applies one weak classifier.
    const WeakClassifier& round(Random& random);

    const std::vector<WeakClassifier>& chosen() const { return chosen_; }
    /// Sum of votes so far of every window of the table.
    const std::vector<int>& scores() const { return scores_; }

private:
    struct Bins {
        std::array<float, 256> positive, negative;  ///< smoothed shares of the two classes
    };

    void weigh();
    double weighClass(int begin, int end, double sign);
    std::vector<int> candidates(Random& random);
    Bins bins(int feature) const;
    int best(const std::vector<int>& tried) const;
    void apply(int feature);

    const FeatureTable& table_;
    const int positives_, negatives_;
    const BoostingSettings settings_;
    const int threads_;
    std::vector<int> scores_;
    std::vector<uint32_t> weights_;
    double effectiveExamples_ = 0;  ///< equal weights of so many examples would spread alike
    std::vector<int> byKind_[3];
    std::vector<WeakClassifier> chosen_;
};

}  // namespace training
