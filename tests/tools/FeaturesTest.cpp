#include <gtest/gtest.h>

#include <set>

#include "RandomWindows.h"
#include "WindowScorer.h"

namespace {

using namespace training;

const KZ::Size SIZE(36, 35);

// What boosting reads of a window is what the library's cascade reads of it: the same sums on every
// layer, for all three kinds.
TEST(Features, BytesAreTheLibrarysIndices) {
    constexpr int EACH = 60;
    const std::vector<Window> windows = randomWindows(70, SIZE, 11);
    RingContent ring = randomRing(SIZE, 1, EACH, 5);
    StageContent& stage = ring.cascades[0].stages[0];
    stage.threshold = -1000000;
    std::vector<Feature> features;
    for (const WeakClassifier& weak : stage.weak) features.push_back(weak.feature);
    const FeatureTable table(features, pointers(windows), SIZE, 2);
    WindowScorer scorer(ring, 0);
    std::set<float> zooms;
    for (int w = 0; w < table.windowCount(); ++w) {
        int sum = 0, score = 0;
        for (int f = 0; f < table.featureCount(); ++f) sum += stage.weak[f].votes[table.row(f)[w]];
        ASSERT_TRUE(scorer.passes(windows[w], score));
        EXPECT_EQ(sum, score) << "window " << w << " at zoom " << windows[w].zoom;
        zooms.insert(windows[w].zoom);
    }
    EXPECT_GT(zooms.size(), 6u);
}

}  // namespace
