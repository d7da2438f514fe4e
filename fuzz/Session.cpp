#include "Session.h"

#include "GRE_Interface.h"
#include "GRE_RaisedHand.h"
#include "GreCameraState.h"
#include "KZ_ViInterfaceSingleton.h"
#include "PalmDetectionChain.h"
#include "VI_State.h"

namespace fuzz {

void Session::startAfresh() {
    viFrameParameters.reset();
    viResult.reset();
    zoomTwice = false;
    // Options are collected for the life of an engine.
    ViInterfaceSingleton::get().viInterface = KZ::SharedPtr<KZ::ViInterface>(getEngine());

    GRE_Release();
    isFlip = true;
    roi = KZ::Rect();
    cameraAngle = 0;
    minDistance = 30;
    maxDistance = 100;
    fovAngle = 89;
    useSmoothing = false;
    framesToSkip = 0;
    // The scan at the chain's head is shared by all engines of the process, and keeps pointers into
    // the pictures of the last one.
    palmTrackingDetector()->reset();
    raisedHandDetector = RaisedHandDetector();
    data = DetectorData();
}

}  // namespace fuzz
