// Trains the detector's ring of cascades and writes it in its two forms, file and source.

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <opencv2/core.hpp>
#include <string>

#include "CascadeTrainer.h"
#include "Failure.h"
#include "RingConfig.h"
#include "RingFile.h"

namespace {

using training::RingContent;

struct Options {
    std::string data, ring, source, checkpoint, output;
    double size = 1;
    unsigned seed = 1;
    int threads = 2;
    int shift = 0;
};

void train(const Options& options) {
    const std::string checkpoint =
        options.checkpoint.empty() ? options.ring + ".checkpoint.ring" : options.checkpoint;
    training::TrainingPlan plan = training::TrainingPlan::palm(options.size);
    plan.seed = options.seed;
    plan.threads = options.threads;
    cv::setNumThreads(1);

    const training::PhotoStore store(options.data);
    training::Progress progress(isatty(STDERR_FILENO), training::CascadeTrainer::plannedWork(plan));
    training::CascadeTrainer trainer(store, plan, checkpoint, progress);
    RingContent ring = trainer.run();
    ring.config = training::ringConfig(plan);
    training::writeRing(ring, options.ring);
    std::remove(checkpoint.c_str());
    if (!options.source.empty()) training::writeSource(options.ring, options.source);
}

void shiftThresholds(const Options& options) {
    RingContent ring = training::readRing(options.ring);
    for (training::CascadeContent& cascade : ring.cascades) {
        if (cascade.stages.empty()) {
            throw training::Failure(options.ring + ": " + cascade.shape.name + " has no stages");
        }
        cascade.stages.back().threshold += options.shift;
    }
    ring.log += "last thresholds shifted by " + std::to_string(options.shift) + "\n";
    training::writeRing(ring, options.output.empty() ? options.ring : options.output);
}

void addCommands(CLI::App& app, Options& options) {
    app.require_subcommand(1);
    CLI::App* train = app.add_subcommand("train", "train a ring; goes on from its checkpoint");
    train->add_option("--data", options.data, "folder with manifest.csv and its pictures")
        ->required();
    train->add_option("--ring", options.ring, "the .ring file to write")->required();
    train->add_option("--source", options.source, "the C++ source to write besides");
    train->add_option("--checkpoint", options.checkpoint,
                      "where to keep finished stages (default: RING.checkpoint.ring)");
    train->add_option("--size", options.size, "amount of data and work, 1 is the full training")
        ->check(CLI::Range(0.001, 4.0));
    train->add_option("--seed", options.seed, "another seed, another equally good ring");
    train->add_option("--threads", options.threads, "the outcome does not depend on it")
        ->check(CLI::Range(1, 64));

    CLI::App* emit = app.add_subcommand("emit", "write the C++ source of a ring");
    emit->add_option("--ring", options.ring, "the .ring file to read")->required();
    emit->add_option("--source", options.source, "the C++ source to write")->required();

    CLI::App* shift =
        app.add_subcommand("shift", "move the last stages' thresholds of all cascades");
    shift->add_option("--ring", options.ring, "the .ring file to read")->required();
    shift->add_option("--by", options.shift, "added to each; above 0 is stricter")->required();
    shift->add_option("--output", options.output, "where to write (default: over the ring)");
}

int run(const CLI::App& app, const Options& options) {
    try {
        if (app.got_subcommand("train")) train(options);
        if (app.got_subcommand("emit")) training::writeSource(options.ring, options.source);
        if (app.got_subcommand("shift")) shiftThresholds(options);
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "train_cascade: %s\n", failure.what());
    } catch (const char*) {
        std::fprintf(stderr, "train_cascade: the library refused its input; see the lines above\n");
    }
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Trains the cascades of the palm detector.", "train_cascade");
    Options options;
    addCommands(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "train_cascade: %s; see train_cascade --help\n", error.what());
        return 2;
    }
    return run(app, options);
}
