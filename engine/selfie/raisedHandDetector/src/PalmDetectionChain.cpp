#include "PalmDetectionChain.h"

#include "DetectorSet.h"
#include "MultiFrameVerification.h"
#include "PalmCascade.h"
#include "ResultKeeper.h"
#include "ScoreComputer.h"

KZ::SharedPtr<BaseDetector> palmTrackingDetector() {
    const PatternDetector::Parameters scan(2, 1, 0.2f, KZ::RangeF());
    DetectorSet* chain = new DetectorSet("", false);
    const KZ::SharedPtr<BaseDetector> owner(chain);
    chain->addDetector(ada__ada_staticPalm_2014_12_05__17_40_12(scan));
    chain->addDetector(new ResultKeeper(ResultKeeper::SAVE, "AdaBoostResult"));
    chain->addDetector(new ScoreComputer);
    return owner;
}

KZ::SharedPtr<BaseDetector> confirmedPalmDetector() {
    MultiFrameVerification::Parameters parameters(3);
    parameters.historySize = 3;
    parameters.minHits = 2;
    parameters.trackRoiScale = 1.8f;
    parameters.trackSizeTolerance = 1.3f;
    parameters.reserved = false;
    parameters.triggerRoiScale = 1.0f;
    parameters.sweepAngle = false;
    return KZ::SharedPtr<BaseDetector>(
        new MultiFrameVerification(palmTrackingDetector(), parameters));
}
