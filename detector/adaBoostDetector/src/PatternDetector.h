#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "AdaObject.h"
#include "BaseDetector.h"
#include "CascadedClassifier.h"
#include "KZ_AngleRange.h"
#include "KZ_BaseRange.h"
#include "KZ_Image.h"
#include "KZ_RmctPyramid.h"
#include "KZ_Side.h"
#include "LayerPatternDetector.h"

class ClassifierRing;

/// Finds objects in a frame: scans each layer of the RMCT pyramid with a set of cascades, groups
/// the hits, and reports the best group.
///
/// It keeps a pointer to the pyramid of the last frame, which has to live until the next frame or
/// until `reset`. The pyramid's first zoom must not change but across `reset`.
class PatternDetector : public BaseDetector {
public:
    struct Parameters {
        int scanStep;            ///< window step in layer pixels
        int minNeighbors;        ///< raw windows that a group must have; below 1: no grouping
        float groupEps;          ///< grouping tolerance, see `Similar`
        KZ::RangeF widthRange;   ///< object widths, in frame pixels
        bool useMotion = false;  ///< scan only where the frame differs from the one before

        Parameters(int step, int neighbors, float eps, const KZ::RangeF& widths)
            : scanStep(step), minNeighbors(neighbors), groupEps(eps), widthRange(widths) {}
    };

    /// Every window, groups of any size, all widths, and no cascade yet.
    PatternDetector();
    /// The cascades of `ring`, which must outlive the detector, for these angles and sides.
    PatternDetector(ClassifierRing* ring, const KZ::AngleRange& angleRange,
                    const KZ::Side::Value& side, const Parameters& parameters);

    /// The cascade must outlive the detector.
    void addClassifier(CascadedClassifier* classifier);
    void clearClassifiers();
    Parameters& parameters() { return parameters_; }
    /// Threshold of the last stage: the first cascade's; 0x7fffffff without a stage.
    int getClassifierThreshold() const;
    /// Sets it in every cascade; 0x7fffffff leaves them as they are.
    void setClassifierThreshold(int threshold);

    /// A first zoom other than the last pyramid's is an assertion, as is a detector without
    /// cascades. `motion` may be null.
    void setPyramid(const KZ::RmctPyramid& rmctPyramid, const KZ::RmctPyramid* motion);
    void setMotionOptimization(CascadedClassifier* classifier) { motionClassifier_ = classifier; }
    /// Takes a frame's images. `motionIntegral` and `motion` may be null.
    void setData(const KZ::RmctPyramid& rmctPyramid, const KZ::Image& integral,
                 const KZ::Image* motionIntegral, const KZ::RmctPyramid* motion);
    /// Replaces `objects` by the groups in the frame of `setData`, the heaviest first.
    void detect(std::vector<AdaObject>& objects, KZ::DetectRegion detectRegion);

    KZ::Rect getDataRoi(const DetectorData& data, const KZ::DetectRegion& region) override;
    /// Leaves `result` alone when the frame has no integral image.
    void detect(DetectorData& data, const KZ::DetectRegion& region,
                DetectorResult& result) override;
    void reset() override;
    std::string name() override;

private:
    void detectLayer(size_t layer, const KZ::DetectRegion& region, std::vector<AdaObject>& hits);

    Parameters parameters_;
    const KZ::RmctPyramid* pRmctPyramid_ = nullptr;
    const KZ::RmctPyramid* motionPyramid_ = nullptr;
    const KZ::Image* integral_ = nullptr;
    const KZ::Image* motionIntegral_ = nullptr;
    std::vector<LayerPatternDetector> layerPatternDetectors_;
    std::vector<CascadedClassifier*> pClassifiers_;
    CascadedClassifier* motionClassifier_ = nullptr;
    KZ::Image motionDifferenceImage_;
    KZ::Image motionIntegralImage_;
    std::vector<AdaObject> objects_;
    std::vector<AdaObject> hits_;
};

std::ostream& operator<<(std::ostream& stream, const PatternDetector::Parameters& parameters);
