#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Boosting.h"
#include "Miner.h"
#include "PhotoStore.h"
#include "Progress.h"
#include "RingFile.h"
#include "Window.h"

namespace training {

struct StagePlan {
    BoostingSettings boosting;
    int haarPool = 0, hogPool = 0;  ///< features to draw; 0 leaves the kind out
    double keptPalms = 1;           ///< share of unseen palms that the threshold lets pass
    int sceneWindows = 0, handWindows = 0, perFrame = 0, maxFrames = 0;
};

struct TrainingPlan {
    std::vector<WindowShape> shapes;
    std::vector<StagePlan> stages;
    double rendersPerPalm = 8;
    uint64_t seed = 1;
    int threads = 2;

    /// The three cascades of the detector with five stages each. `size` scales the amount of data
    /// and work; 1 is the full training.
    static TrainingPlan palm(double size);
    /// One line that changes with everything that the outcome depends on.
    std::string fingerprint() const;
};

/// Trains the cascades of a plan stage by stage. After each stage the ring so far is written to
/// the checkpoint; a later run with the same plan goes on from there and ends with the same ring.
class CascadeTrainer {
public:
    /// Throws Failure when the data lack something, or when the checkpoint is of another plan.
    CascadeTrainer(const PhotoStore& store, const TrainingPlan& plan, const std::string& checkpoint,
                   Progress& progress);

    /// Trains what is missing and returns the finished ring.
    RingContent run();

    /// Planned work of a run, in the units that `progress` is told of.
    static double plannedWork(const TrainingPlan& plan);

private:
    struct Palm {
        int photo;
        const ManifestRow* row;
        int fold;
        int renders;
    };
    struct Positives {
        std::vector<Window> windows;
        std::vector<int> folds;
    };

    void collectPalms();
    void renderPositives();
    void dropLostPalms();
    void trainStage(int stage);
    StageContent trainOne(int cascade, int stage, const Mined& mined);

    const PhotoStore& store_;
    const TrainingPlan plan_;
    const std::string checkpoint_;
    Progress& progress_;
    const NegativeFrames frames_;
    const std::vector<int> backgrounds_;
    std::vector<Palm> palms_;
    std::vector<Positives> positives_;  ///< per cascade; those that pass all stages so far
    RingContent ring_;
};

}  // namespace training
