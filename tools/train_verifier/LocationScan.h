#pragma once

#include <cstdint>
#include <vector>

#include "DetectorData.h"
#include "DetectorView.h"
#include "KZ_ObjectLocation.h"
#include "LibraryRing.h"
#include "PatternDetector.h"
#include "VerifierDesign.h"

namespace training {

/// What both verifiers see of one location, row by row without gaps.
struct PatchPair {
    std::vector<uint8_t> pixels[VERIFIERS];
};

/// A camera frame as the detector's chain sees it: through frame intake and zoom, with the
/// library's scan on it. Not for two threads at once.
class LocationScan {
public:
    explicit LocationScan(const RingContent& ring);

    /// Takes an 8-bit grey frame.
    void show(const cv::Mat& frame);
    /// What the scan reports in the shown frame, the heaviest group first, in view pixels.
    std::vector<KZ::ObjectLocation> locations();
    const DetectorView& view() const { return view_; }

private:
    LibraryRing ring_;
    PatternDetector detector_;
    DetectorView view_;
    DetectorData data_;
    std::vector<AdaObject> groups_;
};

/// The patches as the chain's trackers cut them: left hands come out as right ones.
PatchPair cutPatches(const KZ::Image& view, const KZ::ObjectLocation& location);

}  // namespace training
