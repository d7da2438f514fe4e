#include "Metrics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>

#include "AlarmRate.h"
#include "Curve.h"
#include "Outcomes.h"

namespace {

using evaluate::Figure;
using evaluate::PhotoOutcome;
using training::Kind;

/// Whether a bin's name covers a value: "20-25" and "-35..-25" by their numbers.
bool covers(const std::string& name, double value) {
    const size_t dots = name.find("..");
    const size_t split = dots != std::string::npos ? dots : name.find('-');
    const double low = std::stod(name.substr(0, split));
    const double high = std::stod(name.substr(split + (dots != std::string::npos ? 2 : 1)));
    return value >= low && value < high;
}

bool belongs(const Figure& figure, const PhotoOutcome& outcome) {
    if (figure.group == "source") return outcome.source == figure.bin;
    if (figure.group == "side") return outcome.side == figure.bin;
    if (figure.group == "palm width") return covers(figure.bin, outcome.palmWidth);
    if (figure.group == "angle") return covers(figure.bin, outcome.angle);
    if (figure.group == "brightness") {
        const double grey = outcome.brightness;
        return figure.bin[0] == 'd'   ? grey < 90
               : figure.bin[0] == 'b' ? grey >= 150
                                      : grey >= 90 && grey < 150;
    }
    return true;
}

// Every share of random outcomes against a count written down anew.
TEST(Metrics, SharesOfRandomOutcomes) {
    training::Random random(5);
    const std::vector<PhotoOutcome> outcomes = randomOutcomes(400, random);
    for (const bool withDoubtful : {true, false}) {
        int compared = 0;
        for (const Figure& figure : evaluate::figuresOf(outcomes, withDoubtful)) {
            if (figure.group == "palms found") continue;
            SCOPED_TRACE(figure.measure + " " + figure.group + " " + figure.bin);
            int some = 0, all = 0;
            std::map<std::string, std::pair<int, int>> bySource;
            for (const PhotoOutcome& outcome : outcomes) {
                const bool isPalm = outcome.kind == Kind::PALM;
                if (figure.measure != (isPalm                       ? "recall"
                                       : outcome.kind == Kind::HAND ? "alarms on other poses"
                                                                    : "alarms on scenes"))
                    continue;
                if (outcome.otherReported || !belongs(figure, outcome)) continue;
                if (outcome.doubtful && !withDoubtful) continue;
                const int counts = isPalm ? outcome.found : outcome.reported;
                ++all, some += counts;
                ++bySource[outcome.source].second, bySource[outcome.source].first += counts;
            }
            EXPECT_EQ(some, figure.some);
            EXPECT_EQ(all, figure.all);
            double expected = static_cast<double>(some) / all;
            if (figure.group == "macro") {
                expected = 0;
                for (const auto& [source, count] : bySource) {
                    expected += static_cast<double>(count.first) / count.second /
                                static_cast<double>(bySource.size());
                }
            }
            EXPECT_NEAR(expected, figure.interval.value, 1e-12);
            EXPECT_LE(figure.interval.low, figure.interval.value);
            EXPECT_GE(figure.interval.high, figure.interval.value);
            ++compared;
        }
        EXPECT_GT(compared, 35);
    }
}

// Nothing in n draws shows no spread; the bound is where nothing would still happen once in 40.
TEST(Metrics, BoundsWhatNoDrawCanShow) {
    std::vector<PhotoOutcome> outcomes;
    for (int i = 0; i < 30; ++i) outcomes.push_back(outcomeOf(Kind::SCENE, "a", i, false));
    for (int i = 0; i < 20; ++i) outcomes.push_back(outcomeOf(Kind::PALM, "b", i, true));
    for (const Figure& figure : evaluate::figuresOf(outcomes, true)) {
        if (figure.group != "all") continue;
        const bool isPalm = figure.measure == evaluate::RECALL;
        const double away = isPalm ? 1 - figure.interval.low : figure.interval.high;
        EXPECT_NEAR(0.025, std::pow(1 - away, isPalm ? 20 : 30), 1e-12);
    }
    evaluate::SequenceOutcome quiet;
    quiet.video = "a";
    quiet.seconds = 720;
    const evaluate::AlarmRate rate = evaluate::alarmsInVideos({quiet});
    EXPECT_EQ(0, rate.perHour.value);
    EXPECT_NEAR(0.025, std::exp(-rate.perHour.high * 0.2), 1e-12);
}

TEST(Metrics, AlarmsAnHour) {
    std::vector<evaluate::SequenceOutcome> videos(3);
    for (size_t i = 0; i < videos.size(); ++i) {
        videos[i].video = std::to_string(i);
        videos[i].seconds = 60;
        videos[i].reports.resize(i);
    }
    videos.push_back(videos[2]);
    videos.back().hasPalm = true;  // takes no part
    const evaluate::AlarmRate rate = evaluate::alarmsInVideos(videos);
    EXPECT_EQ(3, rate.alarms);
    EXPECT_DOUBLE_EQ(60, rate.perHour.value);
    EXPECT_DOUBLE_EQ(0, rate.perHour.low);  // the silent video three times
    EXPECT_DOUBLE_EQ(120, rate.perHour.high);
    const auto scene = outcomeOf(Kind::SCENE, "a", 1, true);  // nine frames of 30 a second
    EXPECT_DOUBLE_EQ(12000, evaluate::alarmsOnStills({scene}).perHour.value);
}

TEST(Curve, SharesAtEveryScore) {
    training::Random random(9);
    const std::vector<PhotoOutcome> outcomes = randomOutcomes(120, random);
    const std::vector<evaluate::CurvePoint> curve = evaluate::curveOf(outcomes);
    ASSERT_EQ(outcomes.size(), curve.size());
    double before = 0;
    for (const evaluate::CurvePoint& point : curve) {
        EXPECT_GT(point.threshold, before);
        before = point.threshold;
        double some[3] = {}, all[3] = {};
        for (const PhotoOutcome& outcome : outcomes) {
            if (outcome.otherReported) continue;
            const int kind = outcome.kind == Kind::PALM ? 0 : outcome.kind == Kind::HAND ? 1 : 2;
            ++all[kind], some[kind] += outcome.lastScore >= point.threshold;
        }
        EXPECT_DOUBLE_EQ(some[0] / all[0], point.recall);
        EXPECT_DOUBLE_EQ(some[1] / all[1], point.poseAlarms);
        EXPECT_DOUBLE_EQ(some[2] / all[2], point.sceneAlarms);
    }
}

}  // namespace
