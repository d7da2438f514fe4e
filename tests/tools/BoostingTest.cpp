#include <gtest/gtest.h>

#include <cmath>

#include "Boosting.h"
#include "RandomWindows.h"

namespace {

using namespace training;

const KZ::Size SIZE(35, 33);
constexpr int PALMS = 60, OTHERS = 50, UNSEEN = 20;

/// The first class's windows get a mark that one RMCT feature sees; the unseen ones too.
std::vector<Window> markedWindows() {
    std::vector<Window> windows = randomWindows(PALMS + OTHERS + UNSEEN, SIZE, 4);
    for (int i = 0; i < static_cast<int>(windows.size()); ++i) {
        const bool marked = i < PALMS ? i % 10 != 0 : i >= PALMS + OTHERS;
        windows[i].rmct[1 * SIZE.width + 7] = marked ? 0xF0 : 0x0F;
    }
    return windows;
}

BoostingSettings allFeatures() {
    BoostingSettings settings;
    settings.triedRmct = settings.triedHaar = settings.triedHog = 1100;
    settings.smoothing = 2;
    return settings;
}

// The first round takes the mark. Every round's votes follow from the weights that the sum of the
// earlier votes gives: worked here in floating point, example by example.
TEST(Booster, LaterRoundsWeighByTheSumOfVotes) {
    const std::vector<Window> windows = markedWindows();
    const FeatureTable table(rmctFeatures(SIZE), pointers(windows), SIZE, 1);
    BoostingSettings settings = allFeatures();
    settings.shrinkage = 0.5;
    Booster booster(table, PALMS, OTHERS, settings, 1);
    Random random(1);
    for (int round = 0; round < 5; ++round) {
        const std::vector<int> before = booster.scores();
        const WeakClassifier& weak = booster.round(random);
        const cv::Point place(weak.feature.x, weak.feature.y);
        EXPECT_EQ(cv::Point(7, 1), round ? cv::Point(7, 1) : place) << "the mark first";
        const size_t cell = weak.feature.y * SIZE.width + weak.feature.x;
        double share[2][256] = {}, total[2] = {}, squares[2] = {};
        for (int i = 0; i < PALMS + OTHERS; ++i) {
            const int other = i >= PALMS;
            const double weight = std::exp((other ? 1 : -1) * before[i] / VOTE_SCALE);
            share[other][windows[i].rmct[cell]] += weight;
            total[other] += weight;
            squares[other] += weight * weight;
        }
        const double effective =
            total[0] * total[0] / squares[0] + total[1] * total[1] / squares[1];
        for (int code = 0; code < 256; ++code) {
            const double odds = (share[0][code] / total[0] + 2 / effective) /
                                (share[1][code] / total[1] + 2 / effective);
            EXPECT_NEAR(0.25 * std::log(odds) * VOTE_SCALE, weak.votes[code], 0.51)
                << "round " << round << " code " << code;
        }
        for (size_t i = 0; i < windows.size(); ++i) {
            EXPECT_EQ(before[i] + weak.votes[windows[i].rmct[cell]], booster.scores()[i]);
        }
    }
}

// Sharing among neighbours moves weight between bins and loses none: a feature that says nothing
// gets no votes, not even in the end bins.
TEST(Booster, SharingKeepsEqualClassesEqual) {
    std::vector<Window> windows = randomWindows(40, SIZE, 6);
    const std::vector<Window> twins = windows;
    windows.insert(windows.end(), twins.begin(), twins.end());
    const FeatureTable table(someFeatures(SIZE, 40, 3), pointers(windows), SIZE, 1);
    BoostingSettings settings = allFeatures();
    settings.shareCodes = true;
    Booster booster(table, 40, 40, settings, 1);
    Random random(1);
    for (int round = 0; round < 3; ++round) {
        for (const int8_t vote : booster.round(random).votes) EXPECT_EQ(0, vote);
    }
}

}  // namespace
