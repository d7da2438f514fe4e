#include "Features.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <tuple>

#include "KZ_IntegralHog.h"
#include "KZ_IntegralImage.h"
#include "Parallel.h"

namespace training {

namespace {

constexpr int HOG_CHANNELS = 7;
/// Windows that one work item fills: a cache line of each row of the table.
constexpr int BLOCK = 64;

/// A rectangle inside `area`, with sides of at least `least`, drawn evenly over sizes and places.
KZ::Rect randomRect(const KZ::Rect& area, int least, Random& random) {
    const int w = least + random.below(area.width() - least + 1);
    const int h = least + random.below(area.height() - least + 1);
    const int left = area.left + random.below(area.width() - w + 1);
    const int top = area.top + random.below(area.height() - h + 1);
    return KZ::Rect(left, top, left + w, top + h);
}

/// A part of `outer`: halves, thirds and quarters as often as free rectangles.
KZ::Rect randomPart(const KZ::Rect& outer, int least, Random& random) {
    if (random.chance(0.5)) return randomRect(outer, least, random);
    const auto side = [&](int from, int to, int& partFrom, int& partTo) {
        const int cuts = 1 + random.below(3);
        const int index = random.below(cuts);
        partFrom = from + (to - from) * index / cuts;
        partTo = from + (to - from) * (index + 1) / cuts;
        if (partTo - partFrom < least) partFrom = from, partTo = to;
    };
    KZ::Rect part;
    side(outer.left, outer.right, part.left, part.right);
    side(outer.top, outer.bottom, part.top, part.bottom);
    return part;
}

std::tuple<int, int, int, int> key(const KZ::Rect& r) {
    return {r.left, r.top, r.right, r.bottom};
}

/// A Haar feature at a layer's zoom, ready to be read from the integral of a window's base pixels.
struct ScaledHaar {
    int64_t allArea, posArea, denominator;
    int all[4], pos[4];  ///< cells: left top, right top, left bottom, right bottom
};

ScaledHaar scaled(const Feature& feature, float zoom, int cellsPerRow) {
    const auto resized = [&](const KZ::Rect& r) {
        const auto side = [&](int v) { return static_cast<int>(static_cast<float>(v) * zoom); };
        return KZ::Rect(side(r.left), side(r.top), side(r.right), side(r.bottom));
    };
    const auto cells = [&](const KZ::Rect& r, int* out) {
        out[0] = r.top * cellsPerRow + r.left;
        out[1] = r.top * cellsPerRow + r.right;
        out[2] = r.bottom * cellsPerRow + r.left;
        out[3] = r.bottom * cellsPerRow + r.right;
    };
    const KZ::Rect all = resized(feature.outer), pos = resized(feature.inner);
    ScaledHaar haar;
    haar.allArea = all.area();
    haar.posArea = pos.area();
    haar.denominator = 2 * haar.posArea * (haar.allArea - haar.posArea);
    cells(all, haar.all);
    cells(pos, haar.pos);
    return haar;
}

int sumOf(const unsigned int* integral, const int* cells) {
    return static_cast<int>(integral[cells[0]] + integral[cells[3]] - integral[cells[1]] -
                            integral[cells[2]]);
}

uint8_t haarByte(const ScaledHaar& haar, const unsigned int* integral) {
    if (haar.denominator == 0) return 0;
    const int64_t contrast =
        haar.allArea * sumOf(integral, haar.pos) - haar.posArea * sumOf(integral, haar.all);
    return static_cast<uint8_t>(contrast / haar.denominator + 127);
}

struct HogCells {
    int cell[4], block[4];
};

HogCells hogCells(const Feature& feature, const KZ::Size& size) {
    const auto cells = [&](const KZ::Rect& r, int channel, int* out) {
        const int row = (size.width + 1) * HOG_CHANNELS;
        out[0] = r.top * row + r.left * HOG_CHANNELS + channel;
        out[1] = r.top * row + r.right * HOG_CHANNELS + channel;
        out[2] = r.bottom * row + r.left * HOG_CHANNELS + channel;
        out[3] = r.bottom * row + r.right * HOG_CHANNELS + channel;
    };
    HogCells result;
    cells(feature.inner, feature.sector, result.cell);
    cells(feature.outer, HOG_CHANNELS - 1, result.block);
    return result;
}

uint8_t hogByte(const HogCells& cells, const unsigned int* hog) {
    const auto part = static_cast<uint32_t>(sumOf(hog, cells.cell));
    const auto whole = static_cast<uint32_t>(sumOf(hog, cells.block));
    return static_cast<uint8_t>(part * 256 / (whole + 1));
}

/// What a thread needs to turn windows into bytes.
class Reader {
public:
    Reader(const std::vector<Feature>& features, const KZ::Size& size)
        : features_(features), size_(size) {
        for (const Feature& feature : features) {
            hasHaar_ |= feature.kind == Feature::HAAR;
            hasHog_ |= feature.kind == Feature::HOG;
            hog_.push_back(feature.kind == Feature::HOG ? hogCells(feature, size) : HogCells{});
        }
    }

