// Measures the whole engine, as it is built, on labelled photographs.

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <map>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "EngineEvaluation.h"
#include "Failure.h"

namespace {

using training::Kind;

struct Options {
    std::string data, split = "val", list;
    std::vector<std::string> kinds = {"palm", "hand", "scene"};
    int stride = 1, frames = 9;
};

const std::map<std::string, Kind> KINDS = {
    {"palm", Kind::PALM}, {"hand", Kind::HAND}, {"scene", Kind::SCENE}};

/// Photographs and those among them that count.
struct Count {
    int all = 0, some = 0;

    void add(bool counts) {
        ++all;
        some += counts ? 1 : 0;
    }
    double share() const { return all == 0 ? 0 : static_cast<double>(some) / all; }
};

void report(const std::string& kind, const std::vector<ShownPhoto>& photos) {
    const bool palms = kind == "palm";
    Count total, upright;
    std::map<std::string, Count> bySource;
    for (const ShownPhoto& photo : photos) {
        const bool counts = palms ? photo.onPalm : photo.answer.palms > 0;
        total.add(counts);
        if (std::abs(photo.angle) <= 15) upright.add(counts);
        bySource[photo.source].add(counts);
    }
    std::printf("%s: %s %d of %d (%.4f)\n", kind.c_str(), palms ? "found" : "false alarms on",
                total.some, total.all, total.share());
    if (palms) {
        std::printf("  tilted by at most 15 degrees: %d of %d (%.4f)\n", upright.some, upright.all,
                    upright.share());
    }
    for (const auto& [source, count] : bySource) {
        std::printf("  %-28s %4d of %4d (%.3f)\n", source.c_str(), count.some, count.all,
                    count.share());
    }
}

void evaluate(const Options& options) {
    cv::setNumThreads(1);
    std::ofstream list;
    if (!options.list.empty()) {
        list.open(options.list);
        if (!list) throw training::Failure(options.list + ": cannot be written");
        list << "kind,image,source,width,angle,palms,on_palm,score\n";
    }
    const training::PhotoStore store(options.data);
    EngineEvaluation evaluation(store, options.split);
    const bool terminal = isatty(STDERR_FILENO);
    for (const std::string& kind : options.kinds) {
        const auto photos =
            evaluation.run(KINDS.at(kind), options.stride, options.frames, [&](int done, int all) {
                if (terminal) std::fprintf(stderr, "\r%s %d/%d ", kind.c_str(), done, all);
            });
        if (terminal) std::fprintf(stderr, "\r%20s\r", "");
        report(kind, photos);
        for (const ShownPhoto& photo : photos) {
            list << kind << "," << photo.image << "," << photo.source << "," << photo.width << ","
                 << photo.angle << "," << photo.answer.palms << "," << photo.onPalm << ","
                 << photo.answer.score << "\n";
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Measures what the built-in engine finds in labelled photographs.",
                 "evaluate_engine");
    Options options;
    app.add_option("--data", options.data, "folder with manifest.csv and its pictures")->required();
    app.add_option("--split", options.split, "train or val");
    app.add_option("--kinds", options.kinds, "palm, hand, scene: what to show")
        ->delimiter(',')
        ->check(CLI::IsMember({"palm", "hand", "scene"}));
    app.add_option("--stride", options.stride, "show every so many-th only")
        ->check(CLI::Range(1, 1000));
    app.add_option("--frames", options.frames, "frames for which each is shown")
        ->check(CLI::Range(1, 1000));
    app.add_option("--list", options.list, "CSV file to write with each photograph's outcome");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "evaluate_engine: %s; see evaluate_engine --help\n", error.what());
        return 2;
    }
    try {
        evaluate(options);
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "evaluate_engine: %s\n", failure.what());
    } catch (const char*) {
        std::fprintf(stderr,
                     "evaluate_engine: the library refused its input; see the lines above\n");
    }
    return 1;
}
