#include "BaseDetectorWrapper.h"

void BaseDetectorWrapper::setDetector(BaseDetector* detector) {
    detector_ = KZ::SharedPtr<BaseDetector>(detector);
}

KZ::Rect BaseDetectorWrapper::getDataRoi(const DetectorData& data, const KZ::DetectRegion& region) {
    return detector_->getDataRoi(data, region);
}

void BaseDetectorWrapper::reset() {
    detector_->reset();
}
