#include "HeatMapPosition.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "KZ_Assert.h"
#include "KZ_Limits.h"

namespace {

const float RADIUS = 3.0f;
const int RESULT_SIZE = 3;

void zeroResult(float* result) {
    std::fill(result, result + RESULT_SIZE, 0.0f);
}

int to8Bits(float value) {
    const float scaled = value * 256;
    if (!(scaled > -1e9f)) return -1000000000;
    return scaled > 1e9f ? 1000000000 : static_cast<int>(scaled);
}

// Maps of several sizes take turns in one buffer, so that no run but the first allocates.
void shape(KZ::Image& map, std::vector<unsigned char>& pixels, const KZ::Size& size) {
    const size_t area = static_cast<size_t>(size.area());
    if (pixels.size() < area) pixels.resize(area);
    map.createRef(pixels.data(), size, KZ::COLOR_MODE_MONO);
}

KZ::RelativeLocation placeOf(const KZ::RectF& rect, const KZ::Size& patchSize) {
    const KZ::RectF patch(0, 0, static_cast<float>(patchSize.width),
                          static_cast<float>(patchSize.height));
    return KZ::RelativeLocation(KZ::ObjectLocation(patch), KZ::ObjectLocation(rect));
}

}  // namespace

HeatMapPosition::HeatMapPosition(const std::string& name, float scaleX, float scaleY)
    : BaseLayer(name) {
    KZ_ASSERT(KZ::equal(scaleX, scaleY), "scaleX != scaleY");
}

void HeatMapPosition::addHeatmap(const KZ::Size& size, const KZ::RelativeLocation& location) {
    KZ_ASSERT_NE(patchSize_, KZ::Size());
    heatMapsSizes_.push_back(size);
    relativeLocations_.push_back(location);
}

void HeatMapPosition::addHeatmap(const KZ::Size& size, const KZ::Rect& rect) {
    KZ_ASSERT_NE(patchSize_, KZ::Size());
    addHeatmap(size,
               placeOf(KZ::RectF(static_cast<float>(rect.left), static_cast<float>(rect.top),
                                 static_cast<float>(rect.right), static_cast<float>(rect.bottom)),
                       patchSize_));
}

void HeatMapPosition::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    const KZ::Blob& bottom = bottomBlob(0);
    KZ_ASSERT_GE(bottom.width(), 1);
    KZ_ASSERT_GE(bottom.height(), 1);
    if (heatMapsSizes_.empty()) fillFromBottom(bottom);
    computeMultiPosition(bottom);
}

void HeatMapPosition::fillFromBottom(const KZ::Blob& bottom) {
    const size_t channels = static_cast<size_t>(bottom.channels());
    heatMapsSizes_.assign(channels, KZ::Size(bottom.width(), bottom.height()));
    relativeLocations_.assign(channels, KZ::RelativeLocation());
}

void HeatMapPosition::computeMultiPosition(const KZ::Blob& bottom) {
    const int numHeatMaps = static_cast<int>(relativeLocations_.size());
    KZ_ASSERT_EQ(numHeatMaps, int(heatMapsSizes_.size()));
    int64_t totalSize = 0;
    for (const KZ::Size& size : heatMapsSizes_) {
        KZ_ASSERT_GE(size.width, 1);
        KZ_ASSERT_GE(size.height, 1);
        totalSize += static_cast<int64_t>(size.width) * size.height;
        if (totalSize > bottom.size()) break;  // before a sum of lies overflows
    }
    KZ_ASSERT_EQ(totalSize, bottom.size());
    top_.init(1, numHeatMaps, 1, RESULT_SIZE);
    const float* map = bottom.data();
    for (int i = 0; i < numHeatMaps; ++i) {
        const KZ::Size& size = heatMapsSizes_[static_cast<size_t>(i)];
        const KZ::RelativeLocation& location = relativeLocations_[static_cast<size_t>(i)];
        float* result = top_.data(0, i, 0, 0);
        if (region_ != KZ::Rect()) {
            computeRegionPosition(map, result, location, size, i);
        } else {
            computePosition(map, result, location, size, i);
        }
        map += size.area();
    }
}

