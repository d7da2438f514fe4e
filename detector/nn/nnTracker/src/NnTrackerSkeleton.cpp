// The types that find the points of a hand, and its place in a second camera's frame.

#include <algorithm>

#include "KZ_Assert.h"
#include "KZ_CopyImage.h"
#include "NnTracker.h"

namespace {

using PointsState = KZ::InheritedState<std::vector<KZ::PointF>, KZ::_SkeletonState>;
using ScoresState = KZ::InheritedState<std::vector<float>, KZ::_ScoresState>;
using DisparityState = KZ::NumericState<float, NnTracker::_DisparityState>;

const int WINDOW = 3;
const float SMALLEST_MASS = 0.0001f;
const float HEAT_MAP_STEP = 8;

KZ::Point peakOf(const float* plane, int width, int height) {
    KZ::Point peak;
    float largest = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (!(plane[y * width + x] > largest)) continue;
            largest = plane[y * width + x];
            peak = KZ::Point(x, y);
        }
    }
    return peak;
}

// Centre of mass around the peak; `mass` receives the sum of the values.
KZ::PointF centroid(const float* plane, int width, int height, const KZ::Point& peak, float& mass) {
    float sum = SMALLEST_MASS, sx = 0, sy = 0;
    for (int y = std::max(peak.y - WINDOW, 0); y <= std::min(peak.y + WINDOW, height - 1); ++y) {
        for (int x = std::max(peak.x - WINDOW, 0); x <= std::min(peak.x + WINDOW, width - 1); ++x) {
            const float value = plane[y * width + x];
            sum += value;
            sx += value * static_cast<float>(x);
            sy += value * static_cast<float>(y);
        }
    }
    mass = sum;
    return KZ::PointF(sx / sum, sy / sum);
}

// Two pictures in one, the second behind (or below) the first.
void paste(const KZ::Image& part, KZ::Image& whole, const KZ::Point& place) {
    KZ::copyImage(part, whole, part.rect(), place);
}

}  // namespace

void NnTracker::findSkeletonPoints(const KZ::Image& patch, const KZ::Blob& heatMaps,
                                   std::vector<float>& scores,
                                   std::vector<KZ::BasePoint<float>>& points) const {
    const int width = heatMaps.width(), height = heatMaps.height();
    const float patchWidth = static_cast<float>(patch.width());
    for (int c = 0; c < heatMaps.channels(); ++c) {
        const float* plane = heatMaps.data(0, c, 0, 0);
        float mass = 0;
        const KZ::PointF centre =
            centroid(plane, width, height, peakOf(plane, width, height), mass);
        KZ::PointF p(static_cast<float>(patch.width() / 2) +
                         (centre.x - static_cast<float>(width / 2)) * HEAT_MAP_STEP,
                     static_cast<float>(patch.height() / 2) +
                         (centre.y - static_cast<float>(height / 2)) * HEAT_MAP_STEP);
        // To units of the patch's width and back: it rounds.
        p = KZ::PointF(p.x / patchWidth, p.y / patchWidth);
        points.push_back(KZ::PointF(p.x * patchWidth, p.y * patchWidth));
        scores.push_back(mass);
    }
}

void NnTracker::fixSkeletonFromHeatMaps(KZ::Image& patch, LocationState& location, float& score) {
    PointsState& points = states().get<PointsState>();
    ScoresState& scores = states().get<ScoresState>();
    points.clear();
    scores.clear();
    findSkeletonPoints(patch, parameters_.nnDetector->detect(patch), scores, points);
    for (KZ::PointF& point : points) point = location.getPoint(patch.size(), point);
    if (scores.empty()) return;
    score = *std::min_element(scores.begin(), scores.end());
    if (!(score > parameters_.threshold)) points.clear();
}

void NnTracker::detectSkeleton(KZ::Image& patch, LocationState& location, float& score,
                               bool stereo) {
    const std::vector<float> nnResults = results(patch);
    KZ_ASSERT_EQ(nnResults.size() % 3, 0);
    const size_t count = nnResults.size() / 3;
    PointsState& points = states().get<PointsState>();
    ScoresState& scores = states().get<ScoresState>();
    points.resize(count);
    scores.resize(count);
    const KZ::Size size(patch.width(), stereo ? patch.height() / 2 : patch.height());
    float sum = 0;
    for (size_t i = 0; i < count; ++i) {
        points[i] = location.getPoint(size, KZ::PointF(nnResults[3 * i], nnResults[3 * i + 1]));
        scores[i] = nnResults[3 * i + 2];
        sum += scores[i];
    }
    score = count == 0 ? 0 : sum / static_cast<float>(count);
}

void NnTracker::stereoSkeleton(KZ::Image& patch, LocationState& location, float& score) {
    KZ::ObjectLocation partner = location;
    partner.center.x += states().get<DisparityState>().value;
    KZ::Image second;
    partner.getPatch(parameters_.stereoImageData->get(), patch.size(), second, true);
    KZ::Image both(KZ::Size(patch.width(), 2 * patch.height()), patch.colorMode());
    paste(second, both, KZ::Point(0, 0));
    paste(patch, both, KZ::Point(0, patch.height()));
    detectSkeleton(both, location, score, true);
}

void NnTracker::handDisparity(KZ::Image& patch, LocationState& location, float& score) {
    KZ::ObjectLocation strip = location;
    strip.center.x += strip.size.width;
    strip.size.width *= 3;
    const KZ::Size stripSize(3 * patch.width(), patch.height());
    KZ::Image second;
    strip.getPatch(parameters_.stereoImageData->get(), stripSize, second, true);
    KZ::Image both(KZ::Size(4 * patch.width(), patch.height()), patch.colorMode());
    paste(patch, both, KZ::Point(0, 0));
    paste(second, both, KZ::Point(patch.width(), 0));
    KZ::Image turned;
    KZ::transpose(both, turned);
    const std::vector<float> nnResults = results(turned);
    KZ_ASSERT_EQ(nnResults.size(), 3);
    const KZ::PointF mapped = strip.getPoint(stripSize, KZ::PointF(nnResults[0], nnResults[1]));
    states().get<DisparityState>().value = mapped.x - location.center.x;
    score = nnResults[2];
}
