#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "KZ_BaseRect.h"
#include "KZ_BaseSize.h"
#include "Random.h"
#include "Window.h"

namespace training {

/// One feature of a window; its value is one byte, the index into a table of votes.
struct Feature {
    enum Kind { RMCT, HAAR, HOG };

    Kind kind = RMCT;
    int x = 0, y = 0;  ///< RMCT: the pixel
    KZ::Rect outer;    ///< Haar: the whole area; HOG: the block
    KZ::Rect inner;    ///< Haar: the inner area; HOG: the cell
    int sector = 0;    ///< HOG: orientation 0 to 5
};

/// Every RMCT position but the outermost ring.
std::vector<Feature> rmctFeatures(const KZ::Size& window);
/// `count` different ones, drawn from rectangles of all sizes and places inside the window.
std::vector<Feature> haarFeatures(const KZ::Size& window, int count, Random& random);
std::vector<Feature> hogFeatures(const KZ::Size& window, int count, Random& random);

/// The byte of every feature on every window, feature by feature.
class FeatureTable {
public:
    FeatureTable(std::vector<Feature> features, const std::vector<const Window*>& windows,
                 const KZ::Size& size, int threads);

    int featureCount() const { return static_cast<int>(features_.size()); }
    int windowCount() const { return windowCount_; }
    const Feature& feature(int i) const { return features_[i]; }
    const std::vector<Feature>& features() const { return features_; }
    const uint8_t* row(int feature) const {
        return bytes_.data() + static_cast<size_t>(feature) * windowCount_;
    }

private:
    std::vector<Feature> features_;
    int windowCount_;
    std::vector<uint8_t> bytes_;
};

}  // namespace training
