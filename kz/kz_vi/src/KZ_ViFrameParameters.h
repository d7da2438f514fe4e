#pragma once

#include <map>
#include <string>

#include "KZ_Image.h"

namespace KZ {

/// What goes into an engine with one frame.
struct ViFrameParameters {
    std::map<std::string, Image> images;  ///< by the engine's names of its images
    std::map<std::string, std::string> parameters;

    void reset() {
        images.clear();
        parameters.clear();
    }
};

}  // namespace KZ
