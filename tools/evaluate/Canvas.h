#pragma once

#include <opencv2/core.hpp>
#include <string>

namespace evaluate {

/// Colours, in OpenCV's order.
namespace color {
const cv::Scalar INK(40, 32, 28), FAINT(115, 110, 105), GRID(232, 230, 228), WHITE(255, 255, 255);
const cv::Scalar BLUE(180, 110, 40), ORANGE(40, 120, 225), GREEN(85, 140, 50), RED(60, 60, 200);
}  // namespace color

enum class Align { LEFT, MIDDLE, RIGHT };

/// A white picture to draw on. It is drawn at twice its size and then reduced, which makes thin
/// lines and small letters smooth. Lengths are pixels of the picture.
class Canvas {
public:
    explicit Canvas(const cv::Size& size);

    void line(cv::Point2d from, cv::Point2d to, const cv::Scalar& color, double width = 1);
    void dot(cv::Point2d at, double radius, const cv::Scalar& color);
    void box(const cv::Rect2d& rect, const cv::Scalar& color);
    /// `at` is the left, middle or right end of the text's base line; `size` the height of its
    /// capitals.
    void text(const std::string& text, cv::Point2d at, const cv::Scalar& color, double size = 9,
              Align align = Align::LEFT, bool bold = false);
    /// Width of such a text.
    static double widthOf(const std::string& text, double size, bool bold = false);

    cv::Size size() const { return size_; }
    cv::Mat picture() const;

private:
    cv::Size size_;
    cv::Mat large_;
};

}  // namespace evaluate
