#include "PhotoStore.h"

#include <algorithm>
#include <map>
#include <opencv2/imgcodecs.hpp>

#include "Failure.h"
#include "Matte.h"

namespace training {

bool Photo::only(Kind kind) const {
    return std::all_of(rows.begin(), rows.end(),
                       [&](const ManifestRow& row) { return row.kind == kind; });
}

PhotoStore::PhotoStore(const std::string& folder) : folder_(folder) {
    std::map<std::string, size_t> index;
    for (const ManifestRow& row : readManifest(folder + "/manifest.csv")) {
        const auto [found, isNew] = index.emplace(row.image, photos_.size());
        if (isNew) photos_.push_back({row.image, row.source, row.split, {}});
        Photo& photo = photos_[found->second];
        if (photo.split != row.split) {
            throw Failure(folder + "/manifest.csv:" + std::to_string(row.line) + ": " + row.image +
                          " is in the split " + photo.split +
                          " too; keep all rows of a picture in one split");
        }
        photo.rows.push_back(row);
    }
    pixels_ = std::make_unique<Pixels[]>(photos_.size());
}

const cv::Mat& PhotoStore::grey(int photo) const {
    Pixels& pixels = pixels_[photo];
    std::call_once(pixels.once, [&] {
        const Photo& entry = photos_[photo];
        pixels.grey = cv::imread(folder_ + "/" + entry.image, cv::IMREAD_GRAYSCALE);
        if (pixels.grey.empty()) {
            throw Failure(folder_ + "/manifest.csv:" + std::to_string(entry.rows[0].line) +
                          ": cannot read the picture " + entry.image +
                          "; restore the file or delete its rows");
        }
    });
    return pixels.grey;
}

const cv::Mat& PhotoStore::matte(int photo) const {
    Pixels& pixels = pixels_[photo];
    std::call_once(pixels.matteOnce, [&] {
        const cv::Mat& picture = grey(photo);
        const ManifestRow& row = photos_[photo].rows[0];
        if (photos_[photo].rows.size() > 1) return;
        const cv::Point2d middle = row.hasPose ? cv::Point2d(row.cx, row.cy + 0.3 * row.palmWidth)
                                               : cv::Point2d(picture.cols, picture.rows) * 0.5;
        const double radius =
            row.hasPose ? 0.35 * row.palmWidth : std::min(picture.cols, picture.rows) / 6.0;
        pixels.matte = matteOf(picture, middle, radius);
    });
    return pixels.matte;
}

bool isLicensed(const std::string& source) {
    static const char* const UNLICENSED[] = {"imagenet_sample", "mouso_people", "wuqi_rps_sxsw"};
    return std::find(std::begin(UNLICENSED), std::end(UNLICENSED), source) == std::end(UNLICENSED);
}

}  // namespace training