KZ::BasePoint<float> HeatMapPosition::denormHeatMap(const float* map, KZ::Image& image) {
    int largest = 0;
    KZ::PointF peak;
    for (int y = 0; y < image.height(); ++y) {
        unsigned char* row = image.data(0, y);
        for (int x = 0; x < image.width(); ++x) {
            const int value = to8Bits(*map++);
            row[x] = static_cast<unsigned char>(std::min(std::max(value, 0), 255));
            if (value <= largest) continue;
            largest = value;
            peak = KZ::PointF(static_cast<float>(x), static_cast<float>(y));
        }
    }
    return peak;
}

bool HeatMapPosition::heatMapToResult(KZ::Image& image, const KZ::RelativeLocation& location,
                                      KZ::BasePoint<float>& point, float* result) {
    const float px = std::trunc(point.x), py = std::trunc(point.y);
    float sum = 0, sx = 0, sy = 0;
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        const unsigned char* row = image.data(0, y);
        for (int x = 0; x < image.width(); ++x) {
            const float dx = x - px, dy = y - py;
            if (!(std::sqrt(dx * dx + dy * dy) < RADIUS)) continue;
            sum += row[x];
            sx += static_cast<float>(x) * row[x];
            sy += static_cast<float>(y) * row[x];
            ++count;
        }
    }
    if (sum == 0 || count == 0) return false;
    point = KZ::PointF(sx / sum, sy / sum);
    const KZ::PointF p = location.getPointInverse(image.size(), point);
    const float patchWidth = static_cast<float>(patchSize_.width);
    const float patchHeight = static_cast<float>(patchSize_.height);
    result[0] = (patchWidth - 1) * 0.5f + p.x * patchWidth;
    result[1] = (patchHeight - 1) * 0.5f + p.y * patchHeight;
    result[2] = sum / static_cast<float>(count);
    return true;
}

void HeatMapPosition::computePosition(const float* map, float* result,
                                      const KZ::RelativeLocation& location, const KZ::Size& size,
                                      int) {
    shape(map_, mapPixels_, size);
    KZ::PointF point = denormHeatMap(map, map_);
    if (!heatMapToResult(map_, location, point, result)) zeroResult(result);
}

void HeatMapPosition::computeRegionPosition(const float* map, float* result,
                                            const KZ::RelativeLocation& location,
                                            const KZ::Size& size, int index) {
    if (index % 2 == 0) {
        shape(heldMap_, heldPixels_, size);
        denormHeatMap(map, heldMap_);
        heldLocation_ = location;
        heldResult_ = result;
        // Stays when the partner does not come.
        zeroResult(result);
        return;
    }
    KZ_ASSERT(heldResult_, "the first map of the pair is missing");
    shape(map_, mapPixels_, size);
    denormHeatMap(map, map_);
    KZ::PointF first, second;
    searchPairPoints(first, second, map_);
    if (!heatMapToResult(heldMap_, heldLocation_, first, heldResult_)) zeroResult(heldResult_);
    if (!heatMapToResult(map_, location, second, result)) zeroResult(result);
}

void HeatMapPosition::searchPairPoints(KZ::BasePoint<float>& first, KZ::BasePoint<float>& second,
                                       KZ::Image& secondMap) {
    int best = -1;
    for (int y = 0; y < heldMap_.height(); ++y) {
        for (int x = 0; x < heldMap_.width(); ++x) {
            const int value = *heldMap_.data(x, y);
            if (value == 0) continue;
            const int left = std::max(x + region_.left, 0), top = std::max(y + region_.top, 0);
            const int right = std::min(x + region_.right, secondMap.width() - 1);
            const int bottom = std::min(y + region_.bottom, secondMap.height() - 1);
            for (int y2 = top; y2 <= bottom; ++y2) {
                const unsigned char* row = secondMap.data(0, y2);
                for (int x2 = left; x2 <= right; ++x2) {
                    if (value + row[x2] <= best) continue;
                    best = value + row[x2];
                    first = KZ::PointF(static_cast<float>(x), static_cast<float>(y));
                    second = KZ::PointF(static_cast<float>(x2), static_cast<float>(y2));
                }
            }
        }
    }
}

