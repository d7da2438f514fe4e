#include "Boosting.h"

#include <algorithm>
#include <cmath>

#include "Parallel.h"

namespace training {

namespace {

using Sums = std::array<uint32_t, 256>;

/// The weights of each class add up to a little below this.
constexpr double CLASS_WEIGHT = 1u << 31;

/// Four tables in turn, so that runs of one code do not wait for each other.
void addWeights(const uint8_t* codes, const uint32_t* weights, int count, Sums& sums) {
    uint32_t part[4][256] = {};
    int i = 0;
    for (; i + 4 <= count; i += 4) {
        part[0][codes[i]] += weights[i];
        part[1][codes[i + 1]] += weights[i + 1];
        part[2][codes[i + 2]] += weights[i + 2];
        part[3][codes[i + 3]] += weights[i + 3];
    }
    for (; i < count; ++i) part[0][codes[i]] += weights[i];
    for (int k = 0; k < 256; ++k) sums[k] = part[0][k] + part[1][k] + part[2][k] + part[3][k];
}

/// Values of Haar and HOG features have an order: neighbouring bins share their weight, by the
/// weights 1 2 3 2 1.
void shareWithNeighbours(const Sums& sums, float scale, std::array<float, 256>& shares) {
    float padded[260] = {};
    for (int i = 0; i < 256; ++i) padded[i + 2] = static_cast<float>(sums[i]) * scale / 9;
    for (int i = 0; i < 256; ++i) {
        shares[i] =
            padded[i] + 2 * padded[i + 1] + 3 * padded[i + 2] + 2 * padded[i + 3] + padded[i + 4];
    }
}

/// The bound on the training error that the feature leaves: smaller is better.
float criterion(const std::array<float, 256>& positive, const std::array<float, 256>& negative) {
    float lane[8] = {};
    for (int i = 0; i < 256; i += 8) {
        for (int k = 0; k < 8; ++k) lane[k] += std::sqrt(positive[i + k] * negative[i + k]);
    }
    return ((lane[0] + lane[4]) + (lane[1] + lane[5])) +
           ((lane[2] + lane[6]) + (lane[3] + lane[7]));
}

}  // namespace

Booster::Booster(const FeatureTable& table, int positives, int negatives,
                 const BoostingSettings& settings, int threads)
    : table_(table),
      positives_(positives),
      negatives_(negatives),
      settings_(settings),
      threads_(threads),
      scores_(table.windowCount()),
      weights_(positives + negatives) {
    for (int i = 0; i < table.featureCount(); ++i) byKind_[table.feature(i).kind].push_back(i);
}

const WeakClassifier& Booster::round(Random& random) {
    weigh();
    apply(best(candidates(random)));
    return chosen_.back();
}

void Booster::weigh() {
    const auto weighClass = [&](int begin, int end, double sign) {
        std::vector<double> raw(end - begin);
        double total = 0;
        for (int i = begin; i < end; ++i) {
            raw[i - begin] = std::exp(sign * scores_[i] / VOTE_SCALE);
            total += raw[i - begin];
        }
        for (int i = begin; i < end; ++i) {
            weights_[i] = static_cast<uint32_t>(raw[i - begin] / total * CLASS_WEIGHT);
        }
    };
    weighClass(0, positives_, -1);
    weighClass(positives_, positives_ + negatives_, 1);
}

std::vector<int> Booster::candidates(Random& random) {
    const int limits[] = {settings_.triedRmct, settings_.triedHaar, settings_.triedHog};
    std::vector<int> tried;
    for (int kind = 0; kind < 3; ++kind) {
        std::vector<int>& all = byKind_[kind];
        const int count = std::min(limits[kind], static_cast<int>(all.size()));
        for (int i = 0; i < count; ++i) {
            std::swap(all[i], all[i + random.below(static_cast<int>(all.size()) - i)]);
        }
        tried.insert(tried.end(), all.begin(), all.begin() + count);
    }
    return tried;
}

Booster::Bins Booster::bins(int feature) const {
    Sums positive, negative;
    const uint8_t* codes = table_.row(feature);
    addWeights(codes, weights_.data(), positives_, positive);
    addWeights(codes + positives_, weights_.data() + positives_, negatives_, negative);
    Bins result;
    const float scale = static_cast<float>(1 / CLASS_WEIGHT);
    if (table_.feature(feature).kind == Feature::RMCT) {
        for (int i = 0; i < 256; ++i) {
            result.positive[i] = static_cast<float>(positive[i]) * scale;
            result.negative[i] = static_cast<float>(negative[i]) * scale;
        }
    } else {
        shareWithNeighbours(positive, scale, result.positive);
        shareWithNeighbours(negative, scale, result.negative);
    }
    const float extra = static_cast<float>(settings_.smoothing / (positives_ + negatives_));
    for (float& share : result.positive) share += extra;
    for (float& share : result.negative) share += extra;
    return result;
}

int Booster::best(const std::vector<int>& tried) const {
    std::vector<float> values(tried.size());
    constexpr int BLOCK = 16;
    const int count = static_cast<int>(tried.size());
    parallelFor((count + BLOCK - 1) / BLOCK, threads_, [&](int block, int) {
        for (int i = block * BLOCK; i < std::min((block + 1) * BLOCK, count); ++i) {
            const Bins found = bins(tried[i]);
            const bool dear = table_.feature(tried[i]).kind != Feature::RMCT;
            values[i] = std::log(criterion(found.positive, found.negative)) +
                        static_cast<float>(dear ? settings_.dearerMargin : 0);
        }
    });
    int winner = 0;
    for (int i = 1; i < count; ++i) {
        if (values[i] < values[winner] ||
            (values[i] == values[winner] && tried[i] < tried[winner])) {
            winner = i;
        }
    }
    return tried[winner];
}

void Booster::apply(int feature) {
    const Bins found = bins(feature);
    WeakClassifier weak;
    weak.feature = table_.feature(feature);
    for (int i = 0; i < 256; ++i) {
        const double vote =
            0.5 * std::log(static_cast<double>(found.positive[i]) / found.negative[i]);
        weak.votes[i] =
            static_cast<int8_t>(std::clamp(std::lround(vote * VOTE_SCALE), -127l, 127l));
    }
    const uint8_t* codes = table_.row(feature);
    for (size_t i = 0; i < scores_.size(); ++i) scores_[i] += weak.votes[codes[i]];
    chosen_.push_back(weak);
}

}  // namespace training
