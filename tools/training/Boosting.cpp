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

void keep(const Sums& sums, float scale, std::array<float, 256>& shares) {
    for (int i = 0; i < 256; ++i) shares[i] = static_cast<float>(sums[i]) * scale;
}

/// Half of a code's weight goes to the eight codes that differ in one bit.
void shareWithCodes(const Sums& sums, float scale, std::array<float, 256>& shares) {
    for (int i = 0; i < 256; ++i) {
        uint32_t neighbours = 0;
        for (int bit = 1; bit < 256; bit *= 2) neighbours += sums[i ^ bit] / 16;
        shares[i] = (static_cast<float>(sums[i]) / 2 + static_cast<float>(neighbours)) * scale;
    }
}

/// Values of Haar and HOG features have an order: neighbouring bins share their weight, by the
/// weights 1 2 3 2 1. What would fall off an end stays in the last bin there.
void shareWithNeighbours(const Sums& sums, float scale, std::array<float, 256>& shares) {
    float spread[260] = {};
    for (int i = 0; i < 256; ++i) {
        const float part = static_cast<float>(sums[i]) * scale / 9;
        spread[i] += part;
        spread[i + 1] += 2 * part;
        spread[i + 2] += 3 * part;
        spread[i + 3] += 2 * part;
        spread[i + 4] += part;
    }
    std::copy(spread + 2, spread + 258, shares.begin());
    shares[0] += spread[0] + spread[1];
    shares[255] += spread[258] + spread[259];
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
    effectiveExamples_ =
        weighClass(0, positives_, -1) + weighClass(positives_, positives_ + negatives_, 1);
}

double Booster::weighClass(int begin, int end, double sign) {
    std::vector<double> raw(end - begin);
    double total = 0, squares = 0;
    for (int i = begin; i < end; ++i) {
        const double weight = std::exp(sign * scores_[i] / VOTE_SCALE);
        raw[i - begin] = weight;
        total += weight;
        squares += weight * weight;
    }
    for (int i = begin; i < end; ++i) {
        weights_[i] = static_cast<uint32_t>(raw[i - begin] / total * CLASS_WEIGHT);
    }
    return total * total / squares;
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
    const bool isRmct = table_.feature(feature).kind == Feature::RMCT;
    const auto share = !isRmct ? shareWithNeighbours : settings_.shareCodes ? shareWithCodes : keep;
    share(positive, scale, result.positive);
    share(negative, scale, result.negative);
    const float extra = static_cast<float>(settings_.smoothing / effectiveExamples_);
    for (float& bin : result.positive) bin += extra;
    for (float& bin : result.negative) bin += extra;
    return result;
}

int Booster::best(const std::vector<int>& tried) const {
    std::vector<float> values(tried.size());
    constexpr int BLOCK = 16;
    const int count = static_cast<int>(tried.size());
    parallelFor((count + BLOCK - 1) / BLOCK, threads_, [&](int block, int) {
        for (int i = block * BLOCK; i < std::min((block + 1) * BLOCK, count); ++i) {
            const Bins found = bins(tried[i]);
            values[i] = criterion(found.positive, found.negative);
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
        const double vote = settings_.shrinkage * 0.5 *
                            std::log(static_cast<double>(found.positive[i]) / found.negative[i]);
        weak.votes[i] =
            static_cast<int8_t>(std::clamp(std::lround(vote * VOTE_SCALE), -127l, 127l));
    }
    const uint8_t* codes = table_.row(feature);
    for (size_t i = 0; i < scores_.size(); ++i) scores_[i] += weak.votes[codes[i]];
    chosen_.push_back(weak);
}

}  // namespace training
