#include "ScoreComputer.h"

#include "DetectorResult.h"
#include "ResultKeeper.h"

namespace {

bool isPassed(float score) {
    return 0 < score && score <= 1;
}

// A number in 0 to 3: the stages passed, and the score of the last one on top.
float grade(float cascade, float verifier1, float verifier2) {
    if (isPassed(verifier2)) return verifier2 + 2;
    if (isPassed(verifier1)) return verifier1 + 1;
    return cascade < 1 ? cascade : 0;
}

}  // namespace

void ScoreComputer::detect(DetectorData& data, const KZ::DetectRegion& region,
                           DetectorResult& result) {
    const DetectorResult kept = result;
    const auto storedScore = [&](const char* stage) {
        ResultKeeper(ResultKeeper::LOAD, stage).detect(data, region, result);
        return result.score;
    };
    const float cascade = storedScore("AdaBoostResult");
    const float verifier1 = storedScore("Verifier1Result");
    const float verifier2 = storedScore("Verifier2Result");
    result = kept;
    result.score = grade(cascade, verifier1, verifier2) / 3;
}
