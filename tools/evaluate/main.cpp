// Measures the whole engine, as it is built, on labelled photographs and videos.

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "DoubtfulRows.h"
#include "Evaluation.h"
#include "Failure.h"
#include "Output.h"
#include "Progress.h"
#include "ReportJson.h"
#include "ReportText.h"

namespace {

using namespace evaluate;
using training::Kind;

struct RunOptions {
    std::string data, split = "val", json, list, doubtful = DOUBTFUL_ROWS;
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

void run(const RunOptions& options) {
    const DoubtfulRows doubtful = DoubtfulRows::read(options.doubtful);
    const training::PhotoStore store(options.data);
    const Exhibits exhibits(store, options.split);
    const Selection selection = select(options, exhibits);
    const double planned =
        static_cast<double>(selection.photographs.size() + selection.sequences.size());
    Evaluation evaluation;
    {
        training::Progress progress(isatty(STDERR_FILENO), planned);
        Runner runner(exhibits, doubtful,
                      [&](const std::string& what) { progress.advance(1, what); });
        runner.show(selection.photographs);
        runner.show(selection.sequences);
        evaluation = runner.result();
    }
    evaluation.data = options.data;
    evaluation.split = options.split;
    evaluation.every = options.every;
    evaluation.limit = options.limit;
    const Report report(evaluation);
    std::fputs(textOf(report).c_str(), stdout);
    if (!options.json.empty()) writeText(options.json, jsonOf(report).dump(1) + "\n");
    if (!options.list.empty()) writeText(options.list, listOf(evaluation));
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
    command.add_option("--list", options.list, "CSV file to write with each photograph's outcome");
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
    addRun(app, runOptions);
    try {
        app.parse(argc, argv);
        if (app.got_subcommand("run")) run(runOptions);
        return 0;
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
