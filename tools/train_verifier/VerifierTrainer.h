#pragma once

#include <string>
#include <vector>

#include "Progress.h"
#include "SampleSet.h"

namespace training {

struct TrainerSettings {
    int epochs = 1, batchesPerEpoch = 1;
    double learningRate = 0.002;  ///< at its highest
    uint64_t seed = 1;
    int threads = 1;

    static constexpr int BATCH = 256;
};

/// Samples of one kind, and how many of a batch come from them.
struct SampleDeck {
    std::vector<int> samples;
    double share = 0;
    bool palms = false;
};

/// How a network stands after an epoch, on the held-out samples.
struct EpochReport {
    double loss = 0;          ///< mean of the epoch's training loss
    double recall = 0;        ///< of the scan's palms, at even odds
    double alarms = 0;        ///< share of what the scan reports elsewhere that passes, likewise
    double alarmsAtKept = 0;  ///< the same where KEPT of the palms pass

    static constexpr double KEPT = 0.975;
    std::string text() const;
};

/// Trains the values of one verifier. The outcome does not depend on the number of threads. Every
/// epoch leaves a checkpoint, from which a later run with the same settings goes on.
class VerifierTrainer {
public:
    VerifierTrainer(int verifier, const SampleSet& samples, std::vector<SampleDeck> decks,
                    const TrainerSettings& settings, const std::string& checkpoint,
                    Progress& progress);

    /// Begins with the mean values of another training rather than with random ones.
    void startFrom(const std::vector<float>& average) { start_ = average; }
    /// Values for `buildVerifier`, the mean over the last steps' values. `costPerPatch` tells the
    /// progress what one patch of training counts.
    std::vector<float> run(double costPerPatch);
    const std::vector<EpochReport>& reports() const { return reports_; }
    /// The mean values as trained, for `startFrom`.
    const std::vector<float>& average() const { return average_; }

private:
    struct Part;

    void initialise();
    double runBatch(uint64_t step, std::vector<Part>& parts);
    void drawPart(uint64_t step, int part, Part& into) const;
    void update(uint64_t step, const std::vector<float>& gradient);
    EpochReport report(double loss) const;
    std::string key() const;
    bool readCheckpoint();
    void writeCheckpoint() const;

    const int verifier_;
    const VerifierDesign& design_;
    const SampleSet& samples_;
    const std::vector<SampleDeck> decks_;
    const TrainerSettings settings_;
    const std::string checkpoint_;
    Progress& progress_;
    std::vector<float> start_, values_, average_, firstMoment_, secondMoment_;
    std::vector<char> decays_;
    std::vector<EpochReport> reports_;
};

/// Tells two networks' values apart.
uint64_t valuesHash(const std::vector<float>& values);

/// Margins of the training library for samples of the set; `values` are those of `buildVerifier`.
std::vector<float> marginsOf(int verifier, const std::vector<float>& values,
                             const SampleSet& samples, const std::vector<int>& which, int threads);

}  // namespace training
