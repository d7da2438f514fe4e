#include "Compare.h"

#include <gtest/gtest.h>

#include "Bounds.h"
#include "Evaluation.h"
#include "Failure.h"
#include "Outcomes.h"

namespace {

using evaluate::Comparison;
using evaluate::Difference;
using evaluate::Evaluation;
using training::Kind;

/// 60 palms and 60 scenes of 6 sources each; a share of each source counts.
Evaluation runOf(double found, double alarms) {
    Evaluation run;
    for (int source = 0; source < 6; ++source) {
        for (int i = 0; i < 10; ++i) {
            const std::string person = "person" + std::to_string(source);
            run.photographs.push_back(outcomeOf(Kind::PALM, person, i, i < found * 10));
            run.photographs.push_back(outcomeOf(Kind::SCENE, person, i, i < alarms * 10));
        }
    }
    return run;
}

const Difference& overall(const Comparison& comparison, const std::string& measure) {
    for (const Difference& difference : comparison.differences) {
        if (difference.measure == measure && difference.group == "all") return difference;
    }
    throw std::runtime_error("no " + measure);
}

TEST(Compare, TellsBetterFromWorse) {
    const struct {
        const char* what;
        double found, alarms;  ///< of the new run; of the old one .5 and .5
        int recall, scenes;    ///< 1 better, -1 worse, 0 cannot tell
    } rows[] = {{"the same", .5, .5, 0, 0},
                {"more palms, more alarms", .8, .9, 1, -1},
                {"fewer of both", .2, .2, -1, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const Comparison comparison =
            evaluate::compare(runOf(.5, .5), runOf(row.found, row.alarms));
        EXPECT_EQ(120, comparison.pairs);
        const auto verdict = [](const Difference& d) { return d.isBetter() ? 1 : -d.tells(); };
        const Difference& recall = overall(comparison, evaluate::RECALL);
        EXPECT_EQ(row.recall, verdict(recall));
        EXPECT_NEAR(row.found - .5, recall.change.value, 1e-9);
        EXPECT_EQ(row.scenes, verdict(overall(comparison, evaluate::SCENE_ALARMS)));
        const std::string text = textOf(comparison);
        EXPECT_EQ(row.recall == 0 && row.scenes == 0,
                  text.find("no difference that the data can tell\n") != std::string::npos);
        EXPECT_EQ(row.found > .5 ? 18u : 0u, comparison.palmsGained.size());
        EXPECT_EQ(row.found < .5 ? 18u : 0u, comparison.palmsLost.size());
        EXPECT_EQ(row.alarms > .5 ? 24u : 0u, comparison.alarmsNew.size());
    }
}

// One person who is found now and was not says little about the next person, however many pictures
// there are of her; the same number of pictures spread over all people says much.
TEST(Compare, PairsByPersonNotByPicture) {
    Evaluation before = runOf(.5, 0), one = before, spread = before;
    for (size_t i = 0; i < before.photographs.size(); ++i) {
        const auto& outcome = before.photographs[i];
        if (!outcome.isPalm() || outcome.found) continue;
        const auto now = outcomeOf(Kind::PALM, outcome.source, 0, true);
        const auto find = [&](Evaluation& run) {
            const std::string image = run.photographs[i].image;
            run.photographs[i] = now;
            run.photographs[i].image = image;
        };
        if (outcome.source == "person2") find(one);
        if (outcome.image.find("/7") != std::string::npos) find(spread);
    }
    EXPECT_FALSE(overall(evaluate::compare(before, one), evaluate::RECALL).tells());
    EXPECT_TRUE(overall(evaluate::compare(before, spread), evaluate::RECALL).isBetter());
}

TEST(Compare, ToldWithoutAnInterval) {
    Evaluation before = runOf(.5, .5), after = runOf(.8, .5);
    evaluate::SequenceOutcome raised, still;
    raised.hasPalm = true;
    raised.end = still.seconds = 60;
    before.sequences = after.sequences = {raised, still};
    after.sequences[0].reports = {{30, 1, .75}};
    before.scanning = {9, 8.5, 9};
    after.scanning = {9, 7.25, 9};
    const std::string text = textOf(evaluate::compare(before, after));
    for (const char* line :
         {"lost by the scan: 30 -> 12\n", "videos with a palm, found: 0 of 1 -> 1 of 1\n",
          "alarms in videos without a palm: 0 in 1.0 minutes -> 0 in 1.0 minutes\n",
          "processor time, full scan: 8.50 ms -> 7.25 ms\n"})
        EXPECT_NE(std::string::npos, text.find(line)) << line << text;
}

TEST(Compare, LeavesOutWhatOneRunLacks) {
    Evaluation before = runOf(.5, .5), after = runOf(.5, .5);
    after.photographs.resize(100);
    before.photographs.erase(before.photographs.begin(), before.photographs.begin() + 10);
    after.photographs[20].otherReported = true;
    after.photographs[20].found = false;
    const Comparison comparison = evaluate::compare(before, after);
    EXPECT_EQ(90, comparison.pairs);
    EXPECT_EQ(20, comparison.onlyBefore);
    EXPECT_EQ(10, comparison.onlyAfter);
    EXPECT_EQ(44, overall(comparison, evaluate::RECALL).all);
    EXPECT_EQ(0, overall(comparison, evaluate::RECALL).change.value);
    EXPECT_TRUE(comparison.palmsLost.empty());
    EXPECT_THROW(evaluate::compare(before, {}), training::Failure);
}

TEST(Bounds, ReportsEachShareBeyondItsBound) {
    evaluate::Bounds bounds;
    bounds.recorded = {.9, .1, .05};
    for (int i = 0; i < 150; ++i) {  // one palm is .01, one hand .02, one scene .03
        bounds.exhibits.push_back("palm a.png#" + std::to_string(i));
        if (i % 2) bounds.exhibits.push_back("hand b.png#" + std::to_string(i));
        if (i % 3 == 0) bounds.exhibits.push_back("scene palm.png#" + std::to_string(i));
    }
    const struct {
        evaluate::Reached reached;
        std::vector<std::string> expected;  ///< how the lines begin
    } rows[] = {{{.9, .1, .05}, {}},
                {{.891, .119, .079}, {}},
                {{1, 0, 0}, {}},
                {{.889, .1, .05}, {"recall is 0.8890, below 0.8900"}},
                {{.9, .121, .05}, {"alarms on other poses is 0.1210, above 0.1200"}},
                {{.9, .1, .081}, {"alarms on scenes is 0.0810, above 0.0800"}},
                {{.5, .2, .09}, {"recall", "alarms on other poses", "alarms on scenes"}}};
    for (const auto& row : rows) {
        const std::vector<std::string> lines = bounds.violations(row.reached);
        ASSERT_EQ(row.expected.size(), lines.size());
        for (size_t i = 0; i < lines.size(); ++i) EXPECT_EQ(0u, lines[i].find(row.expected[i]));
    }
    const evaluate::Reached reached = evaluate::reachedBy(runOf(.7, .2).photographs);
    EXPECT_DOUBLE_EQ(.7, reached.recall);
    EXPECT_DOUBLE_EQ(.2, reached.sceneAlarms);
    EXPECT_EQ(0, reached.poseAlarms);
}

}  // namespace
