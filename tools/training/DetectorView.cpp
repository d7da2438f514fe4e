#include "DetectorView.h"

#include <cstring>

#include "KZ_ColorConversion.h"
#include "KZ_RotateImage.h"
#include "KZ_Yuv420Converter.h"

namespace training {

void DetectorView::make(const cv::Mat& frame, bool withMargin) {
    const int width = frame.cols, height = frame.rows;
    const size_t luma = static_cast<size_t>(width) * height;
    buffer_.assign(luma + luma / 2, 128);
    for (int y = 0; y < height; ++y) {
        std::memcpy(buffer_.data() + static_cast<size_t>(y) * width, frame.ptr(y), width);
    }
    KZ::Image camera;
    camera.createRef(buffer_.data(), KZ::Size(width, height + height / 2), KZ::COLOR_MODE_MONO);
    KZ::yuv420toBgr(camera, bgr_, false, false, false);
    KZ::toMono(bgr_, mono_, KZ::Rect());

    const float room = withMargin ? 1.4f : 1.0f;
    const KZ::Size size(static_cast<int>(static_cast<float>(static_cast<int>(width / ZOOM)) * room),
                        static_cast<int>(height / ZOOM));
    view_.create(size, KZ::COLOR_MODE_MONO);
    const KZ::PointF centre(static_cast<float>(width / 2), static_cast<float>(height / 2));
    KZ::rotateAndZoomImage(mono_, view_, -0.0f, ZOOM, ZOOM, centre, true);
    frameCentre_ = {centre.x, centre.y};
    viewCentre_ = {(size.width - 1) * 0.5, (size.height - 1) * 0.5};
}

cv::Point2d DetectorView::toView(const cv::Point2d& frame) const {
    return (frame - frameCentre_) / static_cast<double>(ZOOM) + viewCentre_;
}

cv::Point2d DetectorView::toFrame(const cv::Point2d& view) const {
    return (view - viewCentre_) * static_cast<double>(ZOOM) + frameCentre_;
}

}  // namespace training
