#include "Compare.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

#include "AlarmRate.h"
#include "Failure.h"
#include "ReportJson.h"

namespace evaluate {

using training::Kind;

namespace {

constexpr size_t MOST_NAMES = 12;

/// The exhibits of two runs in the same order.
struct Pairs {
    std::vector<PhotoOutcome> before, after;
};

Pairs pairsOf(const Evaluation& before, const Evaluation& after) {
    std::map<std::string, const PhotoOutcome*> known;
    for (const PhotoOutcome& outcome : before.photographs) known[outcome.key()] = &outcome;
    Pairs pairs;
    for (const PhotoOutcome& outcome : after.photographs) {
        const auto found = known.find(outcome.key());
        if (found == known.end()) continue;
        pairs.before.push_back(*found->second);
        pairs.after.push_back(outcome);
    }
    return pairs;
}

template <typename Keep>
Pairs pairsWhere(const Pairs& all, const Keep& keep) {
    Pairs some;
    for (size_t i = 0; i < all.before.size(); ++i) {
        if (!keep(all.before[i], all.after[i])) continue;
        some.before.push_back(all.before[i]);
        some.after.push_back(all.after[i]);
    }
    return some;
}

Difference differenceOf(const Bootstrap& bootstrap, const Statistic& before,
                        const Statistic& after) {
    Difference difference;
    difference.before = before(bootstrap.all());
    difference.after = after(bootstrap.all());
    difference.change = bootstrap.of([&](const Draw& draw) { return after(draw) - before(draw); });
    return difference;
}

void addShares(const Pairs& pairs, Kind kind, std::vector<Difference>& differences) {
    const Bootstrap bootstrap(originsOf(pairs.after));
    using Share = double (*)(const Draw&, const Tally&);
    const auto add = [&](const Bin& bin, const std::string& group, Share figure) {
        Tally before = tallyOf(pairs.before, bin), after = tallyOf(pairs.after, bin);
        int all = 0;
        for (size_t i = 0; i < after.size(); ++i) {
            if (before[i] < 0 || after[i] < 0) before[i] = after[i] = -1;
            all += after[i] >= 0;
        }
        if (all == 0) return;
        Difference difference = differenceOf(
            bootstrap, [&](const Draw& draw) { return figure(draw, before); },
            [&](const Draw& draw) { return figure(draw, after); });
        difference.measure = measureOf(kind);
        difference.group = group;
        difference.bin = bin.name;
        difference.all = all;
        difference.moreIsBetter = kind == Kind::PALM;
        differences.push_back(difference);
    };
    for (const Bin& bin : binsOf(pairs.after)) {
        add(bin, bin.group, share);
        if (bin.group == "all") add(bin, "macro", macroShare);
    }
}

void addMeans(const Pairs& all, std::vector<Difference>& differences) {
    const Pairs found = pairsWhere(all, [](const PhotoOutcome& before, const PhotoOutcome& after) {
        return before.found && after.found;
    });
    if (found.after.empty()) return;
    const Bootstrap bootstrap(originsOf(found.after));
    const struct {
        const char* measure;
        double (*value)(const PhotoOutcome&);
    } measures[] = {
        {"location error (palm widths)", [](const PhotoOutcome& o) { return o.locationError(); }},
        {"angle error (degrees)", [](const PhotoOutcome& o) { return o.angleError; }},
        {"first report (frame)",
         [](const PhotoOutcome& o) { return static_cast<double>(o.firstFrame); }}};
    for (const auto& entry : measures) {
        const auto meanOf = [value = entry.value](const std::vector<PhotoOutcome>& outcomes) {
            return [value, &outcomes](const Draw& draw) {
                double sum = 0;
                size_t count = 0;
                for (const std::vector<int>& list : draw) {
                    for (const int i : list) sum += value(outcomes[i]);
                    count += list.size();
                }
                return sum / static_cast<double>(count);
            };
        };
        Difference difference = differenceOf(bootstrap, meanOf(found.before), meanOf(found.after));
        difference.measure = entry.measure;
        difference.group = "mean of palms found by both";
        difference.all = static_cast<int>(found.after.size());
        differences.push_back(difference);
    }
}

std::string medianTime(const FrameTimes& times) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f ms", times.median);
    return text;
}

std::vector<Comparison::Count> countsOf(const Evaluation& before, const Evaluation& after) {
    std::vector<Comparison::Count> counts;
    const std::vector<int> lostBefore = lossesByStage(before.photographs);
    const std::vector<int> lostAfter = lossesByStage(after.photographs);
    for (size_t i = 0; i < lostAfter.size(); ++i) {
        counts.push_back({std::string("lost by the ") + nameOf(static_cast<Stage>(i)),
                          std::to_string(lostBefore[i]), std::to_string(lostAfter[i])});
    }
    const struct {
        const char* what;
        std::string (*text)(const Evaluation&);
    } rows[] = {
        {"videos with a palm, found",
         [](const Evaluation& e) { return RaisedPalms(e.sequences).text(); }},
        {"alarms in videos without a palm",
         [](const Evaluation& e) { return alarmsInVideos(e.sequences).text(); }},
        {"processor time, full scan", [](const Evaluation& e) { return medianTime(e.scanning); }},
        {"processor time, tracking", [](const Evaluation& e) { return medianTime(e.tracking); }}};
    for (const auto& row : rows) {
        counts.push_back({row.what, row.text(before), row.text(after)});
    }
    return counts;
}

void sortChanges(const Pairs& pairs, Comparison& comparison) {
    for (size_t i = 0; i < pairs.after.size(); ++i) {
        const PhotoOutcome &before = pairs.before[i], &after = pairs.after[i];
        if (before.otherReported || after.otherReported) continue;
        if (counts(before) == counts(after)) continue;
        const bool now = counts(after);
        (after.isPalm() ? (now ? comparison.palmsGained : comparison.palmsLost)
                        : (now ? comparison.alarmsNew : comparison.alarmsGone))
            .push_back(after);
    }
}

std::string lineOf(const Difference& difference) {
    const std::string label =
        difference.bin.empty() ? difference.group : difference.group + " " + difference.bin;
    char text[256];
    std::snprintf(text, sizeof text, "  %-30s %-34s %.4f -> %.4f   %+.4f [%+.4f, %+.4f]  of %d\n",
                  difference.measure.c_str(), label.c_str(), difference.before, difference.after,
                  difference.change.value, difference.change.low, difference.change.high,
                  difference.all);
    return text;
}

template <typename Keep>
std::string linesWhere(const char* title, const std::vector<Difference>& differences,
                       const Keep& keep) {
    std::string text;
    for (const Difference& difference : differences) {
        if (keep(difference)) text += lineOf(difference);
    }
    return text.empty() ? text : title + ("\n" + text);
}

std::string namesOf(const char* title, const std::vector<PhotoOutcome>& outcomes) {
    std::string text = std::string(title) + ": " + std::to_string(outcomes.size()) + "\n";
    for (size_t i = 0; i < std::min(outcomes.size(), MOST_NAMES); ++i) {
        text += "  " + outcomes[i].image;
        if (outcomes[i].lost) text += std::string("  lost by the ") + nameOf(*outcomes[i].lost);
        text += "\n";
    }
    if (outcomes.size() > MOST_NAMES) text += "  ...\n";
    return text;
}

}  // namespace

