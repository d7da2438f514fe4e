#pragma once

#include <memory>
#include <mutex>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "Manifest.h"

namespace training {

/// One picture with all its labels.
struct Photo {
    std::string image;
    std::string source;
    std::string split;
    std::vector<ManifestRow> rows;

    /// Every label is of this kind.
    bool only(Kind kind) const;
};

/// The pictures of a manifest in the order of their first rows. Pixels are read when first asked
/// for and kept.
class PhotoStore {
public:
    /// Reads `folder`/manifest.csv. Throws Failure.
    explicit PhotoStore(const std::string& folder);

    const std::vector<Photo>& photos() const { return photos_; }
    /// The grey pixels of a picture. Any thread may ask. Throws Failure with the manifest's line
    /// when the picture cannot be read.
    const cv::Mat& grey(int photo) const;
    /// The opacity of a hand in a close-up on plain ground, see matteOf(); empty for other
    /// pictures. Any thread may ask.
    const cv::Mat& matte(int photo) const;

private:
    struct Pixels {
        std::once_flag once, matteOnce;
        cv::Mat grey, matte;
    };

    std::string folder_;
    std::vector<Photo> photos_;
    std::unique_ptr<Pixels[]> pixels_;
};

/// Whether positives may be trained on a source, and so may the backgrounds behind them: its
/// pictures come with a licence. The other sources serve as negatives alone.
bool isLicensed(const std::string& source);

}  // namespace training
