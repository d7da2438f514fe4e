#include "Calibration.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "Quantile.h"
#include "Random.h"

namespace {

using namespace training;

TEST(Calibration, ThresholdKeepsTheShare) {
    struct Row {
        std::vector<float> margins;
        double share;
        int kept;
    };
    const Row rows[] = {{{3, 1, 2, 4}, 1, 4}, {{3, 1, 2, 4}, 0.75, 3}, {{3, 1, 2, 4}, 0.74, 3},
                        {{3, 1, 2, 4}, 0, 1}, {{2, 2, 2, 7}, 0.5, 4},  {{}, 0.5, 0}};
    for (const Row& row : rows) {
        const float threshold = thresholdKeeping(row.margins, row.share);
        EXPECT_EQ(row.kept, std::count_if(row.margins.begin(), row.margins.end(),
                                          [&](float margin) { return margin > threshold; }))
            << row.share;
    }
    EXPECT_NEAR(0.9, 1 / (1 + std::exp(-marginAt(0.9))), 1e-6);
}

ChainMargins margins(int count, double first, double second, Random& random) {
    const auto bell = [&] {
        return random.unit() + random.unit() + random.unit() + random.unit() - 2;
    };
    ChainMargins list;
    for (int i = 0; i < count; ++i) {
        list.first.push_back(static_cast<float>(first + bell()));
        list.second.push_back(static_cast<float>(second + bell()));
    }
    return list;
}

// The pair keeps what it has to, and lets the palms go where that stops most alarms: at the
// verifier that tells them apart.
TEST(Calibration, LosesPalmsWhereItPays) {
    Random random(8);
    for (const bool firstIsGood : {true, false}) {
        const double good = -1, useless = -0.2;
        const ChainMargins palms = margins(4000, 0, 0, random);
        const auto others = [&] {
            return margins(4000, firstIsGood ? good : useless, firstIsGood ? useless : good,
                           random);
        };
        const OperatingPoint point = chooseOperatingPoint(palms, others(), others(), 0.96);
        EXPECT_GE(point.keptByBoth, 0.96);
        EXPECT_LT(point.keptByBoth, 0.9605);
        const double lostByFirst = 1 - point.keptByFirst;
        EXPECT_NEAR(firstIsGood ? 0.03 : 0.002, lostByFirst, 0.006);
        EXPECT_GT(point.alarms, 0);
        EXPECT_LT(point.alarms, 0.6);
    }
}

}  // namespace
