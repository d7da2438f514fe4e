#include "CascadeReport.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <functional>
#include <map>

namespace {

struct Tally {
    int palms = 0, found = 0;
    double recall() const { return static_cast<double>(found) / palms; }
};

using Tallies = std::map<std::string, Tally>;

Tallies tally(const std::vector<PalmOutcome>& palms,
              const std::function<std::string(const PalmOutcome&)>& key) {
    Tallies tallies;
    for (const PalmOutcome& palm : palms) {
        Tally& bin = tallies[key(palm)];
        ++bin.palms;
        bin.found += palm.found;
    }
    return tallies;
}

std::string binOf(double value, std::initializer_list<int> edges, const char* unit) {
    const int* upper =
        std::find_if(edges.begin(), edges.end() - 1, [&](int edge) { return value < edge; });
    if (upper == edges.begin()) ++upper;
    return std::to_string(upper[-1]) + " to " + std::to_string(*upper) + unit;
}

Tallies bySource(const Measurement& m) {
    return tally(m.palms, [](const PalmOutcome& palm) { return palm.source; });
}

Tallies bySize(const Measurement& m) {
    return tally(m.palms, [](const PalmOutcome& palm) {
        return binOf(palm.width, {20, 25, 30, 40, 50, 60}, " px");
    });
}

Tallies byAngle(const Measurement& m) {
    return tally(m.palms, [](const PalmOutcome& palm) {
        return binOf(std::fabs(palm.angle), {0, 5, 10, 15, 20, 25, 30, 35}, " deg");
    });
}

nlohmann::ordered_json asJson(const Tallies& tallies) {
    nlohmann::ordered_json json;
    for (const auto& [name, bin] : tallies) {
        json[name] = {{"palms", bin.palms}, {"found", bin.found}, {"recall", bin.recall()}};
    }
    return json;
}

/// Mean and standard deviation over the palms that were found.
std::pair<double, double> spread(const Measurement& m, double PalmOutcome::*value) {
    double sum = 0, squares = 0;
    int count = 0;
    for (const PalmOutcome& palm : m.palms) {
        if (!palm.found) continue;
        ++count;
        sum += palm.*value;
        squares += palm.*value * (palm.*value);
    }
    if (count == 0) return {0, 0};
    const double mean = sum / count;
    return {mean, std::sqrt(std::max(squares / count - mean * mean, 0.0))};
}

struct Lines {
    std::string text;

    __attribute__((format(printf, 2, 3))) void add(const char* format, ...) {
        char line[256];
        va_list values;
        va_start(values, format);
        std::vsnprintf(line, sizeof line, format, values);
        va_end(values);
        text += line;
        text += '\n';
    }
    void add(const Tallies& tallies) {
        for (const auto& [name, bin] : tallies) {
            add("  %-22s %4d of %4d  %.3f", name.c_str(), bin.found, bin.palms, bin.recall());
        }
    }
};

}  // namespace

nlohmann::ordered_json CascadeReport::json() const {
    nlohmann::ordered_json json;
    json["ring"] = ring;
    json["palms"] = {
        {"count", measurement.palms.size()},        {"recall", measurement.recall()},
        {"strongest_group", measurement.leading()}, {"by_source", asJson(bySource(measurement))},
        {"by_size", asJson(bySize(measurement))},   {"by_angle", asJson(byAngle(measurement))}};
    for (const PalmOutcome& palm : measurement.palms) {
        const bool outweighed = palm.found && palm.alone && !palm.leads;
        if (palm.found && !outweighed) continue;
        json["palms"][outweighed ? "outweighed" : "missed"].push_back(
            {{"image", palm.image}, {"width", palm.width}, {"angle", palm.angle}});
    }
    json["scenes"] = {{"count", measurement.sceneGroups.size()},
                      {"groups_per_scene", measurement.groupsPerScene()}};
    for (size_t i = 0; i < measurement.sceneGroups.size(); ++i) {
        if (measurement.sceneGroups[i] > 0) {
            json["scenes"]["alarms"][measurement.sceneImages[i]] = measurement.sceneGroups[i];
        }
    }
    for (const OperatingPoint& point : points) {
        json["thresholds"].push_back({{"shift", point.shift},
                                      {"recall", point.recall},
                                      {"strongest_group", point.leading},
                                      {"groups_per_scene", point.groupsPerScene}});
    }
    json["windows_per_scene"] = rates.windows;
    json["stage_passing"] = rates.passing;
    json["milliseconds_per_frame"] = milliseconds;
    return json;
}

std::string CascadeReport::text() const {
    Lines out;
    const Measurement& m = measurement;
    out.add("%s", ring.c_str());
    out.add("palms found   %.4f of %zu", m.recall(), m.palms.size());
    out.add("and strongest %.4f: no false group outweighs them", m.leading());
    out.add("false groups  %.3f a scene, %zu scenes", m.groupsPerScene(), m.sceneGroups.size());
    out.add("time          %.1f ms a frame of 320x240, one thread", milliseconds);
    const auto [dx, sx] = spread(m, &PalmOutcome::dx);
    const auto [dy, sy] = spread(m, &PalmOutcome::dy);
    const auto [scale, ss] = spread(m, &PalmOutcome::scale);
    out.add("placed at     %.2f +- %.2f, %.2f +- %.2f palm widths, scale %.3f +- %.3f", dx, sx, dy,
            sy, scale, ss);
    out.add("\nby source");
    out.add(bySource(m));
    out.add("by palm width");
    out.add(bySize(m));
    out.add("by tilt");
    out.add(byAngle(m));
    out.add("last thresholds moved by: found, found and strongest, false groups a scene");
    for (const OperatingPoint& point : points) {
        out.add("  %+5d  %.4f  %.4f  %.3f", point.shift, point.recall, point.leading,
                point.groupsPerScene);
    }
    out.add("windows passing, of %.0f a scene", rates.windows);
    double before = 1;
    for (size_t i = 0; i < rates.passing.size(); ++i) {
        out.add("  stage %zu  %.4f of those before, %.3g of all", i + 1,
                before > 0 ? rates.passing[i] / before : 0.0, rates.passing[i]);
        before = rates.passing[i];
    }
    return out.text;
}
