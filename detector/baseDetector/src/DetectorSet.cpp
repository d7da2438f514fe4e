#include "DetectorSet.h"

#include "DetectorResult.h"
#include "KZ_Utils.h"

DetectorSet::DetectorSet(const std::string& name, bool stopAtFirstFound)
    : name_(name + " of "), stopAtFirstFound_(stopAtFirstFound) {}

void DetectorSet::addDetector(BaseDetector* detector) {
    BaseDetectorAggregator::addDetector(detector);
}

void DetectorSet::addDetector(const KZ::SharedPtr<BaseDetector>& detector) {
    // "\l" is Graphviz's left-justified line break; the bar indents the lines of a nested set.
    name_ += "\\l * " + KZ::replaceString(detector->name(), "\\l", "\\l |");
    BaseDetectorAggregator::addDetector(detector);
}

void DetectorSet::detect(DetectorData& data, const KZ::DetectRegion& region,
                         DetectorResult& result) {
    for (const KZ::SharedPtr<BaseDetector>& detector : detectors_) {
        detector->detect(data, region, result);
        if (stopAtFirstFound_ && result.found) return;
    }
}
