#pragma once

#include <string>
#include <vector>

#include "Calibration.h"
#include "PhotoStore.h"
#include "Progress.h"
#include "RingFile.h"
#include "SampleMiner.h"
#include "VerifierTrainer.h"

namespace training {

/// The amounts of a training of both verifiers.
struct VerifierPlan {
    uint64_t seed = 1;
    int threads = 1;
    int loosening = 40;     ///< taken from the last stages' thresholds in half of the frames
    int blockFrames = 500;  ///< frames between two checkpoints of the mining
    int fitBlocks = 1, heldOutBlocks = 1;
    int hardBlocks = 1;  ///< searched for what the first verifier lets pass
    /// Rounds in which the whole chain is searched for alarms that the second verifier then learns;
    /// they end early where one finds fewer than `fewAlarms` or gains nothing on held-out samples.
    int rounds = 0, roundBlocks = 1, fewAlarms = 100;
    TrainerSettings trainer[VERIFIERS];
    TrainerSettings refining;  ///< of the second verifier after each round
    /// When all thresholds are set, both learn the held-out pictures too.
    int restBlocks = 1;
    TrainerSettings finishing[VERIFIERS];
    double kept = 0.955;  ///< of the palms by both verifiers

    /// `size` is the amount of data and work, 1 is the full training.
    static VerifierPlan palm(double size, uint64_t seed, int threads);
    std::string fingerprint() const;
};

/// Trains both verifiers on what a ring of cascades reports in training pictures. Everything that
/// takes long leaves a checkpoint in `folder`.
class VerifierTraining {
public:
    VerifierTraining(const PhotoStore& store, const std::string& ring, const VerifierPlan& plan,
                     const std::string& folder, Progress& progress);

    /// The networks with their final biases set so that the chain's thresholds are the operating
    /// point. Draws the progress to `folder` too. Throws Failure when a network does not give in
    /// the library what it gives in training.
    std::vector<NnDetector> run();

    static double plannedWork(const VerifierPlan& plan);

private:
    void measureDeviations();
    void mineBlock(const std::string& name, const SampleOrder& order);
    void mineSamples();
    void mineHard(const std::vector<float>& first);
    int mineAlarms(int round, const std::vector<float>* calibrated);
    void refine(std::vector<float>* values);
    /// The margins' shifts of `values` stay: what was found on pictures not yet learnt.
    void learnRest(std::vector<float>* values);
    std::vector<float> train(int verifier, std::vector<SampleDeck> decks);
    std::vector<float> finish(VerifierTrainer& trainer, int verifier, const std::string& base);
    std::vector<SampleDeck> firstDecks() const;
    std::vector<SampleDeck> secondDecks(const std::vector<float>& first) const;
    std::vector<SampleDeck> roundDecks(const std::vector<float>& first, int firstAlarm) const;
    std::vector<int> heldOutOf(Origin origin, bool withLoose) const;
    ChainMargins chainMargins(const std::vector<float>* values,
                              const std::vector<int>& which) const;
    /// Sets the final biases so that the chain's thresholds are the operating point; returns the
    /// share of alarms there on the held-out samples.
    double calibrate(std::vector<float>* values);
    void compare(int verifier, const std::vector<float>& values, const NnDetector& network) const;

    const VerifierPlan plan_;
    const std::string folder_;
    const std::string ringKey_;
    Progress& progress_;
    SampleMiner miner_;
    SampleSet samples_;
    std::string chainKey_;                    ///< of the verifiers that the miner has
    std::vector<float> averages_[VERIFIERS];  ///< as trained so far, before any shift
};

}  // namespace training
