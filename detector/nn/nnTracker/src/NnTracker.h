#pragma once

#include <string>
#include <vector>

#include "BaseDetector.h"
#include "DetectorData.h"
#include "DetectorResult.h"
#include "KZ_BaseDetector.h"
#include "KZ_ImageData.h"
#include "KZ_NumericState.h"
#include "KZ_RelativeLocation.h"
#include "KZ_StateAggregator.h"
#include "LocationState.h"
#include "NnDetector.h"

/// Runs a network on the patch of the frame that a location describes and, by its type, corrects
/// the location or decides whether the object is real.
class NnTracker : public BaseDetector, public KZ::BaseDetector {
public:
    struct Type {
        enum Value {
            UNDEFINED = 0,
            POSITION = 1,
            REGRESSION_LOCATION = 2,
            LOCATION = 3,
            LOCATION_ANGLE = 4,
            LOCATION_SIZE = 5,
            ZOOM = 6,
            ZOOM_ANGLE = 7,
            SIDE = 8,
            VERIFIER = 9,
            SKELETON_HEAT_MAPS = 10,
            SKELETON = 11,
            STEREO_SKELETON = 12,
            HAND_DISPARITY = 13,
            MT_CNN = 14
        };
    };

    struct _DisparityState {};
    struct _VerifiedState {};
    struct _MtCnnAlignment {};

    struct Parameters {
        Type::Value type;
        KZ::SharedPtr<NnDetector> nnDetector;
        KZ::SharedPtr<KZ::ImageData> imageData;        ///< frame of the state-driven `detect`
        KZ::SharedPtr<KZ::ImageData> stereoImageData;  ///< frame of the second camera, or empty
        KZ::RelativeLocation relativeLocation;         ///< from the location to the patch's
        KZ::RelativeLocation reverseRelativeLocation;  ///< and back
        float threshold;                               ///< of the verifying types
        bool fitToImage;   ///< moves the location so that the turned patch lies in the frame
        bool tryMirrored;  ///< tries the mirrored patch when the first try does not verify

        /// The way back is `relativeLocation` reversed.
        Parameters(Type::Value type, const KZ::SharedPtr<NnDetector>& nnDetector,
                   const KZ::SharedPtr<KZ::ImageData>& imageData,
                   const KZ::RelativeLocation& relativeLocation, float threshold, bool fitToImage,
                   bool tryMirrored);
        Parameters(Type::Value type, const KZ::SharedPtr<NnDetector>& nnDetector,
                   const KZ::SharedPtr<KZ::ImageData>& imageData,
                   const KZ::RelativeLocation& relativeLocation,
                   const KZ::RelativeLocation& reverseRelativeLocation, float threshold,
                   bool fitToImage, bool tryMirrored);
    };

    explicit NnTracker(const Parameters& parameters) : parameters_(parameters) {}
    NnTracker(Type::Value type, const KZ::SharedPtr<NnDetector>& nnDetector,
              const KZ::RelativeLocation& relativeLocation, float threshold, bool fitToImage,
              bool tryMirrored);

    Parameters& parameters() { return parameters_; }

    /// Takes the location from `states`, and leaves location, score and the type's own results
    /// there.
    void detect(KZ::SharedPtr<KZ::StateAggregator>& states) override;
    /// Works on the location of `result`. A verifier that says no resets the result.
    void detect(DetectorData& data, const KZ::DetectRegion& region,
                DetectorResult& result) override;
    /// The work. A location that is not set changes nothing.
    void detect(const KZ::Image& image, LocationState& location, bool& verified, float& score);
    std::string name() override;

    void fixPosition(KZ::Image& patch, LocationState& location, float& score);
    void fixRegressionLocation(KZ::Image& patch, LocationState& location, float& score);
    void fixLocation(KZ::Image& patch, LocationState& location, float& score);
    void fixLocationAngle(KZ::Image& patch, LocationState& location, float& score);
    void fixLocationSize(KZ::Image& patch, LocationState& location, float& score);
    void fixZoom(KZ::Image& patch, LocationState& location, float& score);
    void fixZoomAngle(KZ::Image& patch, LocationState& location, float& score);
    void fixSide(KZ::Image& patch, LocationState& location, float& score);
    void fixVerify(KZ::Image& patch, LocationState& location, bool& verified, float& score);
    void fixSkeletonFromHeatMaps(KZ::Image& patch, LocationState& location, float& score);
    void detectSkeleton(KZ::Image& patch, LocationState& location, float& score, bool stereo);
    void handDisparity(KZ::Image& patch, LocationState& location, float& score);
    void detectMtCnn(KZ::Image& patch, LocationState& location, bool& verified, float& score);

    /// One point per plane of `heatMaps`, in patch pixels, with the mass around it as its score.
    void findSkeletonPoints(const KZ::Image& patch, const KZ::Blob& heatMaps,
                            std::vector<float>& scores,
                            std::vector<KZ::BasePoint<float>>& points) const;

private:
    KZ::Size patchSize() const;
    void fit(const KZ::Image& image, const KZ::Size& size, LocationState& location) const;
    void run(KZ::Image& patch, LocationState& location, bool& verified, float& score);
    void stereoSkeleton(KZ::Image& patch, LocationState& location, float& score);
    std::vector<float> results(const KZ::Image& patch) const;
    KZ::StateAggregator& states();

    Parameters parameters_;
    KZ::SharedPtr<KZ::StateAggregator> stateAggregator_;
};
