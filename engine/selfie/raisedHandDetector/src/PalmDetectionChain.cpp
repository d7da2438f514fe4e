#include "PalmDetectionChain.h"

#include "DetectorSet.h"
#include "MultiFrameVerification.h"
#include "NnTracker.h"
#include "PalmCascade.h"
#include "PalmVerifiers.h"
#include "ResultKeeper.h"
#include "ScoreComputer.h"

namespace {

// A network that drops the scan's location unless it is sure enough that a palm is there, and the
// keeper of what it said.
void addVerifier(DetectorSet& chain, const KZ::SharedPtr<NnDetector>& network, float threshold,
                 const char* resultKey) {
    const KZ::RelativeLocation whole(1.0f, KZ::PointF(0, 0), 0, 0, 0);
    chain.addDetector(
        new NnTracker(NnTracker::Type::VERIFIER, network, whole, threshold, false, false));
    chain.addDetector(new ResultKeeper(ResultKeeper::SAVE, resultKey));
}

}  // namespace

KZ::SharedPtr<BaseDetector> palmTrackingDetector() {
    const PatternDetector::Parameters scan(2, 1, 0.2f, KZ::RangeF());
    DetectorSet* chain = new DetectorSet("", false);
    const KZ::SharedPtr<BaseDetector> owner(chain);
    chain->addDetector(ada__ada_staticPalm_2014_12_05__17_40_12(scan));
    chain->addDetector(new ResultKeeper(ResultKeeper::SAVE, "AdaBoostResult"));
    addVerifier(*chain, palm_verifier__iter_250000(), 0.2f, "Verifier1Result");
    addVerifier(*chain, palm_verifier_2019_05_07__iter_105000(), 0.5f, "Verifier2Result");
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
