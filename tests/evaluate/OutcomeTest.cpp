#include "Outcome.h"

#include <gtest/gtest.h>

namespace {

using evaluate::FrameAnswer;
using evaluate::PhotoOutcome;
using evaluate::Stage;
using evaluate::Work;

const ShownPalm PALM{{100, 120}, 30};
const cv::Rect2d HERE(65, 85, 70, 70), THERE(200, 85, 70, 70);

/// A look: 0 nothing, 1 seen by the scan, 2 and 3 past the verifiers; with the last one's score.
FrameAnswer look(const cv::Rect2d& place, int passed, double score = 0) {
    FrameAnswer answer;
    answer.look.work = Work::SCAN;
    answer.look.place = place;
    for (int i = 0; i < 3; ++i) answer.look.stages[i] = {true, i < passed, .9};
    answer.look.stages[2].score = score;
    return answer;
}

FrameAnswer report(const cv::Rect2d& rect, double angle = 0) {
    FrameAnswer answer = look(rect, 3, .8);
    answer.reported = true;
    answer.rect = rect;
    answer.angle = angle;
    return answer;
}

const FrameAnswer IDLE;

TEST(Outcome, LiesOnThePalm) {
    const struct {
        const char* what;
        cv::Rect2d rect;
        bool expected;
    } rows[] = {{"on it", HERE, true},
                {"half a palm beside", {80, 85, 70, 70}, true},
                {"a little more", {80.1, 85, 70, 70}, false},
                {"half a palm off, aslant", {74, 97, 70, 70}, true},
                {"1.6 times the size", {44, 64, 112, 112}, true},
                {"larger", {43.9, 63.9, 112.2, 112.2}, false},
                {"smaller", {78.2, 98.2, 43.6, 43.6}, false}};
    for (const auto& row : rows)
        EXPECT_EQ(row.expected, evaluate::liesOn(PALM, row.rect)) << row.what;
}

// What becomes of a palm, by the answers to its frames.
TEST(Outcome, JudgesPalms) {
    const struct {
        const char* what;
        std::vector<FrameAnswer> answers;
        std::vector<ShownPalm> others;
        bool found;
        int first;
        int lost;  ///< stage, -1 for none
        bool other;
    } rows[] = {
        {"reported at once", {report(HERE)}, {}, true, 0, -1, false},
        {"later, first elsewhere", {report(THERE), IDLE, report(HERE)}, {}, true, 2, -1, false},
        {"never looked at", {IDLE, IDLE}, {}, false, -1, 0, false},
        {"seen elsewhere only", {look(THERE, 3), report(THERE)}, {}, false, 1, 0, false},
        {"another palm", {report(THERE)}, {{{235, 120}, 30}}, false, 0, -1, true},
        {"another one, not reported", {look(THERE, 3)}, {{{235, 120}, 30}}, false, -1, 0, false},
        {"not past the first", {look(HERE, 1), IDLE}, {}, false, -1, 1, false},
        {"deepest look counts", {look(HERE, 2), look(HERE, 1)}, {}, false, -1, 2, false},
        {"seen once", {look(HERE, 0), look(HERE, 3)}, {}, false, -1, 3, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        PhotoOutcome outcome;
        outcome.kind = training::Kind::PALM;
        judge(row.answers, PALM, row.others, outcome);
        EXPECT_EQ(row.found, outcome.found);
        EXPECT_EQ(row.first, outcome.firstFrame);
        EXPECT_EQ(row.other, outcome.otherReported);
        EXPECT_EQ(row.lost, outcome.lost ? static_cast<int>(*outcome.lost) : -1);
    }
}

TEST(Outcome, ErrorsOfTheReport) {
    PhotoOutcome outcome;
    outcome.kind = training::Kind::PALM;
    outcome.angle = -12;
    judge({report({71, 77, 70, 70}, -15)}, PALM, {}, outcome);
    EXPECT_DOUBLE_EQ(0.2, outcome.offset.x);
    EXPECT_NEAR(-8 / 30., outcome.offset.y, 1e-12);
    EXPECT_NEAR(1 / 3., outcome.locationError(), 1e-12);
    EXPECT_DOUBLE_EQ(3, outcome.angleError);
    PhotoOutcome scene;
    judge({IDLE, report(THERE)}, std::nullopt, {}, scene);
    EXPECT_TRUE(scene.reported);
    EXPECT_EQ(1, scene.firstFrame);
    EXPECT_FALSE(scene.lost.has_value());
}

// Two of three looks in a row have to reach a threshold; frames without a look do not count.
TEST(Outcome, ThresholdThatStillConfirms) {
    const auto at = [](double score) { return look(HERE, 2, score); };
    const struct {
        std::vector<FrameAnswer> answers;
        double expected;
    } rows[] = {{{}, 0},
                {{at(.9)}, 0},
                {{at(.9), IDLE, IDLE, at(.4)}, .4},
                {{at(.9), at(.1), at(.8)}, .8},
                {{at(.9), at(.1), at(.2), at(.8)}, .2},
                {{at(.3), at(.9), look(THERE, 3, .99), at(.7)}, .7},
                {{look(HERE, 0, .9), look(HERE, 0, .9)}, 0}};
    for (const auto& row : rows) {
        PhotoOutcome outcome;
        outcome.kind = training::Kind::PALM;
        judge(row.answers, PALM, {}, outcome);
        EXPECT_EQ(row.expected, outcome.lastScore);
    }
}

TEST(Sequence, TellsHitsFromAlarms) {
    const struct {
        const char* what;
        bool hasPalm;
        std::vector<int> frames;
        int alarms, latency;
    } rows[] = {{"silence", true, {}, 0, -1},
                {"on the first frame", true, {30}, 0, 0},
                {"too early, then in time", true, {29, 36}, 1, 6},
                {"as the palm goes down", true, {66}, 0, 36},
                {"after it went", true, {67}, 1, -1},
                {"no palm at all", false, {3, 30, 40}, 3, -1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        evaluate::SequenceOutcome outcome;
        outcome.hasPalm = row.hasPalm;
        outcome.framesPerSecond = 30;
        outcome.start = 1;
        outcome.end = 2;
        for (const int frame : row.frames) outcome.reports.push_back({frame, frame / 30., 1});
        EXPECT_EQ(row.alarms, outcome.alarms());
        EXPECT_EQ(row.latency, outcome.latency());
    }
}

}  // namespace
