#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <opencv2/imgcodecs.hpp>
#include <string>

#include "DrawnHand.h"
#include "Random.h"

/// A folder of its own that goes away with the test.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "rhd_tools_XXXXXX").string();
        path_ = mkdtemp(name.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }
    std::string path(const std::string& name) const { return (path_ / name).string(); }
    std::string path() const { return path_.string(); }

private:
    std::filesystem::path path_;
};

inline std::string textOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A small set of pictures with manifest: drawn hands and noise.
inline void writeDrawnData(const std::string& folder) {
    std::ofstream manifest(folder + "/manifest.csv");
    manifest << "image,source,split,kind,cx,cy,palm_width,angle,side\n";
    training::Random random(3);
    const auto writePicture = [&](const std::string& name, cv::Mat picture) {
        cv::RNG(random.next()).fill(picture.rowRange(0, 3), cv::RNG::UNIFORM, 0, 255);
        cv::imwrite(folder + "/" + name, picture);
    };
    for (int i = 0; i < 12; ++i) {
        const std::string number = std::to_string(i) + ".png";
        writePicture("palm" + number, drawnHand() + cv::Scalar(i));
        manifest << "palm" << number << ",person" << i % 6 << ",train,palm,60,60,36,0,RIGHT\n";
        writePicture("fist" + number, drawnFist() + cv::Scalar(i));
        manifest << "fist" << number << ",person" << i % 6 << ",train,hand,,,,,\n";
        cv::Mat scene(160, 200, CV_8U);
        cv::RNG(random.next()).fill(scene, cv::RNG::UNIFORM, 0, 255);
        cv::blur(scene, scene, {9 + i, 5});
        cv::normalize(scene, scene, 0, 255, cv::NORM_MINMAX);
        writePicture("scene" + number, scene);
        manifest << "scene" << number << ",rooms,train,scene,,,,,\n";
    }
}
