#include "PalmDetectionChain.h"

#include <gtest/gtest.h>

#include "BaseDetectorAggregator.h"
#include "DetectorData.h"
#include "DetectorResult.h"
#include "NnTracker.h"
#include "PalmVerifiers.h"
#include "PatternDetector.h"
#include "ResultKeeper.h"
#include "ScoreComputer.h"

namespace {

using Stages = std::vector<KZ::SharedPtr<BaseDetector>>;

/// Opens what every aggregator keeps to itself.
struct Opened : BaseDetectorAggregator {
    static const Stages& stagesOf(const BaseDetectorAggregator& aggregator) {
        return aggregator.*&Opened::detectors_;
    }
};

template <typename Stage>
Stage& stageAt(const Stages& stages, size_t i) {
    return dynamic_cast<Stage&>(*stages.at(i));
}

/// What another stage would find under `key` after `keeper` has seen a result of `score`.
float keptUnder(const char* key, ResultKeeper& keeper, float score) {
    DetectorData data;
    DetectorResult result;
    result.score = score;
    keeper.detect(data, KZ::DetectRegion(), result);
    result.score = -1;
    ResultKeeper(ResultKeeper::LOAD, key).detect(data, KZ::DetectRegion(), result);
    return result.score;
}

}  // namespace

// The trained data hold for this order and these thresholds.
TEST(PalmDetectionChain, ScansThenVerifiesTwiceThenGrades) {
    const KZ::SharedPtr<BaseDetector> chain = palmTrackingDetector();
    const Stages& stages = Opened::stagesOf(dynamic_cast<BaseDetectorAggregator&>(*chain));
    ASSERT_EQ(7u, stages.size());

    const PatternDetector::Parameters& scan = stageAt<PatternDetector>(stages, 0).parameters();
    EXPECT_EQ(2, scan.scanStep);
    EXPECT_EQ(1, scan.minNeighbors);
    EXPECT_EQ(0.2f, scan.groupEps);
    EXPECT_EQ(0.25f, keptUnder("AdaBoostResult", stageAt<ResultKeeper>(stages, 1), 0.25f));

    const struct {
        size_t at;
        KZ::SharedPtr<NnDetector> network;
        KZ::Size patch;
        float threshold;
        const char* key;
    } verifiers[] = {
        {2, palm_verifier__iter_250000(), KZ::Size(35, 33), 0.2f, "Verifier1Result"},
        {4, palm_verifier_2019_05_07__iter_105000(), KZ::Size(50, 60), 0.5f, "Verifier2Result"}};
    for (const auto& row : verifiers) {
        SCOPED_TRACE(row.key);
        const NnTracker::Parameters& stage = stageAt<NnTracker>(stages, row.at).parameters();
        EXPECT_EQ(NnTracker::Type::VERIFIER, stage.type);
        EXPECT_EQ(row.network.get(), stage.nnDetector.get()) << "one network for the process";
        EXPECT_EQ(row.patch, row.network->getSize());
        EXPECT_EQ(std::vector<std::string>{"final"}, row.network->getOutputNames());
        EXPECT_EQ(row.threshold, stage.threshold);
        EXPECT_FALSE(stage.fitToImage || stage.tryMirrored);
        const KZ::ObjectLocation place(KZ::PointF(30, 40), KZ::SizeF(20, 25), 10, KZ::Side::LEFT);
        const KZ::ObjectLocation patch = stage.relativeLocation.getLocationState(place);
        EXPECT_EQ(place.center, patch.center);
        EXPECT_EQ(place.size.width, patch.size.width);
        EXPECT_EQ(place.angle, patch.angle);
        EXPECT_EQ(0.75f, keptUnder(row.key, stageAt<ResultKeeper>(stages, row.at + 1), 0.75f));
    }
    stageAt<ScoreComputer>(stages, 6);
}
