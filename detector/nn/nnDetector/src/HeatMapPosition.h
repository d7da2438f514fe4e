#pragma once

#include "BaseLayer.h"
#include "KZ_Image.h"
#include "KZ_RelativeLocation.h"

/// Key points from heat maps: one row (x, y, confidence) per map, in pixels of the patch that the
/// network looked at; three zeros where a map shows nothing. With a search region the maps are
/// taken in pairs, and the two points of a pair are sought together.
class HeatMapPosition : public BaseLayer {
public:
    explicit HeatMapPosition(const std::string& name) : BaseLayer(name) {}
    /// Equal scales, else an assertion; they do not enter the result.
    HeatMapPosition(const std::string& name, float scaleX, float scaleY);

    /// Offsets from a point of a pair's first map to where its partner may lie, bounds included.
    void setRegion(KZ::Rect& region) { region_ = region; }
    void setPatchSize(const KZ::Size& size) { patchSize_ = size; }
    /// A map of `size` at its place in the patch. The patch's size must be set before.
    void addHeatmap(const KZ::Size& size, const KZ::RelativeLocation& location);
    void addHeatmap(const KZ::Size& size, const KZ::Rect& rect);

    void forward() override;
    std::string type() const override { return "HeatMapPosition"; }
    void serialize(KZ::ArchiveO& archive) const override;
    void serialize(KZ::ArchiveI& archive) override;
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override;

    void computeMultiPosition(const KZ::Blob& bottom);
    void computeRegionPosition(const float* map, float* result,
                               const KZ::RelativeLocation& location, const KZ::Size& size,
                               int index);
    void computePosition(const float* map, float* result, const KZ::RelativeLocation& location,
                         const KZ::Size& size, int index);
    /// Refines `point` to the centre of mass around it and writes the result in patch pixels.
    bool heatMapToResult(KZ::Image& image, const KZ::RelativeLocation& location,
                         KZ::BasePoint<float>& point, float* result);
    /// The pair of pixels, one of the held map and its partner in `secondMap`, of the highest
    /// combined value; the first such pair in scan order.
    void searchPairPoints(KZ::BasePoint<float>& first, KZ::BasePoint<float>& second,
                          KZ::Image& secondMap);
    /// The map in 8 bits (value * 256, clamped); returns where its maximum is.
    KZ::BasePoint<float> denormHeatMap(const float* map, KZ::Image& image);

private:
    void fillFromBottom(const KZ::Blob& bottom);

    KZ::Size patchSize_;
    std::vector<KZ::Size> heatMapsSizes_;
    std::vector<KZ::RelativeLocation> relativeLocations_;
    KZ::Image heldMap_;
    KZ::RelativeLocation heldLocation_;
    KZ::Rect region_;
    float* heldResult_ = nullptr;
    KZ::Image map_;
    std::vector<unsigned char> mapPixels_;
    std::vector<unsigned char> heldPixels_;
};

/// How a map's place was stored before "Version 4": its rectangle in the patch.
struct OldRelativeLocation {
    float x, y, width, height;
};

namespace KZ {
template <>
struct IsArchiveRecord<OldRelativeLocation> : std::true_type {};
}  // namespace KZ
