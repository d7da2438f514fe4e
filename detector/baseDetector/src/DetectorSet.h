#pragma once

#include <string>

#include "BaseDetectorAggregator.h"

/// A chain: each child in turn gets the same data, region and running result. Every child runs,
/// also on a result that an earlier one has cleared, unless the set stops at the first find.
class DetectorSet : public BaseDetectorAggregator {
public:
    DetectorSet(const std::string& name, bool stopAtFirstFound);

    /// Takes ownership; the child stays out of `name()`.
    void addDetector(BaseDetector* detector);
    /// Adds the child's name, as a line of its own, to `name()`.
    void addDetector(const KZ::SharedPtr<BaseDetector>& detector);

    void detect(DetectorData& data, const KZ::DetectRegion& region,
                DetectorResult& result) override;
    /// The set's name, " of ", and a list of children with Graphviz line breaks ("\l").
    std::string name() override { return name_; }

private:
    std::string name_;
    bool stopAtFirstFound_;
};
