// Trains the two verifiers of the palm detector and writes them in their two forms, network file
// and source.

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <opencv2/core.hpp>
#include <string>

#include "Failure.h"
#include "VerifierFile.h"
#include "VerifierTraining.h"

namespace {

struct Options {
    std::string data, ring, networks, sources, work;
    double size = 1;
    unsigned seed = 1;
    int threads = 2;
};

void train(const Options& options) {
    cv::setNumThreads(1);
    const std::string work = options.work.empty() ? options.networks + "/work" : options.work;
    for (const std::string& folder : {work, options.networks}) {
        std::error_code error;
        std::filesystem::create_directories(folder, error);
        if (error) throw training::Failure(folder + ": " + error.message());
    }
    const training::VerifierPlan plan =
        training::VerifierPlan::palm(options.size, options.seed, options.threads);
    const training::PhotoStore store(options.data);
    training::Progress progress(isatty(STDERR_FILENO),
                                training::VerifierTraining::plannedWork(plan));
    training::VerifierTraining training(store, options.ring, plan, work, progress);
    const std::vector<NnDetector> networks = training.run();
    for (int i = 0; i < training::VERIFIERS; ++i) {
        const std::string path = training::networkPath(options.networks, i);
        training::writeVerifier(networks[i], path);
        // What was compared with the trainer's is what the file holds.
        if (!(training::readVerifier(i, path) == networks[i]))
            throw training::Failure(path + ": holds another network than was written");
    }
    if (!options.sources.empty()) training::emitVerifiers(options.networks, options.sources);
    training::replaceFile(work + "/training.log",
                          [&](std::ostream& file) { file << progress.log(); });
}

void addCommands(CLI::App& app, Options& options) {
    app.require_subcommand(1);
    CLI::App* train = app.add_subcommand("train", "train both networks; goes on where it ended");
    train->add_option("--data", options.data, "folder with manifest.csv and its pictures")
        ->required();
    train->add_option("--ring", options.ring, "the .ring file of the cascades before them")
        ->required();
    train->add_option("--networks", options.networks, "folder for the two network files")
        ->required();
    train->add_option("--sources", options.sources, "folder for their C++ sources");
    train->add_option("--work", options.work,
                      "folder for samples, checkpoints, plots and log (default: NETWORKS/work)");
    train->add_option("--size", options.size, "amount of data and work, 1 is the full training")
        ->check(CLI::Range(0.001, 10.0));
    train->add_option("--seed", options.seed, "another seed, another equally good pair");
    train->add_option("--threads", options.threads, "the outcome does not depend on it")
        ->check(CLI::Range(1, 64));

    CLI::App* emit = app.add_subcommand("emit", "write the C++ sources of both networks");
    emit->add_option("--networks", options.networks, "folder with the network files")->required();
    emit->add_option("--sources", options.sources, "folder for the sources")->required();
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Trains the verifier networks of the palm detector.", "train_verifier");
    Options options;
    addCommands(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "train_verifier: %s; see train_verifier --help\n", error.what());
        return 2;
    }
    try {
        if (app.got_subcommand("train")) train(options);
        if (app.got_subcommand("emit")) training::emitVerifiers(options.networks, options.sources);
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "train_verifier: %s\n", failure.what());
    } catch (const char*) {
        std::fprintf(stderr,
                     "train_verifier: the library refused its input; see the lines above\n");
    }
    return 1;
}
