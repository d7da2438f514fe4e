// Measures a ring of cascades on labelled photographs.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <fstream>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "CascadeReport.h"
#include "Evaluation.h"
#include "Failure.h"

namespace {

struct Options {
    std::string data, ring, split = "val", json;
    std::vector<int> shifts = {-60, -40, -20, 20, 40, 60};
    int threads = 2;
};

void writeJson(const CascadeReport& report, const std::string& path) {
    const std::string beside = path + ".new";
    std::ofstream file(beside);
    file << report.json().dump(1) << "\n";
    file.close();
    if (!file || std::rename(beside.c_str(), path.c_str()) != 0) {
        throw training::Failure(path +
                                ": cannot be written; check that the folder exists and is yours");
    }
}

void evaluate(const Options& options) {
    cv::setNumThreads(1);
    const training::RingContent ring = training::readRing(options.ring);
    const training::PhotoStore store(options.data);
    const Evaluation evaluation(store, options.split, options.threads);
    CascadeReport report;
    report.ring = options.ring;
    report.measurement = evaluation.measure(ring, 0);
    for (const int shift : options.shifts) {
        const Measurement moved = evaluation.measure(ring, shift);
        report.points.push_back({shift, moved.recall(), moved.leading(), moved.groupsPerScene()});
    }
    report.rates = evaluation.stageRates(ring, 8);
    report.milliseconds = evaluation.millisecondsPerFrame(ring, 50);
    std::fputs(report.text().c_str(), stdout);
    if (!options.json.empty()) writeJson(report, options.json);
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Measures recall and false groups of a ring of cascades.", "evaluate_cascade");
    Options options;
    app.add_option("--data", options.data, "folder with manifest.csv and its pictures")->required();
    app.add_option("--ring", options.ring, "the .ring file to measure")->required();
    app.add_option("--split", options.split, "train or val");
    app.add_option("--json", options.json, "report file to write besides the table");
    app.add_option("--shifts", options.shifts, "what to add to the last thresholds, in turn")
        ->delimiter(',');
    app.add_option("--threads", options.threads)->check(CLI::Range(1, 64));
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "evaluate_cascade: %s; see evaluate_cascade --help\n", error.what());
        return 2;
    }
    try {
        evaluate(options);
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "evaluate_cascade: %s\n", failure.what());
    } catch (const char*) {
        std::fprintf(stderr,
                     "evaluate_cascade: the library refused its input; see the lines above\n");
    }
    return 1;
}
