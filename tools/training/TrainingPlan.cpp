#include <algorithm>
#include <cmath>
#include <sstream>

#include "CascadeTrainer.h"

namespace training {

namespace {

/// Raised with every change of the code that changes what a training gives.
constexpr int PROCEDURE = 5;

int scaledBy(double size, int value) {
    return std::max(static_cast<int>(std::lround(value * size)), 1);
}

StagePlan stage(int weakCount, double keptPalms) {
    StagePlan plan;
    plan.boosting.weakCount = weakCount;
    plan.boosting.triedRmct = 200;
    plan.keptPalms = keptPalms;
    plan.sceneWindows = 16000;
    plan.handWindows = 8000;
    plan.perFrame = 24;
    return plan;
}

/// The scan's cost is nearly all in the first three stages: two of RMCT alone, one with few of the
/// dearer features, then the long ones that hardly any window reaches.
std::vector<StagePlan> fiveStages() {
    std::vector<StagePlan> stages = {stage(24, 0.993), stage(60, 0.987), stage(150, 0.98),
                                     stage(500, 0.97), stage(854, 0.915)};
    const int frames[] = {1500, 1500, 2000, 6000, 24000};
    for (size_t i = 0; i < stages.size(); ++i) {
        stages[i].maxFrames = frames[i];
        if (i >= 2) {
            stages[i].haarPool = 3000;
            stages[i].boosting.triedHaar = 150;
            stages[i].boosting.shrinkage = 0.5;
            stages[i].boosting.shareCodes = true;
        }
    }
    // The late stages could learn fewer other windows by heart.
    for (const size_t late : {3, 4}) {
        stages[late].sceneWindows = 40000;
        stages[late].handWindows = 20000;
    }
    stages[0].boosting.triedRmct = stages[1].boosting.triedRmct = 1 << 20;
    stages[4].hogPool = 5000;
    stages[4].boosting.triedHog = 200;
    return stages;
}

}  // namespace

TrainingPlan TrainingPlan::palm(double size) {
    const std::string name = "ada__ada_staticPalm_2014_12_05__17_40_12_r";
    TrainingPlan plan;
    plan.shapes = {{name + "0", KZ::Size(36, 35), -30},
                   {name + "1", KZ::Size(35, 33), 0},
                   {name + "2", KZ::Size(36, 35), 30}};
    plan.stages = fiveStages();
    plan.rendersPerPalm *= std::min(size, 1.0);
    for (StagePlan& stage : plan.stages) {
        if (stage.boosting.weakCount > 40) {
            stage.boosting.weakCount = scaledBy(std::min(size, 1.0), stage.boosting.weakCount);
        }
        for (int* amount : {&stage.sceneWindows, &stage.handWindows, &stage.maxFrames,
                            &stage.haarPool, &stage.hogPool}) {
            if (*amount > 0) *amount = scaledBy(size, *amount);
        }
    }
    return plan;
}

std::string TrainingPlan::fingerprint() const {
    std::ostringstream text;
    text << "procedure " << PROCEDURE << " seed " << seed << " renders " << rendersPerPalm;
    for (const StagePlan& stage : stages) {
        const BoostingSettings& b = stage.boosting;
        text << " | " << b.weakCount << " weak of " << b.triedRmct << "/" << b.triedHaar << "/"
             << b.triedHog << " shrinkage " << b.shrinkage << (b.shareCodes ? " shared" : "")
             << " smoothing " << b.smoothing << " pools " << stage.haarPool << "/" << stage.hogPool
             << " kept " << stage.keptPalms << " negatives " << stage.sceneWindows << "+"
             << stage.handWindows << " per frame " << stage.perFrame << " frames "
             << stage.maxFrames;
    }
    return text.str();
}

}  // namespace training
