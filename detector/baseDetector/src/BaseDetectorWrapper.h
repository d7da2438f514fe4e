#pragma once

#include "BaseDetector.h"
#include "KZ_SharedPtr.h"

/// A node with one child, which must be set before use.
class BaseDetectorWrapper : public BaseDetector {
public:
    BaseDetectorWrapper() = default;
    /// Takes ownership.
    explicit BaseDetectorWrapper(BaseDetector* detector) { setDetector(detector); }
    explicit BaseDetectorWrapper(const KZ::SharedPtr<BaseDetector>& detector)
        : detector_(detector) {}

    /// Takes ownership.
    void setDetector(BaseDetector* detector);
    void setDetector(const KZ::SharedPtr<BaseDetector>& detector) { detector_ = detector; }

    KZ::Rect getDataRoi(const DetectorData& data, const KZ::DetectRegion& region) override;
    void reset() override;

protected:
    KZ::SharedPtr<BaseDetector> detector_;
};
