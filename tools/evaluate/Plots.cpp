#include "Plots.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Axes.h"
#include "Curve.h"
#include "Output.h"
#include "Sheets.h"

namespace evaluate {

namespace {

const cv::Size PLOT(620, 400);
const cv::Rect2d AREA(64, 66, 530, 260);
constexpr double LOWEST_ALARMS = 0.001;

std::vector<Figure> figuresOf(const std::vector<Figure>& figures, const std::string& measure,
                              const std::string& group) {
    std::vector<Figure> some;
    std::copy_if(figures.begin(), figures.end(), std::back_inserter(some),
                 [&](const Figure& figure) {
                     return figure.measure == measure && figure.group == group && figure.all > 0;
                 });
    return some;
}

std::string percent(double share) {
    char text[16];
    std::snprintf(text, sizeof text, "%.1f%%", share * 100);
    return text;
}

std::string sizeText(const Figure& figure) {
    return std::to_string(figure.some) + " of " + std::to_string(figure.all);
}

/// A point with its interval, upright or lying.
void drawInterval(Canvas& canvas, cv::Point2d low, cv::Point2d high, cv::Point2d value,
                  const cv::Scalar& color) {
    canvas.line(low, high, color, 2);
    const bool upright = low.x == high.x;
    const cv::Point2d cap = upright ? cv::Point2d(4, 0) : cv::Point2d(0, 4);
    for (const cv::Point2d& end : {low, high}) canvas.line(end - cap, end + cap, color, 1.5);
    canvas.dot(value, 4.5, color);
}

struct CurveLine {
    const char* name;
    const char* measure;
    double CurvePoint::*alarms;
    cv::Scalar color;
};

void drawCurve(Canvas& canvas, const Axes& axes, const std::vector<CurvePoint>& curve,
               const CurveLine& line) {
    for (size_t i = 1; i < curve.size(); ++i) {
        const cv::Point2d from = axes.at(curve[i - 1].*line.alarms, curve[i - 1].recall);
        const cv::Point2d to = axes.at(curve[i].*line.alarms, curve[i].recall);
        // A step: what lies between two thresholds has the worse of both.
        canvas.line(from, {from.x, to.y}, line.color, 1.5);
        canvas.line({from.x, to.y}, to, line.color, 1.5);
    }
}

void drawOwnPoint(Canvas& canvas, const Axes& axes, const Report& report, const CurveLine& line) {
    const auto recall = figuresOf(report.figures, RECALL, "all");
    const auto alarms = figuresOf(report.figures, line.measure, "all");
    if (recall.empty() || alarms.empty()) return;
    const Interval y = recall[0].interval, x = alarms[0].interval;
    const cv::Point2d here = axes.at(x.value, y.value);
    drawInterval(canvas, axes.at(x.value, y.low), axes.at(x.value, y.high), here, line.color);
    drawInterval(canvas, axes.at(x.low, y.value), axes.at(x.high, y.value), here, line.color);
}

std::vector<Figure> sortedByValue(std::vector<Figure> figures, bool worstIsLow) {
    std::stable_sort(figures.begin(), figures.end(), [&](const Figure& a, const Figure& b) {
        return worstIsLow ? a.interval.value < b.interval.value
                          : a.interval.value > b.interval.value;
    });
    return figures;
}

std::string summaryLine(const Figure& figure) {
    char text[160];
    const Interval& i = figure.interval;
    if (figure.group == "palms found") {
        std::snprintf(text, sizeof text, "%.3g   [%.3g, %.3g]   %s", i.value, i.low, i.high,
                      figure.bin.c_str());
    } else {
        std::snprintf(text, sizeof text, "%s   [%s, %s]   %s", percent(i.value).c_str(),
                      percent(i.low).c_str(), percent(i.high).c_str(),
                      figure.group == "macro" ? "mean of the sources" : sizeText(figure).c_str());
    }
    return text;
}

cv::Mat stacked(const std::vector<cv::Mat>& pictures) {
    cv::Mat column;
    cv::vconcat(pictures, column);
    return column;
}

/// White below the shorter columns.
cv::Mat beside(const std::vector<cv::Mat>& columns) {
    int height = 0, width = 0;
    for (const cv::Mat& column : columns) {
        height = std::max(height, column.rows);
        width += column.cols;
    }
    cv::Mat page(height, width, CV_8UC3, color::WHITE);
    int left = 0;
    for (const cv::Mat& column : columns) {
        column.copyTo(page(cv::Rect(left, 0, column.cols, column.rows)));
        left += column.cols;
    }
    return page;
}

}  // namespace

cv::Mat plotCurve(const Report& report) {
    Canvas canvas(PLOT);
    const std::vector<CurvePoint> curve = curveOf(report.evaluation.photographs);
    double lowest = 1;
    for (const Figure& figure : figuresOf(report.figures, RECALL, "all")) {
        lowest = figure.interval.low;
    }
    for (const CurvePoint& point : curve) {
        if (point.sceneAlarms > LOWEST_ALARMS) lowest = std::min(lowest, point.recall);
    }
    const double start = axisStart(lowest);
    Axes axes(canvas, AREA, logarithmic(LOWEST_ALARMS, 1), linear(start, 1));
    axes.title("Recall against false alarms",
               "lines: other last thresholds; points: the run; bars: 95%");
    axes.ticksY(shareTicks(start));
    axes.ticksX({{0.001, "0.1% or less"}, {0.01, "1%"}, {0.1, "10%"}, {1, "100%"}},
                "photographs without a palm on which one was reported");
    const CurveLine lines[] = {
        {"scenes", SCENE_ALARMS, &CurvePoint::sceneAlarms, color::BLUE},
        {"other poses", POSE_ALARMS, &CurvePoint::poseAlarms, color::ORANGE}};
    double x = AREA.x + AREA.width;
    for (const CurveLine& line : lines) {
        drawCurve(canvas, axes, curve, line);
        drawOwnPoint(canvas, axes, report, line);
        canvas.text(line.name, {x, AREA.y - 8}, line.color, 8, Align::RIGHT, true);
        x -= Canvas::widthOf(line.name, 8, true) + 16;
    }
    return canvas.picture();
}

cv::Mat plotBins(const std::vector<Figure>& all, const std::string& measure,
                 const std::string& group, const std::string& title) {
    Canvas canvas(PLOT);
    const std::vector<Figure> figures = figuresOf(all, measure, group);
    double lowest = 1;
    for (const Figure& figure : figures) lowest = std::min(lowest, figure.interval.low);
    const double start = axisStart(lowest), count = static_cast<double>(figures.size());
    Axes axes(canvas, AREA, linear(-0.5, count - 0.5), linear(start, 1));
    axes.title(title, "points: share of the palms found; bars: 95%");
    axes.ticksY(shareTicks(start));
    std::vector<Tick> ticks;
    for (size_t i = 0; i < figures.size(); ++i) {
        ticks.push_back({static_cast<double>(i), figures[i].bin});
    }
    axes.ticksX(ticks, "", false);
    for (size_t i = 0; i < figures.size(); ++i) {
        const double x = static_cast<double>(i);
        const Interval& interval = figures[i].interval;
        drawInterval(canvas, axes.at(x, interval.low), axes.at(x, interval.high),
                     axes.at(x, interval.value), color::BLUE);
        const double left = axes.at(x, start).x;
        canvas.text(percent(interval.value), {left, AREA.y + AREA.height + 34}, color::INK, 8,
                    Align::MIDDLE, true);
        canvas.text(sizeText(figures[i]), {left, AREA.y + AREA.height + 50}, color::FAINT, 7.5,
                    Align::MIDDLE);
    }
    return canvas.picture();
}

cv::Mat plotSources(const std::vector<Figure>& all, const std::string& measure,
                    const std::string& title) {
    const bool isRecall = measure == RECALL;
    const std::vector<Figure> figures = sortedByValue(figuresOf(all, measure, "source"), isRecall);
    constexpr double ROW = 19, LABELS = 200, COUNTS = 84;
    const double height = ROW * static_cast<double>(figures.size());
    const cv::Rect2d area(LABELS, 66, PLOT.width - LABELS - COUNTS, std::max(height, ROW));
    Canvas canvas({PLOT.width, static_cast<int>(area.y + area.height + 40)});
    Axes axes(canvas, area, linear(0, 1), linear(area.height, 0));
    axes.title(title, "points: share of the photographs; bars: 95%");
    axes.ticksX({{0, "0%"}, {0.25, "25%"}, {0.5, "50%"}, {0.75, "75%"}, {1, "100%"}}, "");
    for (size_t i = 0; i < figures.size(); ++i) {
        const double y = (static_cast<double>(i) + 0.5) * ROW;
        const Interval& interval = figures[i].interval;
        drawInterval(canvas, axes.at(interval.low, y), axes.at(interval.high, y),
                     axes.at(interval.value, y), isRecall ? color::BLUE : color::ORANGE);
        const double base = area.y + y + 4;
        canvas.text(figures[i].bin, {LABELS - 14, base}, color::INK, 8, Align::RIGHT);
        canvas.text(sizeText(figures[i]), {PLOT.width - 14.0, base}, color::FAINT, 7.5,
                    Align::RIGHT);
    }
    return canvas.picture();
}

cv::Mat plotSummary(const Report& report) {
    const Evaluation& run = report.evaluation;
    Canvas canvas({2 * PLOT.width, 330});
    canvas.text("Palms found, and what was taken for one", {20, 34}, color::INK, 14, Align::LEFT,
                true);
    const std::string what = "split " + run.split + ", " + std::to_string(run.photographs.size()) +
                             " photographs as nine frames each, " +
                             std::to_string(run.sequences.size()) + " videos";
    canvas.text(what, {20, 56}, color::FAINT, 9);
    double y = 88;
    for (const Figure& figure : report.figures) {
        if (figure.group != "all" && figure.group != "macro" && figure.group != "palms found") {
            continue;
        }
        canvas.text(figure.measure, {20, y}, color::INK, 9);
        canvas.text(summaryLine(figure), {260, y}, color::INK, 9, Align::LEFT,
                    figure.group == "all");
        y += 18;
    }
    y = 88;
    const auto say = [&](const std::string& name, const std::string& value) {
        canvas.text(name, {680, y}, color::INK, 9);
        canvas.text(value, {960, y}, color::INK, 9);
        y += 18;
    };
    const std::vector<int> losses = lossesByStage(run.photographs);
    for (size_t i = 0; i < losses.size(); ++i) {
        say(std::string("lost by the ") + nameOf(static_cast<Stage>(i)), std::to_string(losses[i]));
    }
    char text[96];
    const std::pair<const char*, FrameTimes> times[] = {
        {"full scan", run.scanning}, {"tracking", run.tracking}, {"other frames", run.resting}};
    for (const auto& [name, time] : times) {
        std::snprintf(text, sizeof text, "%.2f ms, 99th percentile %.2f ms", time.median, time.p99);
        say(std::string("processor time, ") + name, text);
    }
    const AlarmRate rate = alarmsInVideos(run.sequences);
    if (rate.hours > 0) say("alarms in videos without a palm", rate.text());
    return canvas.picture();
}

cv::Mat plotOverview(const Report& report) {
    const std::vector<Figure>& figures = report.figures;
    const cv::Mat left = stacked({plotCurve(report), plotBins(figures, RECALL, "brightness",
                                                              "Recall by brightness of the hand")});
    const cv::Mat right =
        stacked({plotBins(figures, RECALL, "palm width", "Recall by palm width, pixels of 320x240"),
                 plotBins(figures, RECALL, "angle", "Recall by tilt, degrees")});
    return stacked({plotSummary(report), beside({left, right})});
}

cv::Mat plotPage(const Report& report) {
    const std::vector<Figure>& figures = report.figures;
    return stacked(
        {plotOverview(report),
         beside({plotSources(figures, RECALL, "Recall by source"),
                 plotSources(figures, POSE_ALARMS, "Alarms on other poses by source")})});
}

void writePlots(const Report& report, const Exhibits& exhibits, const std::string& folder) {
    makeFolder(folder);
    const std::vector<Figure>& figures = report.figures;
    const auto write = [&](const char* name, const cv::Mat& picture) {
        writePicture(folder + "/" + name + ".png", picture);
    };
    write("curve", plotCurve(report));
    write("size", plotBins(figures, RECALL, "palm width", "Recall by palm width, 320x240"));
    write("angle", plotBins(figures, RECALL, "angle", "Recall by tilt, degrees"));
    write("brightness",
          plotBins(figures, RECALL, "brightness", "Recall by brightness of the hand"));
    write("recall_by_source", plotSources(figures, RECALL, "Recall by source"));
    write("alarms_by_source", plotSources(figures, POSE_ALARMS, "Alarms on other poses by source"));
    write("page", plotPage(report));
    writeSheets(report.evaluation, exhibits, folder);
}

}  // namespace evaluate
