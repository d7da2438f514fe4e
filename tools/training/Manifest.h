#pragma once

#include <string>
#include <vector>

namespace training {

/// What a row of the manifest labels.
enum class Kind { PALM, HAND, IGNORE, SCENE };

/// One labelled thing. Lengths are pixels of the picture, angles degrees counter-clockwise on the
/// screen with 0 for fingers straight up.
struct ManifestRow {
    std::string image;  ///< path below the data folder
    std::string source;
    std::string split;
    Kind kind = Kind::SCENE;
    bool hasPose = false;  ///< the five numbers below are given
    double cx = 0, cy = 0, palmWidth = 0, angle = 0;
    bool mirrored = false;  ///< side LEFT: the mirror image of a right hand
    bool hasBox = false;
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    int line = 0;  ///< where it stands in the file
};

/// The rows of `path` in their order; docs/manifest.md describes the format. Throws Failure with
/// file, line, what is wrong and what to do.
std::vector<ManifestRow> readManifest(const std::string& path);

}  // namespace training
