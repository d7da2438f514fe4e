#include "Composer.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <vector>

namespace training {

namespace {

cv::Matx33d shift(double x, double y) {
    return {1, 0, x, 0, 1, y, 0, 0, 1};
}

/// The part of `photo` that lands in `frame`, with a margin for interpolation.
cv::Rect visiblePart(const cv::Size& photo, const cv::Size& frame, const cv::Matx33d& toFrame,
                     double margin) {
    const cv::Matx33d inverse = toFrame.inv();
    const double w = frame.width - 1, h = frame.height - 1;
    double left = 1e9, top = 1e9, right = -1e9, bottom = -1e9;
    for (const cv::Point2d& corner : {cv::Point2d(0, 0), {w, 0}, {0, h}, {w, h}}) {
        const cv::Point2d p = transformed(inverse, corner);
        left = std::min(left, p.x), right = std::max(right, p.x);
        top = std::min(top, p.y), bottom = std::max(bottom, p.y);
    }
    const auto clipped = [](double v, int limit) {
        return static_cast<int>(std::clamp(v, 0.0, static_cast<double>(limit)));
    };
    const cv::Point from(clipped(left - margin, photo.width), clipped(top - margin, photo.height));
    const cv::Point to(clipped(right + margin + 1, photo.width),
                       clipped(bottom + margin + 1, photo.height));
    return {from, to};
}

/// Opacity of the pixels `part` of a picture: 255 inside, fading to 0 at the picture's own edges.
cv::Mat fadingMask(const cv::Size& photo, const cv::Rect& part, const cv::Size& resized,
                   double feather) {
    const auto ramp = [&](int begin, int length, int cells, int limit) {
        std::vector<double> values(cells);
        for (int i = 0; i < cells; ++i) {
            const double p = begin + (i + 0.5) * length / cells;
            values[i] = std::clamp(std::min(p, limit - p) / feather, 0.0, 1.0);
        }
        return values;
    };
    const std::vector<double> across = ramp(part.x, part.width, resized.width, photo.width);
    const std::vector<double> down = ramp(part.y, part.height, resized.height, photo.height);
    cv::Mat mask(resized, CV_8U);
    for (int y = 0; y < resized.height; ++y) {
        for (int x = 0; x < resized.width; ++x) {
            mask.at<uchar>(y, x) = static_cast<uchar>(255 * across[x] * down[y] + 0.5);
        }
    }
    return mask;
}

void blend(const cv::Mat& top, const cv::Mat& mask, cv::Mat& frame) {
    for (int y = 0; y < frame.rows; ++y) {
        const uchar *t = top.ptr(y), *m = mask.ptr(y);
        uchar* f = frame.ptr(y);
        for (int x = 0; x < frame.cols; ++x) {
            f[x] = static_cast<uchar>((f[x] * (255 - m[x]) + t[x] * m[x] + 127) / 255);
        }
    }
}

}  // namespace

cv::Matx33d Placement::matrix() const {
    const double radians = turn * CV_PI / 180, c = std::cos(radians), s = std::sin(radians);
    const double sx = (mirrored ? -scale : scale) * aspect, sy = scale;
    const cv::Matx33d linear(c * sx, s * sy, 0, -s * sx, c * sy, 0, 0, 0, 1);
    const cv::Matx33d depth(1, 0, 0, 0, 1, 0, tilt.x, tilt.y, 1);
    return shift(position.x, position.y) * depth * linear * shift(-anchor.x, -anchor.y);
}

cv::Point2d transformed(const cv::Matx33d& matrix, const cv::Point2d& p) {
    const cv::Vec3d v = matrix * cv::Vec3d(p.x, p.y, 1);
    return {v[0] / v[2], v[1] / v[2]};
}

void paste(const cv::Mat& photo, const Placement& placement, double feather, double sharpness,
           cv::Mat& wholeFrame, const cv::Mat& matte) {
    const cv::Matx33d toWholeFrame = placement.matrix();
    // A photograph without a fading edge goes on to the frame's edge; what was there before must
    // not show through.
    const cv::Rect covered =
        feather > 0 ? visiblePart(wholeFrame.size(), photo.size(), toWholeFrame.inv(), 1)
                    : cv::Rect(cv::Point(), wholeFrame.size());
    if (covered.empty()) return;
    cv::Mat frame = wholeFrame(covered);
    const cv::Matx33d toFrame = shift(-covered.x, -covered.y) * toWholeFrame;
    const double reduction = std::min(placement.scale * sharpness, 1.0);
    const cv::Rect part = visiblePart(photo.size(), frame.size(), toFrame, 2 / reduction);
    if (part.width < 2 || part.height < 2) return;
    const cv::Size resized(std::max(static_cast<int>(std::lround(part.width * reduction)), 1),
                           std::max(static_cast<int>(std::lround(part.height * reduction)), 1));
    cv::Mat small;
    cv::resize(photo(part), small, resized, 0, 0, cv::INTER_AREA);
    const double stepX = static_cast<double>(part.width) / resized.width;
    const double stepY = static_cast<double>(part.height) / resized.height;
    const cv::Matx33d toPhoto(stepX, 0, part.x + stepX / 2 - 0.5, 0, stepY,
                              part.y + stepY / 2 - 0.5, 0, 0, 1);
    const cv::Matx33d map = toFrame * toPhoto;
    cv::Mat top, mask;
    cv::warpPerspective(small, top, map, frame.size(), cv::INTER_LINEAR, cv::BORDER_REPLICATE);
    if (feather <= 0) return top.copyTo(frame);
    cv::Mat opacity = fadingMask(photo.size(), part, resized, feather);
    if (!matte.empty()) {
        cv::Mat hand;
        cv::resize(matte(part), hand, resized, 0, 0, cv::INTER_AREA);
        cv::multiply(opacity, hand, opacity, 1.0 / 255);
    }
    cv::warpPerspective(opacity, mask, map, frame.size(), cv::INTER_LINEAR, cv::BORDER_CONSTANT,
                        cv::Scalar(0));
    blend(top, mask, frame);
}

void fillWithScene(const cv::Mat& scene, double maxEnlargement, Random& random, cv::Mat& frame) {
    const bool quarter = random.chance(0.35);
    const int width = quarter ? scene.rows : scene.cols, height = quarter ? scene.cols : scene.rows;
    const double cover =
        std::max(static_cast<double>(frame.cols) / width, static_cast<double>(frame.rows) / height);
    // Most draws show nearly all of the scene; some look closer.
    const double limit = std::max(maxEnlargement / cover, 1.0);
    const double scale = cover * random.logUniform(1.0, std::min(limit, 3.0));
    const double shownX = frame.cols / scale, shownY = frame.rows / scale;
    const cv::Point2d centre(shownX / 2 + random.unit() * (width - shownX) - 0.5,
                             shownY / 2 + random.unit() * (height - shownY) - 0.5);
    Placement placement;
    placement.anchor = quarter ? cv::Point2d(centre.y, centre.x) : centre;
    placement.position = {(frame.cols - 1) * 0.5, (frame.rows - 1) * 0.5};
    placement.scale = scale;
    placement.turn = (quarter ? 90 : 0) + (random.chance(quarter ? 0.5 : 0.25) ? 180 : 0);
    placement.mirrored = random.chance(0.5);
    paste(scene, placement, 0, random.uniform(1.0, 1.6), frame);
}

void coverWithScene(const cv::Mat& scene, cv::Mat& frame) {
    Placement placement;
    placement.anchor = {(scene.cols - 1) * 0.5, (scene.rows - 1) * 0.5};
    placement.position = {(frame.cols - 1) * 0.5, (frame.rows - 1) * 0.5};
    placement.scale = std::max(static_cast<double>(frame.cols) / scene.cols,
                               static_cast<double>(frame.rows) / scene.rows);
    paste(scene, placement, 0, 1, frame);
}

void coverWrist(const cv::Point2d& hand, double palmWidth, double angle, Random& random,
                cv::Mat& frame) {
    const double radians = angle * CV_PI / 180;
    const cv::Point2d down(std::sin(radians), std::cos(radians)), aside(down.y, -down.x);
    const double from = random.uniform(0.85, 1.15) * palmWidth;
    const double half = random.uniform(0.4, 0.8) * palmWidth;
    const double slant = random.uniform(-0.2, 0.2) * palmWidth;
    constexpr int SHIFT = 4;
    const auto fixed = [](const cv::Point2d& p) {
        return cv::Point(cvRound(p.x * (1 << SHIFT)), cvRound(p.y * (1 << SHIFT)));
    };
    const std::vector<cv::Point> sleeve = {
        fixed(hand + down * (from + slant) + aside * half),
        fixed(hand + down * (from - slant) - aside * half),
        fixed(hand + down * (from + 2 * palmWidth) - aside * half * 1.3),
        fixed(hand + down * (from + 2 * palmWidth) + aside * half * 1.3)};
    cv::fillConvexPoly(frame, sleeve, cv::Scalar(random.uniform(10, 240)), cv::LINE_AA, SHIFT);
}

}  // namespace training
