#include "Metrics.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

namespace evaluate {

using training::Kind;

namespace {

constexpr double NONE = std::numeric_limits<double>::quiet_NaN();

/// A bin holds what is at least its lower and below its upper bound.
struct Range {
    const char* name;
    double low, high;
};

const Range SIZES[] = {
    {"20-25", 20, 25}, {"25-30", 25, 30}, {"30-40", 30, 40}, {"40-50", 40, 50}, {"50-60", 50, 61}};
const Range ANGLES[] = {{"-35..-25", -36, -25}, {"-25..-15", -25, -15}, {"-15..-5", -15, -5},
                        {"-5..5", -5, 5},       {"5..15", 5, 15},       {"15..25", 15, 25},
                        {"25..35", 25, 36}};
const Range BRIGHTNESS[] = {
    {"dark (below 90)", -1, 90}, {"middle (90 to 150)", 90, 150}, {"bright (above 150)", 150, 256}};

struct Count {
    int some = 0, all = 0;

    void add(const std::vector<int>& examples, const Tally& tally) {
        for (const int i : examples) {
            all += tally[i] >= 0;
            some += tally[i] > 0;
        }
    }
    double share() const { return all > 0 ? static_cast<double>(some) / all : NONE; }
};

template <typename Member>
Bin binWhere(const std::vector<PhotoOutcome>& outcomes, const std::string& group,
             const std::string& name, const Member& isMember) {
    Bin bin{group, name, {}};
    for (const PhotoOutcome& outcome : outcomes) bin.members.push_back(isMember(outcome));
    return bin;
}

template <size_t N>
void addRanges(const std::vector<PhotoOutcome>& outcomes, const std::string& group,
               const Range (&ranges)[N], double PhotoOutcome::*value, std::vector<Bin>& bins) {
    for (const Range& range : ranges) {
        bins.push_back(binWhere(outcomes, group, range.name, [&](const PhotoOutcome& outcome) {
            return outcome.*value >= range.low && outcome.*value < range.high;
        }));
    }
}

}  // namespace

Tally tallyOf(const std::vector<PhotoOutcome>& outcomes, const Bin& bin) {
    Tally tally;
    for (size_t i = 0; i < outcomes.size(); ++i) {
        const bool takesPart = bin.members[i] && !outcomes[i].otherReported;
        tally.push_back(takesPart ? (counts(outcomes[i]) ? 1 : 0) : -1);
    }
    return tally;
}

namespace {

/// What draws cannot show: that a share of 0 of n may be chance.
void widenWithoutSpread(const Figure& figure, Interval& interval) {
    if (figure.all == 0 || interval.low != interval.high) return;
    const double bound = 1 - std::pow(0.025, 1.0 / figure.all);
    if (figure.some == 0) interval.high = bound;
    if (figure.some == figure.all) interval.low = 1 - bound;
}

Figure shareFigure(const Bootstrap& bootstrap, const std::string& measure, const Bin& bin,
                   const Tally& tally) {
    Figure figure{measure, bin.group, bin.name, 0, 0, {}};
    for (const signed char state : tally) {
        figure.all += state >= 0;
        figure.some += state > 0;
    }
    figure.interval = bootstrap.of([&](const Draw& draw) { return share(draw, tally); });
    widenWithoutSpread(figure, figure.interval);
    return figure;
}

void addShares(const std::vector<PhotoOutcome>& outcomes, Kind kind, std::vector<Figure>& figures) {
    const Bootstrap bootstrap(originsOf(outcomes));
    for (const Bin& bin : binsOf(outcomes)) {
        const Tally tally = tallyOf(outcomes, bin);
        figures.push_back(shareFigure(bootstrap, measureOf(kind), bin, tally));
        if (bin.group != "all") continue;
        Figure macro = figures.back();
        macro.group = "macro";
        macro.interval = bootstrap.of([&](const Draw& draw) { return macroShare(draw, tally); });
        widenWithoutSpread(macro, macro.interval);
        figures.push_back(macro);
    }
}

void addQuantiles(const std::vector<PhotoOutcome>& palms, std::vector<Figure>& figures) {
    std::vector<PhotoOutcome> found;
    std::copy_if(palms.begin(), palms.end(), std::back_inserter(found),
                 [](const PhotoOutcome& outcome) { return outcome.found; });
    if (found.empty()) return;
    const Bootstrap bootstrap(originsOf(found));
    const struct {
        const char* measure;
        double (*value)(const PhotoOutcome&);
    } measures[] = {
        {"location error (palm widths)", [](const PhotoOutcome& o) { return o.locationError(); }},
        {"angle error (degrees)", [](const PhotoOutcome& o) { return o.angleError; }},
        {"first report (frame)",
         [](const PhotoOutcome& o) { return static_cast<double>(o.firstFrame); }}};
    for (const auto& [measure, value] : measures) {
        for (const auto& [bin, q] : {std::pair("median", 0.5), std::pair("90th percentile", 0.9)}) {
            Figure figure{measure, "palms found", bin, 0, static_cast<int>(found.size()), {}};
            figure.interval = bootstrap.of([&, at = q, read = value](const Draw& draw) {
                std::vector<double> values;
                for (const auto& list : draw) {
                    for (const int i : list) values.push_back(read(found[i]));
                }
                return quantile(std::move(values), at);
            });
            figures.push_back(figure);
        }
    }
}

}  // namespace

double share(const Draw& draw, const Tally& tally) {
    Count count;
    for (const std::vector<int>& list : draw) count.add(list, tally);
    return count.share();
}

double macroShare(const Draw& draw, const Tally& tally) {
    double sum = 0;
    int sources = 0;
    for (const std::vector<int>& list : draw) {
        Count count;
        count.add(list, tally);
        if (count.all == 0) continue;
        sum += count.share();
        ++sources;
    }
    return sources > 0 ? sum / sources : NONE;
}

std::vector<Bin> binsOf(const std::vector<PhotoOutcome>& outcomes) {
    std::vector<Bin> bins = {binWhere(outcomes, "all", "", [](const auto&) { return true; })};
    std::map<std::string, int> sources;
    for (const PhotoOutcome& outcome : outcomes) ++sources[outcome.source];
    for (const auto& [source, count] : sources) {
        bins.push_back(binWhere(outcomes, "source", source,
                                [&, name = source](const auto& o) { return o.source == name; }));
    }
    if (outcomes.empty() || !outcomes[0].isPalm()) return bins;
    addRanges(outcomes, "palm width", SIZES, &PhotoOutcome::palmWidth, bins);
    addRanges(outcomes, "angle", ANGLES, &PhotoOutcome::angle, bins);
    for (const char* side : {"LEFT", "RIGHT"}) {
        bins.push_back(
            binWhere(outcomes, "side", side, [&](const auto& o) { return o.side == side; }));
    }
    addRanges(outcomes, "brightness", BRIGHTNESS, &PhotoOutcome::brightness, bins);
    return bins;
}

std::vector<PhotoOutcome> ofKind(const std::vector<PhotoOutcome>& outcomes, Kind kind,
                                 bool withDoubtful) {
    std::vector<PhotoOutcome> kept;
    std::copy_if(outcomes.begin(), outcomes.end(), std::back_inserter(kept),
                 [&](const PhotoOutcome& outcome) {
                     return outcome.kind == kind && (withDoubtful || !outcome.doubtful);
                 });
    return kept;
}

std::vector<Origin> originsOf(const std::vector<PhotoOutcome>& outcomes) {
    std::vector<Origin> origins;
    for (const PhotoOutcome& outcome : outcomes) origins.push_back({outcome.source, outcome.image});
    return origins;
}

const char* measureOf(Kind kind) {
    return kind == Kind::PALM ? RECALL : kind == Kind::HAND ? POSE_ALARMS : SCENE_ALARMS;
}

bool counts(const PhotoOutcome& outcome) {
    return outcome.isPalm() ? outcome.found : outcome.reported;
}

std::vector<Figure> figuresOf(const std::vector<PhotoOutcome>& outcomes, bool withDoubtful) {
    std::vector<Figure> figures;
    for (const Kind kind : {Kind::PALM, Kind::HAND, Kind::SCENE}) {
        const std::vector<PhotoOutcome> some = ofKind(outcomes, kind, withDoubtful);
        if (!some.empty()) addShares(some, kind, figures);
        if (kind == Kind::PALM) addQuantiles(some, figures);
    }
    return figures;
}

FrameTimes timesOf(const std::vector<double>& milliseconds) {
    return {static_cast<int>(milliseconds.size()), quantile(milliseconds, 0.5),
            quantile(milliseconds, 0.99)};
}

}  // namespace evaluate
