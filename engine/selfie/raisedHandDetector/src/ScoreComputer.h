#pragma once

#include <string>

#include "BaseDetector.h"

/// Last stage of the palm chain: grades the score by the stages that a candidate has passed. Up to
/// a third is for the cascade alone, up to two thirds for the first verifier, up to 1 for the
/// second. All but the score of the running result stays.
class ScoreComputer : public BaseDetector {
public:
    void detect(DetectorData& data, const KZ::DetectRegion& region,
                DetectorResult& result) override;
    std::string name() override { return "ScoreComputer"; }
};
