#pragma once

#include <functional>
#include <opencv2/core.hpp>
#include <stdexcept>
#include <string>

namespace evaluate {

/// The input was right, but an output cannot be made.
struct OutputFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A file that appears under its name only when it is whole. Throws OutputFailure.
void writeText(const std::string& path, const std::string& text);
/// JPEG where the name ends in .jpg, else PNG.
void writePicture(const std::string& path, const cv::Mat& picture);

/// Throws training::Failure, before any work, when the folder that shall hold a file is missing. An
/// empty path is no file.
void requireFolderOf(const std::string& path);

/// Makes the folder where it is missing. Throws OutputFailure.
void makeFolder(const std::string& path);

}  // namespace evaluate
