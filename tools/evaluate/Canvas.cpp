#include "Canvas.h"

#include <opencv2/imgproc.hpp>

namespace evaluate {

namespace {

constexpr int ENLARGEMENT = 2;
/// Fractional bits of OpenCV's drawing coordinates.
constexpr int BITS = 4;
constexpr int FONT = cv::FONT_HERSHEY_SIMPLEX;
/// Height of the font's capitals at scale 1.
constexpr double CAPITALS = 21;

cv::Point fixedPoint(const cv::Point2d& p) {
    return {cvRound(p.x * ENLARGEMENT * (1 << BITS)), cvRound(p.y * ENLARGEMENT * (1 << BITS))};
}

double scaleOf(double size) {
    return size * ENLARGEMENT / CAPITALS;
}

int thicknessOf(double size, bool bold) {
    return std::max(1, cvRound(size * ENLARGEMENT / (bold ? 8.0 : 14.0)));
}

}  // namespace

Canvas::Canvas(const cv::Size& size)
    : size_(size), large_(size * ENLARGEMENT, CV_8UC3, color::WHITE) {}

void Canvas::line(cv::Point2d from, cv::Point2d to, const cv::Scalar& color, double width) {
    cv::line(large_, fixedPoint(from), fixedPoint(to), color,
             std::max(1, cvRound(width * ENLARGEMENT)), cv::LINE_AA, BITS);
}

void Canvas::dot(cv::Point2d at, double radius, const cv::Scalar& color) {
    cv::circle(large_, fixedPoint(at), cvRound(radius * ENLARGEMENT * (1 << BITS)), color,
               cv::FILLED, cv::LINE_AA, BITS);
}

void Canvas::box(const cv::Rect2d& rect, const cv::Scalar& color) {
    cv::rectangle(large_, fixedPoint(rect.tl()), fixedPoint(rect.br()), color, cv::FILLED,
                  cv::LINE_AA, BITS);
}

void Canvas::text(const std::string& text, cv::Point2d at, const cv::Scalar& color, double size,
                  Align align, bool bold) {
    const double width = widthOf(text, size, bold);
    if (align == Align::MIDDLE) at.x -= width / 2;
    if (align == Align::RIGHT) at.x -= width;
    cv::putText(large_, text, {cvRound(at.x * ENLARGEMENT), cvRound(at.y * ENLARGEMENT)}, FONT,
                scaleOf(size), color, thicknessOf(size, bold), cv::LINE_AA);
}

double Canvas::widthOf(const std::string& text, double size, bool bold) {
    int below = 0;
    const cv::Size extent =
        cv::getTextSize(text, FONT, scaleOf(size), thicknessOf(size, bold), &below);
    return static_cast<double>(extent.width) / ENLARGEMENT;
}

cv::Mat Canvas::picture() const {
    cv::Mat reduced;
    cv::resize(large_, reduced, size_, 0, 0, cv::INTER_AREA);
    return reduced;
}

}  // namespace evaluate
