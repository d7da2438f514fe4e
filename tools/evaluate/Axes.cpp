#include "Axes.h"

#include <algorithm>
#include <cmath>

namespace evaluate {

Axes::Axes(Canvas& canvas, const cv::Rect2d& area, Scale x, Scale y)
    : canvas_(canvas), area_(area), x_(std::move(x)), y_(std::move(y)) {}

void Axes::title(const std::string& title, const std::string& subtitle) {
    canvas_.text(title, {20, 28}, color::INK, 11, Align::LEFT, true);
    canvas_.text(subtitle, {20, 46}, color::FAINT, 8);
}

void Axes::ticksX(const std::vector<Tick>& ticks, const std::string& name, bool lines) {
    const double bottom = area_.y + area_.height;
    for (const Tick& tick : ticks) {
        const double x = area_.x + x_(tick.value) * area_.width;
        if (lines) canvas_.line({x, area_.y}, {x, bottom}, color::GRID);
        canvas_.text(tick.label, {x, bottom + 16}, color::INK, 8, Align::MIDDLE);
    }
    canvas_.text(name, {area_.x + area_.width / 2, bottom + 44}, color::FAINT, 8, Align::MIDDLE);
}

void Axes::ticksY(const std::vector<Tick>& ticks, bool lines) {
    for (const Tick& tick : ticks) {
        const double y = area_.y + (1 - y_(tick.value)) * area_.height;
        if (lines) canvas_.line({area_.x, y}, {area_.x + area_.width, y}, color::GRID);
        canvas_.text(tick.label, {area_.x - 8, y + 4}, color::INK, 8, Align::RIGHT);
    }
}

cv::Point2d Axes::at(double x, double y) const {
    const auto clipped = [](double unit) { return std::clamp(unit, 0.0, 1.0); };
    return {area_.x + clipped(x_(x)) * area_.width, area_.y + (1 - clipped(y_(y))) * area_.height};
}

Axes::Scale linear(double from, double to) {
    return [=](double value) { return (value - from) / (to - from); };
}

Axes::Scale logarithmic(double from, double to) {
    return
        [=](double value) { return value <= 0 ? 0 : std::log(value / from) / std::log(to / from); };
}

std::vector<Tick> shareTicks(double from) {
    const int step = from < 0.7 ? 10 : 5;
    std::vector<Tick> ticks;
    for (int percent = cvRound(from * 100); percent <= 100; percent += step) {
        ticks.push_back({percent / 100.0, std::to_string(percent) + "%"});
    }
    return ticks;
}

double axisStart(double lowestShare) {
    return std::clamp(std::floor(lowestShare * 10) / 10, 0.0, 0.9);
}

}  // namespace evaluate
