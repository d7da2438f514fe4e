#pragma once

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "KZ_BasePoint.h"
#include "KZ_BaseRect.h"
#include "KZ_Image.h"

namespace KZ {

/// What an engine gives for one frame: as many of each as it likes, with meanings that it settles
/// with its application.
struct ViResult {
    std::vector<std::string> gestures;
    std::vector<float> floats;
    std::vector<BaseRect<float>> rects;
    std::vector<BasePoint<float>> points;
    std::vector<BasePoint3d<float>> points3d;
    std::vector<std::map<std::string, std::string>> parameters;
    std::vector<Image> images;

    /// Empties every list; their capacity stays.
    void reset();
};

/// Text form "ViResult(", each list on a line of its own, ")".
std::ostream& operator<<(std::ostream& stream, const ViResult& result);

}  // namespace KZ
