#include "Output.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <opencv2/imgcodecs.hpp>
#include <vector>

#include "Failure.h"

namespace evaluate {

namespace {

void writeBytes(const std::string& path, const char* bytes, size_t count) {
    const std::string beside = path + ".part";
    std::ofstream file(beside, std::ios::binary);
    file.write(bytes, static_cast<std::streamsize>(count));
    file.close();
    if (file && std::rename(beside.c_str(), path.c_str()) == 0) return;
    std::remove(beside.c_str());
    throw OutputFailure(path + ": cannot be written; is its folder there and yours?");
}

}  // namespace

void writeText(const std::string& path, const std::string& text) {
    writeBytes(path, text.data(), text.size());
}

void writePicture(const std::string& path, const cv::Mat& picture) {
    const bool jpeg = std::filesystem::path(path).extension() == ".jpg";
    std::vector<unsigned char> bytes;
    cv::imencode(jpeg ? ".jpg" : ".png", picture, bytes, {cv::IMWRITE_JPEG_QUALITY, 82});
    writeBytes(path, reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

void requireFolderOf(const std::string& path) {
    if (path.empty()) return;
    const std::filesystem::path folder = std::filesystem::absolute(path).parent_path();
    if (std::filesystem::is_directory(folder)) return;
    throw training::Failure(path + ": there is no folder " + folder.string());
}

void makeFolder(const std::string& path) {
    std::error_code fault;
    std::filesystem::create_directories(path, fault);
    if (fault) throw OutputFailure(path + ": cannot be made: " + fault.message());
}

}  // namespace evaluate
