#pragma once

#include <opencv2/core.hpp>
#include <vector>

#include "KZ_Image.h"

namespace training {

/// What the detector's chain sees of a grey camera frame: the library's own frame intake followed
/// by its rotation and zoom, for a level phone at the default distances.
class DetectorView {
public:
    /// Frame pixels per view pixel at the default distances.
    static constexpr float ZOOM = 1.152f;

    /// `frame` is 8-bit grey, of even width and height. With `withMargin` the view has the room
    /// beside the frame that the detector gives it; small cuts of a frame go without.
    void make(const cv::Mat& frame, bool withMargin);

    const KZ::Image& image() const { return view_; }
    /// Frame point to view point and back, in coordinates of pixel centres.
    cv::Point2d toView(const cv::Point2d& frame) const;
    cv::Point2d toFrame(const cv::Point2d& view) const;

private:
    std::vector<unsigned char> buffer_;
    KZ::Image bgr_, mono_, view_;
    cv::Point2d frameCentre_, viewCentre_;
};

}  // namespace training
