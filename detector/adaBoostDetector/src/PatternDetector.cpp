#include "PatternDetector.h"

#include <algorithm>

#include "AdaGrouping.h"
#include "ClassifierRing.h"
#include "DetectorData.h"
#include "DetectorResult.h"
#include "KZ_Assert.h"
#include "KZ_Check.h"
#include "KZ_IntegralImage.h"
#include "KZ_PixelArithmetic.h"
#include "KZ_Truncate.h"

PatternDetector::PatternDetector() : parameters_(1, 1, 0.2f, KZ::RangeF()) {
    PatternDetector::reset();
}

PatternDetector::PatternDetector(ClassifierRing* ring, const KZ::AngleRange& angleRange,
                                 const KZ::Side::Value& side, const Parameters& parameters)
    : parameters_(parameters) {
    PatternDetector::reset();
    pClassifiers_ = ring->getClassifiers(angleRange, side);
}

void PatternDetector::reset() {
    pRmctPyramid_ = nullptr;
    motionPyramid_ = nullptr;
    integral_ = nullptr;
    motionIntegral_ = nullptr;
    motionClassifier_ = nullptr;
}

std::string PatternDetector::name() {
    return "PatternDetector " + (pClassifiers_.empty() ? "" : pClassifiers_.front()->name);
}

void PatternDetector::addClassifier(CascadedClassifier* classifier) {
    pClassifiers_.push_back(classifier);
    // The layers have copies of the list.
    layerPatternDetectors_.clear();
    pRmctPyramid_ = nullptr;
}

void PatternDetector::clearClassifiers() {
    pClassifiers_.clear();
    layerPatternDetectors_.clear();
    pRmctPyramid_ = nullptr;
}

int PatternDetector::getClassifierThreshold() const {
    if (pClassifiers_.empty() || pClassifiers_.front()->strongClassifiers.empty())
        return KZ::maxValue<int>();
    return pClassifiers_.front()->strongClassifiers.back().threshold;
}

void PatternDetector::setClassifierThreshold(int threshold) {
    if (threshold == KZ::maxValue<int>()) return;
    for (CascadedClassifier* cascade : pClassifiers_)
        if (!cascade->strongClassifiers.empty())
            cascade->strongClassifiers.back().setThreshold(threshold);
}

void PatternDetector::setPyramid(const KZ::RmctPyramid& rmctPyramid,
                                 const KZ::RmctPyramid* motion) {
    // Cascades keep what they computed for the number of a layer, whatever its zoom.
    KZ_ASSERT(!pRmctPyramid_ || !pRmctPyramid_->numLayers() || !rmctPyramid.numLayers() ||
                  KZ::equal(pRmctPyramid_->zoomAtLayer(0), rmctPyramid.zoomAtLayer(0)),
              "your can't change start zoom, possible hash colizion for haar");
    pRmctPyramid_ = &rmctPyramid;
    motionPyramid_ = motion;
    const size_t numLayers = rmctPyramid.numLayers();
    if (layerPatternDetectors_.size() == numLayers) return;
    std::vector<LayerPatternDetector> layers(numLayers);
    for (size_t i = 0; i < numLayers; ++i) {
        layers[i].setClassifiers(pClassifiers_);
        layers[i].setActiveZoom(rmctPyramid.zoomAtLayer(static_cast<int>(i)));
    }
    layerPatternDetectors_.swap(layers);
}

void PatternDetector::setData(const KZ::RmctPyramid& rmctPyramid, const KZ::Image& integral,
                              const KZ::Image* motionIntegral, const KZ::RmctPyramid* motion) {
    KZ_CHECK_COLOR_MODE(integral, KZ::COLOR_MODE_INTEGRAL);
    setPyramid(rmctPyramid, motion);
    integral_ = &integral;
    motionIntegral_ = motionIntegral;
    for (size_t i = 0; i < layerPatternDetectors_.size(); ++i) {
        LayerPatternDetector& layer = layerPatternDetectors_[i];
        layer.setData(&integral, &rmctPyramid, static_cast<int>(i), motionIntegral, motion);
        layer.setMotionClassifier(motionClassifier_);
    }
}

