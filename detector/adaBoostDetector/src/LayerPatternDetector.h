#pragma once

#include <vector>

#include "AbsFeature.h"
#include "AdaObject.h"
#include "CascadedClassifier.h"
#include "KZ_DetectRegion.h"
#include "KZ_Image.h"
#include "KZ_RmctPyramid.h"
#include "KZ_SharedPtr.h"

struct DetectorData;

/// The scan of one pyramid layer. Images and cascades belong to others and must outlive the calls.
class LayerPatternDetector {
public:
    /// At least one, or it is an assertion.
    void setClassifiers(std::vector<CascadedClassifier*> classifiers);
    void setActiveZoom(float newZoom) { zoom = newZoom; }
    void setMotionClassifier(CascadedClassifier* classifier) { pMotionClassifier_ = classifier; }
    /// Takes the images of `layer`. `motionIntegral`, of the size of `integral` or of half that
    /// size, and `motion` may be null.
    void setData(const KZ::Image* integral, const KZ::RmctPyramid* pyramid, int layer,
                 const KZ::Image* motionIntegral, const KZ::RmctPyramid* motion);

    /// True when the region wants objects of this layer's zoom and width.
    bool inDetectRegion(const KZ::DetectRegion& region) const;
    /// The part of the frame that `detect` reads for the region.
    KZ::Rect getDataRoi(const DetectorData& data, const KZ::DetectRegion& region) const;
    /// Replaces `out` by the windows that pass, centres in layer pixels. The region's rectangle is
    /// in frame pixels, `step` in layer pixels.
    void detect(std::vector<AdaObject>& out, const KZ::DetectRegion& region, int step);

    // Parts of `detect`; they append, and take the rectangle in layer pixels.

    void detectBase(std::vector<AdaObject>& out, const KZ::DetectRegion& region, int step);
    void detectStatic(std::vector<AdaObject>& out, const KZ::DetectRegion& region, int step);
    /// `detectBase` on those blocks where the motion integral tells of change.
    void detectWithMotionOptimization(std::vector<AdaObject>& out, const KZ::DetectRegion& region,
                                      int step);
    /// Runs the cascades only where the first feature of the motion classifier tells of change;
    /// `activateMotionStatic` comes first.
    void activateMotionStatic();
    void detectMotionStatic(std::vector<AdaObject>& out, const KZ::DetectRegion& region);

private:
    /// Frame coordinates of layer coordinates. Copies have a table of their own.
    class Shifts {
    public:
        Shifts() = default;
        Shifts(const Shifts& other) { *this = other; }
        Shifts& operator=(const Shifts& other);
        /// A table of `(int)(layerZoom * i)` for i below `newCount`.
        void fill(float layerZoom, int newCount);
        int operator[](int i) const { return values_[i]; }

    private:
        void copySharedShifts(const KZ::SharedArray<int>& from, KZ::SharedArray<int>& to) const;

        KZ::SharedArray<int> values_;
        int count_ = 0;
    };

    bool isMoving(const KZ::Rect& window) const;
    void scanMoving(CascadedClassifier& cascade, std::vector<AdaObject>& out,
                    const KZ::Rect& rect) const;

    int motionStep_ = 2;
    int reserved_ = 1;
    float zoom = 1;
    std::vector<CascadedClassifier*> pClassifiers_;
    CascadedClassifier* pMotionClassifier_ = nullptr;
    KZ::SharedArray<AbsFeature> motionFeature_;
    const KZ::Image* mono_ = nullptr;
    const KZ::Image* rmct_ = nullptr;
    const KZ::Image* pRmctMotion_ = nullptr;
    const KZ::Image* integral_ = nullptr;
    const KZ::Image* motionIntegral_ = nullptr;
    int motionScale_ = 1;
    Shifts shifts_;
};
