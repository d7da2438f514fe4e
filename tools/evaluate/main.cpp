// Measures the whole engine, as it is built, on labelled photographs and videos.

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "Bounds.h"
#include "Compare.h"
#include "DoubtfulRows.h"
#include "Evaluation.h"
#include "Failure.h"
#include "LimitsCommand.h"
#include "ModelCard.h"
#include "Output.h"
#include "Plots.h"
#include "Progress.h"
#include "ReportJson.h"
#include "ReportText.h"

namespace {

using namespace evaluate;
using training::Kind;

struct RunOptions {
    std::string data, split = "val", json, list, page, plots, doubtful = DOUBTFUL_ROWS;
    std::vector<std::string> kinds = {"palm", "hand", "scene", "video"};
    int every = 1, limit = 0;
};

std::string listOf(const Evaluation& evaluation) {
    std::string text = "kind,image,source,width,angle,reported,on_palm,score,lost\n";
    for (const PhotoOutcome& outcome : evaluation.photographs) {
        char numbers[128];
        std::snprintf(numbers, sizeof numbers, ",%.1f,%.1f,%d,%d,%.4f,", outcome.palmWidth,
                      outcome.angle, outcome.reported, outcome.found, outcome.score);
        text += std::string(nameOf(outcome.kind)) + "," + outcome.image + "," + outcome.source +
                numbers + (outcome.lost ? nameOf(*outcome.lost) : "") + "\n";
    }
    return text;
}

/// What was asked for of a split.
struct Selection {
    std::vector<Exhibit> photographs;
    std::vector<Sequence> sequences;
};

Selection select(const RunOptions& options, const Exhibits& exhibits) {
    Selection selection;
    for (const std::string& kind : options.kinds) {
        if (kind == "video") {
            selection.sequences = readSequences(options.data, options.split);
            continue;
        }
        const auto some = thinned(exhibits.of(kindOf(kind)), options.every, options.limit);
        selection.photographs.insert(selection.photographs.end(), some.begin(), some.end());
    }
    return selection;
}

Evaluation show(const Selection& selection, const Exhibits& exhibits,
                const DoubtfulRows& doubtful) {
    const size_t planned = selection.photographs.size() + selection.sequences.size();
    training::Progress progress(isatty(STDERR_FILENO), static_cast<double>(planned));
    Runner runner(exhibits, doubtful, [&](const std::string& what) { progress.advance(1, what); });
    runner.show(selection.photographs);
    runner.show(selection.sequences);
    return runner.result();
}

int run(const RunOptions& options) {
    for (const std::string& path : {options.json, options.page, options.list}) {
        requireFolderOf(path);
    }
    const DoubtfulRows doubtful = DoubtfulRows::read(options.doubtful);
    const training::PhotoStore store(options.data);
    const Exhibits exhibits(store, options.split);
    Evaluation evaluation = show(select(options, exhibits), exhibits, doubtful);
    evaluation.data = options.data;
    evaluation.split = options.split;
    evaluation.every = options.every;
    evaluation.limit = options.limit;
    const Report report(evaluation);
    std::fputs(textOf(report).c_str(), stdout);
    if (!options.json.empty()) writeText(options.json, jsonOf(report).dump(1) + "\n");
    if (!options.page.empty()) writePicture(options.page, plotPage(report));
    if (!options.plots.empty()) writePlots(report, exhibits, options.plots);
    if (!options.list.empty()) writeText(options.list, listOf(evaluation));
    return 0;
}

void addRun(CLI::App& app, RunOptions& options) {
    CLI::App& command = *app.add_subcommand("run", "show photographs and videos to the engine");
    command.add_option("--data", options.data, "folder with manifest.csv and its pictures")
        ->required();
    command.add_option("--split", options.split, "train or val")
        ->check(CLI::IsMember({"train", "val"}));
    command.add_option("--kinds", options.kinds, "palm, hand, scene, video: what to show")
        ->delimiter(',')
        ->check(CLI::IsMember({"palm", "hand", "scene", "video"}));
    command.add_option("--every", options.every, "show every so many-th photograph of a kind")
        ->check(CLI::Range(1, 100000));
    command.add_option("--limit", options.limit, "show at most so many photographs of a kind")
        ->check(CLI::Range(1, 1000000));
    command.add_option("--doubtful", options.doubtful, "CSV file of rows that are doubtful by eye");
    command.add_option("--json", options.json, "report file to write");
    command.add_option("--page", options.page, "picture of all plots to write, PNG");
    command.add_option("--plots", options.plots,
                       "folder for plots and for sheets of the worst misses and alarms, PNG");
    command.add_option("--list", options.list, "CSV file to write with each photograph's outcome");
}

struct CompareOptions {
    std::string before, after;
};

int compareReports(const CompareOptions& options) {
    const Evaluation before = readReport(options.before), after = readReport(options.after);
    std::fputs(textOf(compare(before, after)).c_str(), stdout);
    return 0;
}

void addCompare(CLI::App& app, CompareOptions& options) {
    CLI::App& command =
        *app.add_subcommand("compare", "tell what differs between two report files");
    command.add_option("OLD", options.before, "report of the older run")->required();
    command.add_option("NEW", options.after, "report of the newer run")->required();
}

struct CardOptions {
    std::string report, data, out, picture;
};

int writeCard(const CardOptions& options) {
    for (const std::string& path : {options.out, options.picture}) requireFolderOf(path);
    const Report report(readReport(options.report));
    const std::string card = modelCard(report, readSources(options.data + "/README.md"));
    if (!options.picture.empty()) writePicture(options.picture, plotOverview(report));
    writeText(options.out, card);
    return 0;
}

void addCard(CLI::App& app, CardOptions& options) {
    CLI::App& command = *app.add_subcommand("card", "write the model card from a report file");
    command.add_option("REPORT", options.report, "report of a run")->required();
    command.add_option("--data", options.data, "folder whose README.md lists the sources")
        ->required();
    command.add_option("--out", options.out, "Markdown file to write")->required();
    command.add_option("--picture", options.picture, "picture of its figures to write, PNG");
}

struct CheckOptions {
    std::string data, bounds;
    bool record = false, skip = false;
};

constexpr int SKIPPED = 77;

/// Why a test has nothing to check; empty when it has.
std::string reasonToSkip(const CheckOptions& options) {
    if (!std::filesystem::exists(options.data + "/manifest.csv")) {
        return "no photographs in " + options.data;
    }
    if (!std::filesystem::exists(options.bounds)) return "no bounds recorded in " + options.bounds;
    return "";
}

int record(const CheckOptions& options) {
    makeFolder(std::filesystem::absolute(options.bounds).parent_path().string());
    const training::PhotoStore store(options.data);
    const Exhibits exhibits(store, "val");
    const std::vector<Exhibit> chosen = Bounds::choose(exhibits);
    Bounds bounds{"val", reachedBy(show({chosen, {}}, exhibits, {}).photographs), {}};
    for (const Exhibit& exhibit : chosen) bounds.exhibits.push_back(exhibit.key());
    writeText(options.bounds, bounds.text());
    std::printf(
        "recorded on %zu exhibits: recall %.4f, alarms on other poses %.4f, on scenes %.4f\n",
        chosen.size(), bounds.recorded.recall, bounds.recorded.poseAlarms,
        bounds.recorded.sceneAlarms);
    return 0;
}

int check(const CheckOptions& options) {
    if (options.record) return record(options);
    if (options.skip && !reasonToSkip(options).empty()) {
        std::printf("skipped: %s\n", reasonToSkip(options).c_str());
        return SKIPPED;
    }
    const Bounds bounds = Bounds::read(options.bounds);
    const training::PhotoStore store(options.data);
    const Exhibits exhibits(store, bounds.split);
    const Selection selection{bounds.select(exhibits), {}};
    const Reached reached = reachedBy(show(selection, exhibits, {}).photographs);
    const std::vector<std::string> violations = bounds.violations(reached);
    for (const std::string& line : violations) std::printf("out of bounds: %s\n", line.c_str());
    if (!violations.empty()) return 1;
    std::printf(
        "within bounds on %zu exhibits: recall %.4f, alarms on other poses %.4f, "
        "on scenes %.4f\n",
        selection.photographs.size(), reached.recall, reached.poseAlarms, reached.sceneAlarms);
    return 0;
}

void addCheck(CLI::App& app, CheckOptions& options) {
    CLI::App& command = *app.add_subcommand(
        "check", "end with 1 when recall or alarms on a fixed set are beyond recorded bounds");
    command.add_option("--data", options.data, "folder with manifest.csv and its pictures")
        ->required();
    command.add_option("--bounds", options.bounds, "JSON file of the set and its bounds")
        ->required();
    command.add_flag("--record", options.record, "choose the set anew and write the file");
    command.add_flag("--skip-if-absent", options.skip,
                     "end with 77 where photographs or bounds are missing");
}

int limits(const LimitsOptions& options) {
    for (const std::string& path : {options.picture, options.json}) requireFolderOf(path);
    drawLimits(options);
    return 0;
}

void addLimits(CLI::App& app, LimitsOptions& options) {
    CLI::App& command = *app.add_subcommand(
        "limits", "show rendered palms, one property varied at a time, and draw what is found");
    command.add_option("--out", options.picture, "picture to write, .png or .jpg")->required();
    command.add_option("--json", options.json, "file to write with all shares");
    options.mesh = HAND_MESH;
    command.add_option("--mesh", options.mesh, "right.glb that scripts/make_sample installs")
        ->envname("RHD_HAND_MESH");
}

int reportFailure(const char* text, int status) {
    std::fprintf(stderr, "evaluate: %s\n", text);
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    cv::setNumThreads(1);
    CLI::App app("Measures what the built-in engine finds in labelled photographs.", "evaluate");
    app.require_subcommand(1);
    RunOptions runOptions;
    CompareOptions compareOptions;
    CardOptions cardOptions;
    CheckOptions checkOptions;
    LimitsOptions limitsOptions;
    addRun(app, runOptions);
    addCompare(app, compareOptions);
    addCard(app, cardOptions);
    addCheck(app, checkOptions);
    addLimits(app, limitsOptions);
    try {
        app.parse(argc, argv);
        if (app.got_subcommand("run")) return run(runOptions);
        if (app.got_subcommand("compare")) return compareReports(compareOptions);
        if (app.got_subcommand("card")) return writeCard(cardOptions);
        if (app.got_subcommand("limits")) return limits(limitsOptions);
        return check(checkOptions);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        return reportFailure((std::string(error.what()) + "; see evaluate --help").c_str(), 2);
    } catch (const training::Failure& failure) {
        return reportFailure(failure.what(), 2);
    } catch (const std::exception& failure) {
        return reportFailure(failure.what(), 1);
    } catch (const char*) {
        return reportFailure("the library refused its input; see the lines above", 1);
    }
}
