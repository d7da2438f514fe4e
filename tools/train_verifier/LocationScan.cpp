#include "LocationScan.h"

#include <algorithm>

namespace training {

LocationScan::LocationScan(const RingContent& ring)
    : ring_(ring),
      detector_(&ring_.ring(), KZ::AngleRange(-30, 30), KZ::Side::BOTH,
                PatternDetector::Parameters(2, 1, 0.2f, KZ::RangeF())) {}

void LocationScan::show(const cv::Mat& frame) {
    view_.make(frame, true);
}

std::vector<KZ::ObjectLocation> LocationScan::locations() {
    const KZ::Image& image = view_.image();
    data_.compute(image, image.rect());
    detector_.setData(data_.rmctPyramid, data_.integral, nullptr, nullptr);
    const KZ::DetectRegion region(image.rect(), KZ::RangeF(), KZ::AngleRange(), KZ::Side::BOTH);
    detector_.detect(groups_, region);
    std::vector<KZ::ObjectLocation> locations;
    for (const AdaObject& group : groups_) locations.push_back(group.toLocationState());
    return locations;
}

PatchPair cutPatches(const KZ::Image& view, const KZ::ObjectLocation& location) {
    PatchPair pair;
    for (int i = 0; i < VERIFIERS; ++i) {
        const KZ::Size size = verifierDesign(i).input;
        KZ::Image patch;
        location.getPatch(view, size, patch, true);
        for (int y = 0; y < size.height; ++y) {
            const unsigned char* row = patch.data(0, y);
            pair.pixels[i].insert(pair.pixels[i].end(), row, row + size.width);
        }
    }
    return pair;
}

}  // namespace training
