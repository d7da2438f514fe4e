#include "Bounds.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>

#include "Failure.h"
#include "Metrics.h"
#include "ReportJson.h"

namespace evaluate {

using nlohmann::json;
using training::Kind;

namespace {

const char* const FORMAT = "evaluate bounds 1";

double shareOf(const std::vector<PhotoOutcome>& outcomes, Kind kind) {
    int some = 0, all = 0;
    for (const PhotoOutcome& outcome : outcomes) {
        if (outcome.kind != kind || outcome.otherReported) continue;
        ++all;
        some += counts(outcome);
    }
    return all > 0 ? static_cast<double>(some) / all : 0;
}

std::string violation(const char* measure, double reached, const char* relation, double bound,
                      double recorded) {
    char text[160];
    std::snprintf(text, sizeof text, "%s is %.4f, %s %.4f (recorded: %.4f)", measure, reached,
                  relation, bound, recorded);
    return text;
}

}  // namespace

Reached reachedBy(const std::vector<PhotoOutcome>& outcomes) {
    return {shareOf(outcomes, Kind::PALM), shareOf(outcomes, Kind::HAND),
            shareOf(outcomes, Kind::SCENE)};
}

std::vector<Exhibit> Bounds::choose(const Exhibits& exhibits) {
    std::vector<Exhibit> chosen;
    const std::pair<Kind, int> steps[] = {{Kind::PALM, 6}, {Kind::HAND, 18}, {Kind::SCENE, 8}};
    for (const auto& [kind, every] : steps) {
        const std::vector<Exhibit> some = thinned(exhibits.of(kind), every, 0);
        chosen.insert(chosen.end(), some.begin(), some.end());
    }
    return chosen;
}

Bounds Bounds::read(const std::string& path) {
    const json file = readJson(path);
    try {
        if (file.at("format") != FORMAT) throw training::Failure("another format");
        const json& reached = file.at("recorded");
        return {file.at("split"),
                {reached.at("recall"), reached.at("pose_alarms"), reached.at("scene_alarms")},
                file.at("exhibits")};
    } catch (const std::exception& fault) {
        throw training::Failure(path + ": holds no recorded bounds: " + fault.what());
    }
}

std::string Bounds::text() const {
    const nlohmann::ordered_json file = {{"format", FORMAT},
                                         {"split", split},
                                         {"recorded",
                                          {{"recall", recorded.recall},
                                           {"pose_alarms", recorded.poseAlarms},
                                           {"scene_alarms", recorded.sceneAlarms}}},
                                         {"exhibits", exhibits}};
    return file.dump(1) + "\n";
}

std::vector<Exhibit> Bounds::select(const Exhibits& all) const {
    std::map<std::string, const Exhibit*> known;
    for (const Kind kind : {Kind::PALM, Kind::HAND, Kind::SCENE}) {
        for (const Exhibit& exhibit : all.of(kind)) known[exhibit.key()] = &exhibit;
    }
    std::vector<Exhibit> listed;
    for (const std::string& key : exhibits) {
        const auto found = known.find(key);
        if (found == known.end()) throw training::Failure("the data lack the exhibit " + key);
        listed.push_back(*found->second);
    }
    return listed;
}

double Bounds::slack(Kind kind) const {
    const std::string prefix = std::string(nameOf(kind)) + " ";
    const auto isOfKind = [&](const std::string& key) { return key.rfind(prefix, 0) == 0; };
    const auto all = std::count_if(exhibits.begin(), exhibits.end(), isOfKind);
    // Palms that take no part make the share of one a little larger.
    return all > 0 ? 1.5 / static_cast<double>(all) : 0;
}

std::vector<std::string> Bounds::violations(const Reached& reached) const {
    std::vector<std::string> lines;
    const double least = recorded.recall - slack(Kind::PALM);
    if (reached.recall < least) {
        lines.push_back(violation(RECALL, reached.recall, "below", least, recorded.recall));
    }
    const auto limit = [&](const char* measure, double share, double record, Kind kind) {
        const double most = record + slack(kind);
        if (share > most) lines.push_back(violation(measure, share, "above", most, record));
    };
    limit(POSE_ALARMS, reached.poseAlarms, recorded.poseAlarms, Kind::HAND);
    limit(SCENE_ALARMS, reached.sceneAlarms, recorded.sceneAlarms, Kind::SCENE);
    return lines;
}

}  // namespace evaluate
