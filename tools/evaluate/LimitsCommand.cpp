#include "LimitsCommand.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "Failure.h"
#include "HandMesh.h"
#include "Limits.h"
#include "LimitsPicture.h"
#include "Output.h"
#include "Progress.h"
#include "ReportJson.h"

namespace evaluate {

namespace {

hand::HandMesh readMesh(const std::string& path) {
    if (!std::filesystem::is_regular_file(path)) {
        throw training::Failure(
            "no hand mesh " + path +
            "; scripts/make_sample installs it, --mesh names right.glb of the npm package "
            "@webxr-input-profiles/assets, profile generic-hand");
    }
    try {
        return hand::loadHandMesh(path);
    } catch (const std::runtime_error& fault) {
        throw training::Failure(fault.what());
    }
}

const char* nameOf(Wanted wanted) {
    return wanted == Wanted::FOUND ? "found" : wanted == Wanted::EITHER ? "either" : "nothing";
}

nlohmann::json jsonOf(const LimitsCell& cell) {
    nlohmann::json lost = nlohmann::json::object();
    const std::vector<int> losses = lossesByStage(cell.outcomes);
    for (size_t i = 0; i < losses.size(); ++i) {
        lost[nameOf(static_cast<Stage>(i))] = losses[i];
    }
    return {{"value", cell.value},           {"wanted", nameOf(cell.wanted)},
            {"hands", cell.outcomes.size()}, {"count", cell.count()},
            {"share", cell.share()},         {"not_found_lost_by", lost}};
}

nlohmann::json jsonOf(const std::vector<LimitsRow>& rows) {
    nlohmann::json list = nlohmann::json::array();
    for (const LimitsRow& row : rows) {
        nlohmann::json cells = nlohmann::json::array();
        for (const LimitsCell& cell : row.cells) cells.push_back(jsonOf(cell));
        list.push_back(
            {{"name", row.name}, {"title", row.title}, {"unit", row.unit}, {"cells", cells}});
    }
    return {{"rows", list}};
}

void print(const LimitsRow& row) {
    std::printf("%s (%s)\n ", row.title.c_str(), row.unit.c_str());
    for (const LimitsCell& cell : row.cells) {
        std::printf("  %g: %.0f%%", cell.value, 100 * cell.share());
    }
    std::printf("\n");
}

}  // namespace

void drawLimits(const LimitsOptions& options) {
    const hand::HandMesh mesh = readMesh(options.mesh);
    const PalmStudio studio(mesh);
    const std::vector<PalmVariant> variants = palmVariants();
    const std::vector<PalmProperty> properties = palmProperties();
    size_t planned = 0;
    for (const PalmProperty& property : properties) {
        planned += property.values.size() * variants.size();
    }
    std::vector<LimitsRow> rows;
    {
        training::Progress progress(isatty(STDERR_FILENO), static_cast<double>(planned));
        EngineSession session;
        for (const PalmProperty& property : properties) {
            rows.push_back(sweep(property, variants, studio, session,
                                 [&] { progress.advance(1, property.title); }));
        }
    }
    for (const LimitsRow& row : rows) print(row);
    writePicture(options.picture, limitsPicture(rows));
    if (!options.json.empty()) writeText(options.json, jsonOf(rows).dump(1) + "\n");
}

}  // namespace evaluate
