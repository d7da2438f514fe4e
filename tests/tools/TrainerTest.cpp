#include <gtest/gtest.h>

#include "CascadeTrainer.h"
#include "DataFolder.h"
#include "Failure.h"
#include "WindowScorer.h"

namespace {

using namespace training;

/// One small cascade of two stages.
TrainingPlan smallPlan() {
    TrainingPlan plan;
    plan.shapes = {{"r0", KZ::Size(35, 33), 0}};
    plan.rendersPerPalm = 2;
    for (const int weak : {3, 6}) {
        StagePlan stage;
        stage.boosting.weakCount = weak;
        stage.boosting.triedRmct = stage.boosting.triedHaar = stage.boosting.triedHog = 50;
        stage.haarPool = stage.hogPool = weak > 3 ? 60 : 0;
        stage.keptPalms = 0.95;
        stage.sceneWindows = 40;
        stage.handWindows = 12;
        stage.perFrame = 8;
        stage.maxFrames = 8;
        plan.stages.push_back(stage);
    }
    return plan;
}

class Trainer : public testing::Test {
protected:
    static void SetUpTestSuite() {
        folder = std::make_unique<TemporaryFolder>();
        writeDrawnData(folder->path());
        store = std::make_unique<PhotoStore>(folder->path());
        whole = train(smallPlan(), "whole.ring");
    }
    static void TearDownTestSuite() {
        store.reset();
        folder.reset();
    }

    static RingContent train(const TrainingPlan& plan, const std::string& checkpoint) {
        Progress progress(false, 1);
        return CascadeTrainer(*store, plan, folder->path(checkpoint), progress).run();
    }

    static std::string bytes(const RingContent& ring) {
        writeRing(ring, folder->path("bytes.ring"));
        return textOf(folder->path("bytes.ring"));
    }

    static std::unique_ptr<TemporaryFolder> folder;
    static std::unique_ptr<PhotoStore> store;
    static RingContent whole;  ///< of the small plan, trained without a stop
};
std::unique_ptr<TemporaryFolder> Trainer::folder;
std::unique_ptr<PhotoStore> Trainer::store;
RingContent Trainer::whole;

TEST_F(Trainer, EqualAgainWithOtherThreadsAndAfterAStop) {
    ASSERT_EQ(2u, whole.cascades[0].stages.size());
    TrainingPlan plan = smallPlan();
    plan.threads = 3;
    EXPECT_TRUE(bytes(whole) == bytes(train(plan, "threads.ring")));

    RingContent stopped = whole;
    stopped.cascades[0].stages.resize(1);
    stopped.log.resize(stopped.log.find("stage 2 of"));
    writeRing(stopped, folder->path("stopped.ring"));
    EXPECT_TRUE(bytes(whole) == bytes(train(plan, "stopped.ring")));

    plan.seed = 2;
    EXPECT_THROW(train(plan, "stopped.ring"), Failure);
    EXPECT_FALSE(bytes(whole) == bytes(train(plan, "seed.ring")));
}

// Every mined window is an alarm of the cascade, and no frame gives more than its share.
TEST_F(Trainer, MinedWindowsPassTheCascade) {
    RingContent ring = whole;
    ring.cascades[0].stages.resize(1);
    const NegativeFrames frames(*store, "train");
    MiningOrder order;
    order.sceneWindows = 100;
    order.handWindows = 5;
    order.perFrame = 4;
    order.maxFrames = 5;
    int searched = 0;
    const std::vector<Mined> mined = mine(ring, frames, order, [&](int n) { searched += n; });
    EXPECT_EQ(5 * 4, mined[0].sceneWindows);
    EXPECT_LE(mined[0].windows.size(), 5u * 4 + 5);
    EXPECT_EQ(2 * 5, searched);
    WindowScorer scorer(ring, 0);
    int score = 0;
    for (const Window& window : mined[0].windows) EXPECT_TRUE(scorer.passes(window, score));
}

}  // namespace
