#pragma once

#include <vector>

#include "BaseDetector.h"
#include "KZ_SharedPtr.h"

/// A node with many children, kept in the order of adding.
class BaseDetectorAggregator : public BaseDetector {
public:
    /// Takes ownership.
    void addDetector(BaseDetector* detector);
    void addDetector(const KZ::SharedPtr<BaseDetector>& detector);

    /// Bounding box of the children's answers, empty ones left out.
    KZ::Rect getDataRoi(const DetectorData& data, const KZ::DetectRegion& region) override;
    void reset() override;

protected:
    std::vector<KZ::SharedPtr<BaseDetector>> detectors_;
};
