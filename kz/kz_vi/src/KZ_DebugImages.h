#pragma once

#include <string>
#include <vector>

#include "KZ_Image.h"

namespace KZ {

/// Named pictures that detectors leave for an application to show; one list per process.
class DebugImages {
public:
    struct Record {
        std::string name;
        Image image;
    };

    /// Appends a copy of `image`. A `zoom` other than 1, within a relative 1e-6, makes it smaller
    /// by that factor first.
    static void add(const Image& image, const std::string& name, float zoom);
    static void reset();
    /// Writes each picture to `directory`, named after its number in two digits and its name;
    /// `extension` is that of a form that Image::save knows, with its point.
    static void save(const std::string& directory, const std::string& extension);

    static std::vector<Record> debugImages_;
};

}  // namespace KZ