void HeatMapPosition::serialize(KZ::ArchiveO& archive) const {
    archive& patchSize_;
    archive.save(heatMapsSizes_);
    archive.save(relativeLocations_);
}

void HeatMapPosition::serialize(KZ::ArchiveI& archive) {
    archive& patchSize_;
    archive.load(&heatMapsSizes_);
    if (!archive.getVersion().empty() && archive.getVersion() < "Version 4") {
        std::vector<OldRelativeLocation> old;
        archive.load(&old);
        relativeLocations_.clear();
        for (const OldRelativeLocation& place : old) {
            relativeLocations_.push_back(
                placeOf(KZ::RectF(place.x, place.y, place.x + place.width, place.y + place.height),
                        patchSize_));
        }
    } else {
        archive.load(&relativeLocations_);
    }
    KZ_ASSERT_EQ(heatMapsSizes_.size(), relativeLocations_.size());
}

KZ::SharedPtr<BaseLayer> HeatMapPosition::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    HeatMapPosition& layer = static_cast<HeatMapPosition&>(*copy);
    layer.patchSize_ = patchSize_;
    layer.heatMapsSizes_ = heatMapsSizes_;
    layer.relativeLocations_ = relativeLocations_;
    layer.region_ = region_;
    return copy;
}

bool HeatMapPosition::compare(const BaseLayer& other) const {
    const HeatMapPosition& layer = static_cast<const HeatMapPosition&>(other);
    const auto same = [](const KZ::RelativeLocation& a, const KZ::RelativeLocation& b) {
        return a.zoom == b.zoom && a.shift == b.shift && a.angle == b.angle &&
               a.targetAspect == b.targetAspect && a.sourceAspect == b.sourceAspect;
    };
    return patchSize_ == layer.patchSize_ && heatMapsSizes_ == layer.heatMapsSizes_ &&
           std::equal(relativeLocations_.begin(), relativeLocations_.end(),
                      layer.relativeLocations_.begin(), layer.relativeLocations_.end(), same);
}

void HeatMapPosition::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    stream << "HeatMapPosition& " << functionName
           << "()\n{\n    static HeatMapPosition heatMapPosition(\"" << name()
           << "\");\n    static bool filled = false;\n    if (filled)\n"
              "    {\n        return heatMapPosition;\n    }\n    filled = true;\n"
           << "    heatMapPosition.setPatchSize(KZ::" << patchSize_ << ");\n";
    // Without a patch the maps came from the bottom, and will again.
    const size_t numHeatMaps = patchSize_ == KZ::Size() ? 0 : heatMapsSizes_.size();
    for (size_t i = 0; i < numHeatMaps; ++i) {
        const KZ::RelativeLocation& place = relativeLocations_[i];
        stream << "    heatMapPosition.addHeatmap(KZ::" << heatMapsSizes_[i]
               << ", KZ::RelativeLocation(" << KZ::floatLiteral(place.zoom) << ", KZ::PointF("
               << KZ::floatLiteral(place.shift.x) << ", " << KZ::floatLiteral(place.shift.y)
               << "), " << KZ::floatLiteral(place.angle) << ", "
               << KZ::floatLiteral(place.targetAspect) << ", "
               << KZ::floatLiteral(place.sourceAspect) << "));\n";
    }
    stream << "    return heatMapPosition;\n}\n\n";
}
