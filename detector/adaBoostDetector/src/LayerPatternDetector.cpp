#include "LayerPatternDetector.h"

#include <cstdlib>

#include "KZ_Assert.h"
#include "KZ_Truncate.h"

namespace {

int divided(int coordinate, float zoom) {
    return KZ::truncatedToInt(static_cast<float>(coordinate) / zoom);
}

int zoomed(float zoom, int length) {
    return KZ::truncatedToInt(zoom * static_cast<float>(length));
}

bool isCreated(const KZ::Image* image) {
    return image && image->isCreated();
}

}  // namespace

void LayerPatternDetector::setClassifiers(std::vector<CascadedClassifier*> classifiers) {
    pClassifiers_.swap(classifiers);
    KZ_ASSERT(pClassifiers_.size() > 0, "no static classifiers");
}

void LayerPatternDetector::setData(const KZ::Image* integral, const KZ::RmctPyramid* pyramid,
                                   int layer, const KZ::Image* motionIntegral,
                                   const KZ::RmctPyramid* motion) {
    mono_ = &pyramid->getMono(layer);
    rmct_ = &pyramid->getRmct(layer);
    zoom = pyramid->zoomAtLayer(layer);
    pRmctMotion_ = motion ? &motion->getRmct(layer) : nullptr;
    integral_ = integral;
    motionIntegral_ = motionIntegral;
    if (!motionIntegral) return;
    if (motionIntegral->width() == integral->width()) {
        motionScale_ = 1;
    } else if (std::abs(integral->width() / 2 - motionIntegral->width()) < 2) {
        motionScale_ = 2;
    } else {
        KZ_ASSERT(0, "integralImage.size() = " << integral->size() << "\nmotionIntegral.size() = "
                                               << motionIntegral->size());
    }
}

bool LayerPatternDetector::inDetectRegion(const KZ::DetectRegion& region) const {
    KZ_ASSERT(!pClassifiers_.empty(), "LayerPatternDetector classifiers empty");
    const float width = static_cast<float>(zoomed(zoom, pClassifiers_.front()->baseSize_.width));
    return region.zoomRange.min - 1e-5 < zoom && region.zoomRange.max > zoom &&
           region.widthRange.min - 1e-5 < width && region.widthRange.max > width;
}

KZ::Rect LayerPatternDetector::getDataRoi(const DetectorData&,
                                          const KZ::DetectRegion& region) const {
    KZ::Rect roi;
    bool first = true;
    for (const CascadedClassifier* cascade : pClassifiers_) {
        if (!inAngleSide(*cascade, region)) continue;
        const KZ::Rect& object = cascade->objectRect;
        const KZ::Rect grown(
            region.rect.left - zoomed(zoom, object.left),
            region.rect.top - zoomed(zoom, object.top),
            region.rect.right + zoomed(zoom, cascade->monoSize.width - object.right),
            region.rect.bottom + zoomed(zoom, cascade->monoSize.height - object.bottom));
        roi = first ? grown : roi.united(grown);
        first = false;
    }
    return roi;
}

void LayerPatternDetector::detect(std::vector<AdaObject>& out, const KZ::DetectRegion& region,
                                  int step) {
    out.clear();
    KZ_ASSERT(!pClassifiers_.empty(), "LayerPatternDetector classifiers empty");
    if (!inDetectRegion(region) || !isCreated(mono_)) return;
    if (pMotionClassifier_ && pRmctMotion_) activateMotionStatic();

    KZ::DetectRegion layerRegion = region;
    layerRegion.rect = KZ::Rect(divided(region.rect.left, zoom), divided(region.rect.top, zoom),
                                divided(region.rect.right, zoom), divided(region.rect.bottom, zoom))
                           .clipped(mono_->rect());
    if (isCreated(motionIntegral_)) {
        detectWithMotionOptimization(out, layerRegion, step);
    } else {
        detectBase(out, layerRegion, step);
    }
}

void LayerPatternDetector::detectBase(std::vector<AdaObject>& out, const KZ::DetectRegion& region,
                                      int step) {
    if (pMotionClassifier_ && isCreated(pRmctMotion_) && step == motionStep_) {
        detectMotionStatic(out, region);
    } else {
        detectStatic(out, region, step);
    }
}

void LayerPatternDetector::detectStatic(std::vector<AdaObject>& out, const KZ::DetectRegion& region,
                                        int step) {
    for (CascadedClassifier* cascade : pClassifiers_)
        if (inAngleSide(*cascade, region))
            cascade->addMatches(*rmct_, *mono_, *integral_, out, region.rect, zoom, step);
}
