#include "LimitsPicture.h"

#include <algorithm>
#include <cstdio>
#include <opencv2/imgproc.hpp>
#include <sstream>

#include "Canvas.h"

namespace evaluate {

namespace {

constexpr int WIDTH = 1392, HEADER = 112, LEGEND = 1020;
/// The column of titles; a cell, its frame included; from cell to cell; from row to row.
constexpr int TITLES = 166, CELL = 146, STEP_X = 153, STEP_Y = 212, FRAME = 5;
constexpr int LABEL = 18;  ///< above a cell

const cv::Scalar AMBER(60, 175, 240), NEITHER(190, 186, 182), TRACK(225, 222, 220),
    NOTE(90, 84, 80);

cv::Scalar between(const cv::Scalar& from, const cv::Scalar& to, double t) {
    return from * (1 - t) + to * t;
}

/// Of a share of right answers.
cv::Scalar colorOf(double right) {
    return right < .5 ? between(color::RED, AMBER, right * 2)
                      : between(AMBER, color::GREEN, right * 2 - 1);
}

cv::Scalar colorOf(const LimitsCell& cell) {
    if (cell.wanted == Wanted::EITHER) return NEITHER;
    return colorOf(cell.wanted == Wanted::FOUND ? cell.share() : 1 - cell.share());
}

std::string formatted(const char* format, double value) {
    char text[32];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

/// Writes words into lines of the column of titles; returns the base line after the last one.
double writeWrapped(Canvas& canvas, const std::string& text, double y, const cv::Scalar& color,
                    double size, bool bold) {
    std::istringstream words(text);
    std::string line;
    const auto flush = [&] {
        if (!line.empty()) canvas.text(line, {14, y}, color, size, Align::LEFT, bold);
        if (!line.empty()) y += size * 2;
        line.clear();
    };
    for (std::string word; words >> word;) {
        const std::string longer = line.empty() ? word : line + " " + word;
        if (Canvas::widthOf(longer, size, bold) > TITLES - 24) {
            flush();
            line = word;
        } else {
            line = longer;
        }
    }
    flush();
    return y;
}

void writeTitle(Canvas& canvas, const LimitsRow& row, int top) {
    double y = top + LABEL + 16;
    y = writeWrapped(canvas, row.title, y, color::INK, 10, true) + 3;
    y = writeWrapped(canvas, row.unit, y, color::INK, 9, false) + 3;
    writeWrapped(canvas, row.note, y, NOTE, 9, false);
}

void drawBar(Canvas& canvas, const cv::Rect2d& area, double share, const cv::Scalar& color) {
    canvas.box(area, TRACK);
    if (share > 0) canvas.box({area.tl(), cv::Size2d(area.width * share, area.height)}, color);
}

void drawCell(Canvas& canvas, const LimitsCell& cell, bool signs, const cv::Point& at) {
    const cv::Scalar frame = colorOf(cell);
    canvas.text(formatted(signs ? "%+g" : "%g", cell.value), {at.x + CELL / 2., at.y + 12.},
                color::INK, 10, Align::MIDDLE);
    canvas.box(cv::Rect2d(at.x, at.y + LABEL, CELL, CELL), frame);
    const double y = at.y + LABEL + CELL + 9;
    canvas.text(formatted("%.0f%%", 100 * cell.share()), {at.x + 50., y + 10}, color::INK, 10.5,
                Align::RIGHT, true);
    drawBar(canvas, cv::Rect2d(at.x + 58, y, CELL - 58, 10), cell.share(), frame);
}

void drawLegend(Canvas& canvas) {
    constexpr int STEPS = 60;
    constexpr double LENGTH = 240, Y = 40;
    for (int i = 0; i < STEPS; ++i) {
        canvas.box({LEGEND + LENGTH * i / STEPS, Y, LENGTH / STEPS, 12}, colorOf((i + .5) / STEPS));
    }
    canvas.text("all wrong", {LEGEND, Y + 30}, color::INK, 8.5);
    canvas.text("all right", {LEGEND + LENGTH, Y + 30}, color::INK, 8.5, Align::RIGHT);
    canvas.box({LEGEND + LENGTH + 24, Y, 40, 12}, NEITHER);
    canvas.text("neither", {LEGEND + LENGTH + 24, Y + 30}, color::INK, 8.5);
}

void writeHeader(Canvas& canvas, size_t palms) {
    canvas.text("What the engine sees of rendered palms", {14, 36}, color::INK, 14, Align::LEFT,
                true);
    canvas.text(
        "One property is varied at a time. The number, the bar and the colour tell the share "
        "found of " +
            std::to_string(palms) + " palms:",
        {14, 64}, color::INK, 9);
    canvas.text(
        "skin from light to dark, right and left hands, two rooms; one of them is drawn. "
        "Else: 40 pixels wide, upright, good light.",
        {14, 84}, color::INK, 9);
    drawLegend(canvas);
}

cv::Rect placeOfExample(size_t row, size_t column) {
    return {TITLES + static_cast<int>(column) * STEP_X + FRAME,
            HEADER + static_cast<int>(row) * STEP_Y + LABEL + FRAME, CELL - 2 * FRAME,
            CELL - 2 * FRAME};
}

void putExample(const cv::Mat& example, cv::Mat picture) {
    cv::Mat small;
    cv::resize(example, small, picture.size(), 0, 0, cv::INTER_AREA);
    cv::cvtColor(small, picture, cv::COLOR_GRAY2BGR);
}

}  // namespace

cv::Mat limitsPicture(const std::vector<LimitsRow>& rows) {
    Canvas canvas({WIDTH, HEADER + static_cast<int>(rows.size()) * STEP_Y});
    writeHeader(canvas, rows.empty() ? 0 : rows[0].cells[0].outcomes.size());
    for (size_t i = 0; i < rows.size(); ++i) {
        const int top = HEADER + static_cast<int>(i) * STEP_Y;
        canvas.line({14, top - 8.}, {WIDTH - 14., top - 8.}, color::GRID);
        writeTitle(canvas, rows[i], top);
        const std::vector<LimitsCell>& cells = rows[i].cells;
        for (size_t k = 0; k < cells.size(); ++k) {
            drawCell(canvas, cells[k], cells[0].value < 0,
                     {TITLES + static_cast<int>(k) * STEP_X, top});
        }
    }
    cv::Mat picture = canvas.picture();
    for (size_t i = 0; i < rows.size(); ++i) {
        for (size_t k = 0; k < rows[i].cells.size(); ++k) {
            putExample(rows[i].cells[k].example, picture(placeOfExample(i, k)));
        }
    }
    return picture;
}

}  // namespace evaluate
