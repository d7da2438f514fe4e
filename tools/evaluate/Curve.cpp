#include "Curve.h"

#include <algorithm>
#include <set>

namespace evaluate {

using training::Kind;

namespace {

constexpr size_t MOST_POINTS = 200;

/// Sorted scores of one kind.
class Scores {
public:
    Scores(const std::vector<PhotoOutcome>& outcomes, Kind kind) {
        for (const PhotoOutcome& outcome : outcomes) {
            if (outcome.kind == kind && !outcome.otherReported)
                scores_.push_back(outcome.lastScore);
        }
        std::sort(scores_.begin(), scores_.end());
    }

    double shareFrom(double threshold) const {
        if (scores_.empty()) return 0;
        const auto first = std::lower_bound(scores_.begin(), scores_.end(), threshold);
        return static_cast<double>(scores_.end() - first) / static_cast<double>(scores_.size());
    }

private:
    std::vector<double> scores_;
};

}  // namespace

std::vector<CurvePoint> curveOf(const std::vector<PhotoOutcome>& outcomes) {
    std::set<double> different;
    for (const PhotoOutcome& outcome : outcomes) {
        if (outcome.lastScore > 0) different.insert(outcome.lastScore);
    }
    const std::vector<double> thresholds(different.begin(), different.end());
    const Scores palms(outcomes, Kind::PALM), poses(outcomes, Kind::HAND),
        scenes(outcomes, Kind::SCENE);
    const size_t count = std::min(thresholds.size(), MOST_POINTS);
    std::vector<CurvePoint> curve;
    for (size_t i = 0; i < count; ++i) {
        const size_t at = count == 1 ? 0 : i * (thresholds.size() - 1) / (count - 1);
        const double threshold = thresholds[at];
        curve.push_back({threshold, palms.shareFrom(threshold), poses.shareFrom(threshold),
                         scenes.shareFrom(threshold)});
    }
    return curve;
}

}  // namespace evaluate