Comparison compare(const Evaluation& before, const Evaluation& after) {
    const Pairs pairs = pairsOf(before, after);
    if (pairs.after.empty()) throw training::Failure("the reports have no photograph in common");
    Comparison comparison;
    comparison.pairs = static_cast<int>(pairs.after.size());
    comparison.onlyBefore = static_cast<int>(before.photographs.size()) - comparison.pairs;
    comparison.onlyAfter = static_cast<int>(after.photographs.size()) - comparison.pairs;
    for (const Kind kind : {Kind::PALM, Kind::HAND, Kind::SCENE}) {
        const Pairs some = pairsWhere(
            pairs, [&](const PhotoOutcome&, const PhotoOutcome& o) { return o.kind == kind; });
        if (!some.after.empty()) addShares(some, kind, comparison.differences);
    }
    addMeans(pairs, comparison.differences);
    sortChanges(pairs, comparison);
    comparison.counts = countsOf(before, after);
    return comparison;
}

std::string textOf(const Comparison& comparison) {
    const std::vector<Difference>& all = comparison.differences;
    std::string text = std::to_string(comparison.pairs) + " exhibits in both reports, " +
                       std::to_string(comparison.onlyBefore) + " in the old one only, " +
                       std::to_string(comparison.onlyAfter) + " in the new one only\n";
    const std::string better =
        linesWhere("better", all, [](const Difference& d) { return d.isBetter(); });
    const std::string worse =
        linesWhere("worse", all, [](const Difference& d) { return d.tells() && !d.isBetter(); });
    text += better + worse;
    if (better.empty() && worse.empty()) text += "no difference that the data can tell\n";
    text += linesWhere("no difference that the data can tell in", all, [&](const Difference& d) {
        const bool isHeadline = d.group != "source" && d.bin.empty();
        return isHeadline && !d.tells();
    });
    for (const Comparison::Count& count : comparison.counts) {
        text += count.what + ": " + count.before + " -> " + count.after + "\n";
    }
    text += namesOf("palms found only by the new run", comparison.palmsGained);
    text += namesOf("palms found only by the old run", comparison.palmsLost);
    text += namesOf("alarms of the old run only", comparison.alarmsGone);
    text += namesOf("alarms of the new run only", comparison.alarmsNew);
    return text;
}

}  // namespace evaluate
