#include "Calibration.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Quantile.h"

namespace training {

namespace {

double sharePassing(const ChainMargins& margins, const OperatingPoint& point) {
    size_t passing = 0;
    for (size_t i = 0; i < margins.first.size(); ++i) {
        if (margins.first[i] > point.first && margins.second[i] > point.second) ++passing;
    }
    return margins.first.empty() ? 0 : static_cast<double>(passing) / margins.first.size();
}

/// Of the second verifier's margins those of patches that the first lets pass.
std::vector<float> secondPassing(const ChainMargins& margins, float first) {
    std::vector<float> second;
    for (size_t i = 0; i < margins.first.size(); ++i) {
        if (margins.first[i] > first) second.push_back(margins.second[i]);
    }
    return second;
}

}  // namespace

float thresholdKeeping(std::vector<float> margins, double share) {
    if (margins.empty()) return 0;
    const double wanted = std::ceil(share * static_cast<double>(margins.size()) - 1e-9);
    const size_t keep = std::clamp<size_t>(static_cast<size_t>(wanted), 1, margins.size());
    const auto lowestKept = margins.end() - static_cast<std::ptrdiff_t>(keep);
    std::nth_element(margins.begin(), lowestKept, margins.end());
    return std::nextafter(*lowestKept, -INFINITY);
}

std::string OperatingPoint::text() const {
    char text[160];
    std::snprintf(text, sizeof text,
                  "the first verifier keeps %.4f of the palms, both keep %.4f; %.4f of what the "
                  "scan reports elsewhere passes both",
                  keptByFirst, keptByBoth, alarms);
    return text;
}

OperatingPoint chooseOperatingPoint(const ChainMargins& palms, const ChainMargins& scenes,
                                    const ChainMargins& hands, double kept) {
    constexpr int STEPS = 28;
    OperatingPoint best;
    best.alarms = 2;
    for (int i = 0; i <= STEPS; ++i) {
        const double lost = (1 - kept) * (0.05 + 0.7 * i / STEPS);
        OperatingPoint point;
        point.first = thresholdKeeping(palms.first, 1 - lost);
        const std::vector<float> rest = secondPassing(palms, point.first);
        const double all = static_cast<double>(palms.first.size());
        point.keptByFirst = static_cast<double>(rest.size()) / all;
        point.second = thresholdKeeping(rest, kept / point.keptByFirst);
        point.keptByBoth = sharePassing(palms, point);
        point.alarms = (sharePassing(scenes, point) + sharePassing(hands, point)) / 2;
        if (point.alarms < best.alarms) best = point;
    }
    return best;
}

float marginAt(double score) {
    return static_cast<float>(std::log(score / (1 - score)));
}

}  // namespace training