    /// Writes the bytes of all features at intervals of `stride`.
    void read(const Window& window, uint8_t* out, int stride) {
        if (hasHaar_) integrate(window);
        if (hasHog_) {
            KZ::Image mono;
            mono.createRef(const_cast<uint8_t*>(window.mono.data()), size_, KZ::COLOR_MODE_MONO);
            KZ::computeIntegralHog(mono, integralHog_, mono.rect(),
                                   KZ::COLOR_MODE_INTEGRAL_HOG_UNSIGNED6);
        }
        const std::vector<ScaledHaar>* haar = hasHaar_ ? &haarAt(window.zoom) : nullptr;
        for (size_t i = 0; i < features_.size(); ++i, out += stride) {
            const Feature& feature = features_[i];
            if (feature.kind == Feature::RMCT) {
                *out = window.rmct[feature.y * size_.width + feature.x];
            } else if (feature.kind == Feature::HAAR) {
                *out = haarByte((*haar)[i], integral_.row<unsigned int>(0));
            } else {
                *out = hogByte(hog_[i], integralHog_.row<unsigned int>(0));
            }
        }
    }

private:
    void integrate(const Window& window) {
        KZ::Image base;
        base.createRef(const_cast<uint8_t*>(window.base.data()), window.baseSize,
                       KZ::COLOR_MODE_MONO);
        KZ::computeIntegral(base, integral_);
    }

    const std::vector<ScaledHaar>& haarAt(float zoom) {
        std::vector<ScaledHaar>& list = haar_[zoom];
        if (list.empty()) {
            const int cells = static_cast<int>(static_cast<float>(size_.width) * zoom) + 1;
            for (const Feature& feature : features_) {
                list.push_back(feature.kind == Feature::HAAR ? scaled(feature, zoom, cells)
                                                             : ScaledHaar{});
            }
        }
        return list;
    }

    const std::vector<Feature>& features_;
    const KZ::Size size_;
    bool hasHaar_ = false, hasHog_ = false;
    std::vector<HogCells> hog_;
    std::map<float, std::vector<ScaledHaar>> haar_;
    KZ::Image integral_, integralHog_;
};

}  // namespace

std::vector<Feature> rmctFeatures(const KZ::Size& window) {
    std::vector<Feature> features;
    for (int y = 1; y < window.height - 1; ++y) {
        for (int x = 1; x < window.width - 1; ++x) {
            Feature feature;
            feature.x = x;
            feature.y = y;
            features.push_back(feature);
        }
    }
    return features;
}

std::vector<Feature> haarFeatures(const KZ::Size& window, int count, Random& random) {
    std::vector<Feature> features;
    std::set<std::tuple<std::tuple<int, int, int, int>, std::tuple<int, int, int, int>>> known;
    while (static_cast<int>(features.size()) < count) {
        Feature feature;
        feature.kind = Feature::HAAR;
        feature.outer = randomRect(KZ::Rect(window), 6, random);
        feature.inner = randomPart(feature.outer, 2, random);
        if (feature.inner == feature.outer) continue;
        if (known.emplace(key(feature.outer), key(feature.inner)).second) {
            features.push_back(feature);
        }
    }
    return features;
}

std::vector<Feature> hogFeatures(const KZ::Size& window, int count, Random& random) {
    // The scan needs one pixel around every block for the gradients.
    const KZ::Rect area(1, 1, window.width - 1, window.height - 1);
    std::vector<Feature> features;
    std::set<std::tuple<int, std::tuple<int, int, int, int>, std::tuple<int, int, int, int>>> known;
    while (static_cast<int>(features.size()) < count) {
        Feature feature;
        feature.kind = Feature::HOG;
        feature.outer = randomRect(area, 6, random);
        feature.inner = randomPart(feature.outer, 3, random);
        feature.sector = random.below(HOG_CHANNELS - 1);
        if (known.emplace(feature.sector, key(feature.outer), key(feature.inner)).second) {
            features.push_back(feature);
        }
    }
    return features;
}

FeatureTable::FeatureTable(std::vector<Feature> features, const std::vector<const Window*>& windows,
                           const KZ::Size& size, int threads)
    : features_(std::move(features)),
      windowCount_(static_cast<int>(windows.size())),
      bytes_(features_.size() * windows.size()) {
    std::vector<Reader> readers(threads, Reader(features_, size));
    std::vector<std::vector<uint8_t>> scratch(threads);
    parallelFor((windowCount_ + BLOCK - 1) / BLOCK, threads, [&](int block, int worker) {
        const int begin = block * BLOCK, count = std::min(BLOCK, windowCount_ - begin);
        std::vector<uint8_t>& bytes = scratch[worker];
        bytes.resize(features_.size() * BLOCK);
        for (int i = 0; i < count; ++i) {
            readers[worker].read(*windows[begin + i], bytes.data() + i, BLOCK);
        }
        for (size_t f = 0; f < features_.size(); ++f) {
            std::memcpy(bytes_.data() + f * windowCount_ + begin, bytes.data() + f * BLOCK, count);
        }
    });
}

}  // namespace training
