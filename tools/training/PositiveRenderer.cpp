#include "PositiveRenderer.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "Composer.h"
#include "FrameExposure.h"

namespace training {

namespace {

/// The mean of a picture's outermost pixels.
double edgeMean(const cv::Mat& photo) {
    const int w = photo.cols, h = photo.rows;
    const double sum = cv::sum(photo.row(0))[0] + cv::sum(photo.row(h - 1))[0] +
                       cv::sum(photo.col(0))[0] + cv::sum(photo.col(w - 1))[0];
    return sum / (2 * (w + h));
}

/// The layers whose palms need no enlargement beyond 1.6 of the photograph's.
int usableLayers(double palmWidth, double layerPalm) {
    int layers = 1;
    double zoom = PYRAMID_STEP;
    while (layers < PositiveRenderer::LAYERS &&
           layerPalm * zoom * DetectorView::ZOOM <= 1.6 * palmWidth) {
        ++layers;
        zoom *= PYRAMID_STEP;
    }
    return layers;
}

Placement placementOf(const ManifestRow& row, double palmWidth, double turn, Random& random) {
    Placement placement;
    placement.anchor = {row.cx, row.cy};
    placement.scale = palmWidth / row.palmWidth;
    placement.mirrored = row.mirrored;
    placement.turn = turn;
    placement.aspect = random.uniform(0.94, 1.06);
    // At most a tenth of the scale from one side of the window to the other.
    const double tilt = 0.1 / (palmWidth * WindowShape::PER_PALM);
    placement.tilt = {random.uniform(-tilt, tilt), random.uniform(-tilt, tilt)};
    return placement;
}

}  // namespace

PositiveRenderer::PositiveRenderer(const PhotoStore& store, const std::vector<int>& backgrounds)
    : store_(store), backgrounds_(backgrounds) {
    pyramid_.init(PYRAMID_LAYERS, 1.0f, PYRAMID_STEP);
}

void PositiveRenderer::drawBackground(const cv::Mat& photo, Random& random) {
    const int scene = backgrounds_[random.below(static_cast<int>(backgrounds_.size()))];
    fillWithScene(store_.grey(scene), 1.5, random, frame_);
    // A hand and what stands behind it often share one light.
    const double share = random.chance(0.7) ? random.uniform(0.6, 1) : 0;
    frame_ += cv::Scalar(share * (edgeMean(photo) - cv::mean(frame_)[0]));
}

Window PositiveRenderer::render(int photo, const ManifestRow& row, const WindowShape& shape,
                                Random& random) {
    const cv::Mat& pixels = store_.grey(photo);
    const double layerPalm = shape.palmWidth();
    const int layer = random.below(usableLayers(row.palmWidth, layerPalm));
    const double zoom = std::pow(PYRAMID_STEP, layer);
    const double half = std::log(PYRAMID_STEP) / 2;
    const double palm = layerPalm * zoom * DetectorView::ZOOM *
                        std::exp(random.uniform(-half, half) + SETTLES_LARGER);
    const double angle = shape.angle + random.uniform(-ANGLE_SPREAD, ANGLE_SPREAD);
    const double ownAngle = row.mirrored ? -row.angle : row.angle;

    const int longSide = std::max(shape.size.width, shape.size.height);
    const int side = (static_cast<int>((longSide + 8) * zoom * DetectorView::ZOOM) / 2 + 4) * 2;
    frame_.create(side, side, CV_8U);
    drawBackground(pixels, random);
    Placement placement = placementOf(row, palm, angle - ownAngle, random);
    placement.position = {side / 2 + random.uniform(-1, 1), side / 2 + random.uniform(-1, 1)};
    const double feather = random.uniform(0.05, 0.14) * std::min(pixels.cols, pixels.rows);
    const bool cutOut = random.chance(CUT_OUT);
    paste(pixels, placement, feather, random.uniform(1, 1.7), frame_,
          cutOut ? store_.matte(photo) : cv::Mat());
    if (random.chance(SLEEVES)) coverWrist(placement.position, palm, angle, random, frame_);
    expose(Exposure::draw(random, HARDSHIP), random, frame_);

    view_.make(frame_, false);
    pyramid_.setMono(view_.image());
    pyramid_.computeLayer(layer);
    const double layerZoom = pyramid_.zoomAtLayer(layer);
    const cv::Point2d hand =
        view_.toView(placement.position - cv::Point2d(SETTLES_RIGHT, SETTLES_DOWN) * palm) /
        layerZoom;
    // The scan's step of 2 leaves the nearest window up to a pixel away.
    const auto corner = [&](double at, int centre, int size, int limit) {
        const long v = std::lround(at - centre + random.uniform(-1, 1));
        return static_cast<int>(std::clamp(v, 0l, static_cast<long>(limit - size)));
    };
    const KZ::Image& mono = pyramid_.getMono(layer);
    const KZ::Point at(corner(hand.x, shape.centre().x, shape.size.width, mono.width()),
                       corner(hand.y, shape.centre().y, shape.size.height, mono.height()));
    return cutWindow(view_.image(), pyramid_, layer, at, shape.size);
}

}  // namespace training
