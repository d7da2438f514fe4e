#include "PalmFrame.h"

#include <algorithm>

#include "Composer.h"
#include "NegativeFrames.h"
#include "Window.h"

using training::NegativeFrames;

ShownPalm drawPalmFrame(const cv::Mat& photo, const training::ManifestRow& row,
                        const cv::Mat& scene, uint64_t seed, cv::Mat& frame) {
    frame.create(NegativeFrames::HEIGHT, NegativeFrames::WIDTH, CV_8U);
    training::coverWithScene(scene, frame);
    training::Placement placement;
    placement.anchor = {row.cx, row.cy};
    placement.scale = std::min(static_cast<double>(frame.cols) / photo.cols,
                               static_cast<double>(frame.rows) / photo.rows);
    const double palm = row.palmWidth * placement.scale;
    if (palm >= MIN_PALM && palm <= MAX_PALM) {
        const cv::Point2d middle((photo.cols - 1) * 0.5, (photo.rows - 1) * 0.5);
        placement.position = cv::Point2d((frame.cols - 1) * 0.5, (frame.rows - 1) * 0.5) +
                             (placement.anchor - middle) * placement.scale;
    } else {
        training::Random random(seed);
        const double width = random.logUniform(MIN_PALM, MAX_PALM);
        const double margin = width * training::WindowShape::PER_PALM / 2;
        placement.scale = width / row.palmWidth;
        placement.position = {random.uniform(margin, frame.cols - margin),
                              random.uniform(margin, frame.rows - margin)};
    }
    const double feather = 0.05 * std::min(photo.cols, photo.rows);
    training::paste(photo, placement, feather, 1, frame);
    return {placement.position, row.palmWidth * placement.scale};
}