KZ::Rect PatternDetector::getDataRoi(const DetectorData& data, const KZ::DetectRegion& region) {
    if (!pRmctPyramid_) setPyramid(data.rmctPyramid, nullptr);
    KZ_ASSERT_NE(layerPatternDetectors_.size(), 0);
    KZ::Rect roi;
    bool first = true;
    for (const LayerPatternDetector& layer : layerPatternDetectors_) {
        if (!layer.inDetectRegion(region)) continue;
        const KZ::Rect part = layer.getDataRoi(data, region);
        if (part.area() == 0) continue;
        roi = first ? part : roi.united(part);
        first = false;
    }
    return roi;
}

void PatternDetector::detect(DetectorData& data, const KZ::DetectRegion& region,
                             DetectorResult& result) {
    if (!data.integral.isCreated()) {
        KZ_LOG_DEBUG("Integral image was not created");
        return;
    }
    if (parameters_.useMotion) {
        KZ::absDiff(data.mono, data.previousMono, motionDifferenceImage_);
        KZ::computeIntegral(motionDifferenceImage_, motionIntegralImage_);
        setData(data.rmctPyramid, data.integral, &motionIntegralImage_, nullptr);
    } else {
        setData(data.rmctPyramid, data.integral, nullptr, nullptr);
    }
    detect(objects_, region);
    if (objects_.empty()) {
        result.reset();
        return;
    }
    const AdaObject& best = objects_.front();
    result.location = best.toLocationState();
    result.name = best.name;
    result.found = true;
    result.score = 1.0f - 0.5f / static_cast<float>(best.weight);
}

void PatternDetector::detect(std::vector<AdaObject>& objects, KZ::DetectRegion detectRegion) {
    KZ_ASSERT(integral_, "Integral image was not created");
    detectRegion.rect = detectRegion.rect.clipped(KZ::integralRect(*integral_));
    KZ_ASSERT(detectRegion.zoomRange == KZ::RangeF() || parameters_.widthRange == KZ::RangeF(),
              "detectRegion.zoomRange and parameters_.widthRange are set. This is not supported. "
              "Values: "
                  << detectRegion.zoomRange << " " << parameters_.widthRange);
    detectRegion.widthRange.min = std::max(detectRegion.widthRange.min, parameters_.widthRange.min);
    detectRegion.widthRange.max = std::min(detectRegion.widthRange.max, parameters_.widthRange.max);

    objects.clear();
    for (size_t i = 0; i < layerPatternDetectors_.size(); ++i) {
        detectLayer(i, detectRegion, hits_);
        objects.insert(objects.end(), hits_.begin(), hits_.end());
    }
    objects = groupAdaObjects(objects, parameters_.minNeighbors, parameters_.groupEps);
}

// The hits of a layer, in frame coordinates; those of one object become one.
void PatternDetector::detectLayer(size_t layer, const KZ::DetectRegion& region,
                                  std::vector<AdaObject>& hits) {
    layerPatternDetectors_[layer].detect(hits, region, parameters_.scanStep);
    if (hits.empty()) return;
    if (parameters_.minNeighbors >= 1) hits = groupAdaObjects(hits, 1, parameters_.groupEps);
    const float zoom = pRmctPyramid_->zoomAtLayer(static_cast<int>(layer));
    for (AdaObject& hit : hits) {
        hit.center = KZ::Point(KZ::truncatedToInt(zoom * static_cast<float>(hit.center.x)),
                               KZ::truncatedToInt(zoom * static_cast<float>(hit.center.y)));
        hit.zoom = zoom;
    }
}

std::ostream& operator<<(std::ostream& stream, const PatternDetector::Parameters& parameters) {
    return stream << "PatternDetector::Parameters(" << parameters.scanStep << ", "
                  << parameters.minNeighbors << ", " << parameters.groupEps << ", "
                  << parameters.widthRange << ")";
}
