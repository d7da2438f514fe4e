#include "BaseDetector.h"

#include "KZ_Utils.h"

KZ::Rect BaseDetector::getDataRoi(const DetectorData&, const KZ::DetectRegion&) {
    return KZ::Rect();
}

std::string BaseDetector::name() {
    return KZ::toStr<BaseDetector*>(this);
}
