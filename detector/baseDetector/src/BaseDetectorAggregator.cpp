#include "BaseDetectorAggregator.h"

void BaseDetectorAggregator::addDetector(BaseDetector* detector) {
    detectors_.push_back(KZ::SharedPtr<BaseDetector>(detector));
}

void BaseDetectorAggregator::addDetector(const KZ::SharedPtr<BaseDetector>& detector) {
    detectors_.push_back(detector);
}

KZ::Rect BaseDetectorAggregator::getDataRoi(const DetectorData& data,
                                            const KZ::DetectRegion& region) {
    KZ::Rect all;
    for (const KZ::SharedPtr<BaseDetector>& detector : detectors_) {
        const KZ::Rect needed = detector->getDataRoi(data, region);
        if (needed.area() == 0) continue;
        all = all.area() == 0 ? needed : all.united(needed);
    }
    return all;
}

void BaseDetectorAggregator::reset() {
    for (const KZ::SharedPtr<BaseDetector>& detector : detectors_) detector->reset();
}
