#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Canvas.h"

namespace evaluate {

/// A value with the text that stands beside it.
struct Tick {
    double value;
    std::string label;
};

/// The area of a plot: where values stand, its grid, its title.
class Axes {
public:
    /// `toUnit` takes a value to 0 (left, bottom) to 1; what is beyond is drawn at the edge.
    using Scale = std::function<double(double)>;

    Axes(Canvas& canvas, const cv::Rect2d& area, Scale x, Scale y);

    void title(const std::string& title, const std::string& subtitle);
    /// Grid lines and labels.
    void ticksX(const std::vector<Tick>& ticks, const std::string& name, bool lines = true);
    void ticksY(const std::vector<Tick>& ticks, bool lines = true);

    cv::Point2d at(double x, double y) const;
    const cv::Rect2d& area() const { return area_; }

private:
    Canvas& canvas_;
    cv::Rect2d area_;
    Scale x_, y_;
};

Axes::Scale linear(double from, double to);
Axes::Scale logarithmic(double from, double to);

/// Ticks at a share's tenths (or twentieths, in a narrow range) from `from` to 1, as percentages.
std::vector<Tick> shareTicks(double from);

/// The tenth at or below which an axis has to begin to show a share.
double axisStart(double lowestShare);

}  // namespace evaluate
