#include "TrainingPlot.h"

#include <cmath>
#include <functional>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "Failure.h"

namespace training {

namespace {

constexpr int WIDTH = 720, HEIGHT = 420, LEFT = 60, RIGHT = 20, TOP = 40, BOTTOM = 70;
/// The axis is logarithmic: all curves are shares or losses that fall by orders.
constexpr double LOWEST = 0.001;

struct Curve {
    const char* name;
    cv::Scalar color;
    std::function<double(const EpochReport&)> value;
};

int heightOf(double value) {
    const double share = std::log(std::max(value, LOWEST) / LOWEST) / std::log(1 / LOWEST);
    return static_cast<int>(HEIGHT - BOTTOM - share * (HEIGHT - TOP - BOTTOM));
}

void write(cv::Mat& picture, const std::string& text, const cv::Point& at,
           const cv::Scalar& color) {
    cv::putText(picture, text, at, cv::FONT_HERSHEY_SIMPLEX, 0.42, color, 1, cv::LINE_AA);
}

void drawAxes(cv::Mat& picture, size_t epochs) {
    const cv::Scalar grey(190, 190, 190), black(0, 0, 0);
    for (const char* label : {"1", "0.1", "0.01", "0.001"}) {
        const int y = heightOf(std::stod(label));
        cv::line(picture, {LEFT, y}, {WIDTH - RIGHT, y}, grey);
        write(picture, label, {8, y + 4}, black);
    }
    write(picture, "epoch 1", {LEFT, HEIGHT - BOTTOM + 18}, black);
    write(picture, std::to_string(epochs), {WIDTH - RIGHT - 20, HEIGHT - BOTTOM + 18}, black);
}

}  // namespace

void writePlot(const std::string& title, const std::vector<EpochReport>& reports,
               const std::string& path) {
    cv::Mat picture(HEIGHT, WIDTH, CV_8UC3, cv::Scalar(255, 255, 255));
    drawAxes(picture, reports.size());
    write(picture, title, {LEFT, 24}, cv::Scalar(0, 0, 0));
    const Curve curves[] = {
        {"loss", {160, 160, 0}, [](const EpochReport& r) { return r.loss; }},
        {"palms missed", {0, 140, 0}, [](const EpochReport& r) { return 1 - r.recall; }},
        {"alarms", {0, 0, 200}, [](const EpochReport& r) { return r.alarms; }},
        {"alarms at 97.5% of palms", {200, 0, 160}, [](const EpochReport& r) {
             return r.alarmsAtKept;
         }}};
    int legend = LEFT;
    for (const Curve& curve : curves) {
        cv::Point before;
        for (size_t i = 0; i < reports.size(); ++i) {
            const double across = reports.size() > 1 ? i / (reports.size() - 1.0) : 0;
            const cv::Point here(static_cast<int>(LEFT + across * (WIDTH - LEFT - RIGHT)),
                                 heightOf(curve.value(reports[i])));
            if (i > 0) cv::line(picture, before, here, curve.color, 2, cv::LINE_AA);
            before = here;
        }
        write(picture, curve.name, {legend, HEIGHT - 20}, curve.color);
        legend += 150;
    }
    if (!cv::imwrite(path, picture)) throw Failure(path + ": cannot be written");
}

}  // namespace training
