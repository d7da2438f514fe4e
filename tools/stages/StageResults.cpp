#include "StageResults.h"

#include "DetectorData.h"
#include "DetectorResult.h"
#include "GRE_RaisedHand.h"
#include "GreCameraState.h"
#include "KZ_DetectRegion.h"
#include "ResultKeeper.h"

namespace stages {

namespace {

const struct {
    const char* name;
    const char* key;
} STAGES[] = {{"scan", "AdaBoostResult"},
              {"first verifier", "Verifier1Result"},
              {"second verifier", "Verifier2Result"}};

// What a keeper of a stage that ran never holds.
const int NOT_RUN = -1;

DetectorResult exchange(ResultKeeper::Type type, const char* key, DetectorResult result) {
    DetectorData unused;
    ResultKeeper(type, key).detect(unused, KZ::DetectRegion(), result);
    return result;
}

StageResult toFrame(const char* name, const DetectorResult& kept) {
    StageResult stage;
    stage.name = name;
    stage.score = kept.score > 1 ? 0 : kept.score;
    stage.kept = kept.location.isSet();
    if (!stage.kept) return stage;
    LocationState location = kept.location;
    raisedHandDetector.mapToInput(location);
    const float width = static_cast<float>(roi.right - roi.left);
    stage.x =
        (isFlip ? width - location.center.x : location.center.x) + static_cast<float>(roi.left);
    stage.y = location.center.y + static_cast<float>(roi.top);
    stage.width = location.size.width;
    stage.height = location.size.height;
    stage.angle = location.angle;
    return stage;
}

}  // namespace

void forget() {
    DetectorResult unset;
    unset.reserved = NOT_RUN;
    for (const auto& stage : STAGES) exchange(ResultKeeper::SAVE, stage.key, unset);
}

std::vector<StageResult> ofLastFrame() {
    std::vector<StageResult> results;
    for (const auto& stage : STAGES) {
        const DetectorResult kept = exchange(ResultKeeper::LOAD, stage.key, DetectorResult());
        if (kept.reserved != NOT_RUN) results.push_back(toFrame(stage.name, kept));
    }
    return results;
}

}  // namespace stages
