#include "VideoOutput.h"

#include <cstdio>
#include <filesystem>

#include "Error.h"

namespace palm {

namespace {

std::string partName(const std::string& path, const std::string& extension) {
    return path + ".part" + extension;
}

void rename(const std::string& part, const std::string& path) {
    if (std::rename(part.c_str(), path.c_str()) != 0) {
        std::remove(part.c_str());
        throw WorkError("cannot write \"" + path + "\": is its folder there and writable?");
    }
}

}  // namespace

void writeBeside(const std::string& path, const std::string& extension,
                 const std::function<bool(const std::string&)>& write) {
    const std::string part = partName(path, extension);
    bool written = false;
    try {
        written = write(part);
    } catch (const std::exception&) {
        // Reported below, in our own words.
    }
    if (!written) {
        std::remove(part.c_str());
        throw WorkError("cannot write \"" + path + "\": is its folder there and writable?");
    }
    rename(part, path);
}

VideoOutput::VideoOutput(const std::string& path, double framesPerSecond, const cv::Size& size)
    : path_(path), part_(partName(path, ".mp4")) {
    const int codec = cv::VideoWriter::fourcc('m', 'p', '4', 'v');
    if (!writer_.open(part_, codec, framesPerSecond, size)) {
        std::remove(part_.c_str());
        throw WorkError("cannot write \"" + path + "\": is its folder there and writable?");
    }
}

VideoOutput::~VideoOutput() {
    if (part_.empty()) return;
    writer_.release();
    std::remove(part_.c_str());
}

void VideoOutput::finish() {
    writer_.release();
    rename(part_, path_);
    part_.clear();
}

}  // namespace palm
