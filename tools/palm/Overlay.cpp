#include "Overlay.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <opencv2/imgproc.hpp>
#include <string>

namespace palm {

namespace {

const cv::Scalar GREEN(80, 220, 60), AMBER(0, 170, 255), GREY(190, 190, 190), BLACK(0, 0, 0);

cv::Scalar stateColor(const std::string& name) {
    if (name == "palm") return GREEN;
    return name == "MOVING" ? AMBER : GREY;
}

void drawText(cv::Mat& picture, const std::string& text, cv::Point at, const cv::Scalar& color) {
    const double scale = 0.6;
    cv::putText(picture, text, at, cv::FONT_HERSHEY_SIMPLEX, scale, BLACK, 3, cv::LINE_AA);
    cv::putText(picture, text, at, cv::FONT_HERSHEY_SIMPLEX, scale, color, 1, cv::LINE_AA);
}

void drawTurned(cv::Mat& picture, const cv::RotatedRect& box, const cv::Scalar& color,
                int thickness) {
    cv::Point2f corners[4];
    box.points(corners);
    for (int i = 0; i < 4; ++i) {
        cv::line(picture, corners[i], corners[(i + 1) % 4], color, thickness, cv::LINE_AA);
    }
    const cv::Point2f top = (corners[1] + corners[2]) / 2;
    cv::line(picture, box.center, top, color, 1, cv::LINE_AA);
}

// The box turned by the palm's angle. OpenCV counts angles clockwise.
void drawBox(cv::Mat& picture, const Outcome& hit, const cv::Scalar& color, int thickness) {
    drawTurned(picture,
               cv::RotatedRect(cv::Point2f((hit.left + hit.right) / 2, (hit.top + hit.bottom) / 2),
                               cv::Size2f(hit.right - hit.left, hit.bottom - hit.top), -hit.angle),
               color, thickness);
}

// A row a stage at the bottom, and the window of each in its colour, the last one innermost.
void drawStages(cv::Mat& picture, const std::vector<stages::StageResult>& results) {
    static const cv::Scalar COLORS[] = {{255, 170, 60}, {60, 220, 255}, {220, 90, 255}};
    for (size_t i = 0; i < results.size(); ++i) {
        const stages::StageResult& stage = results[i];
        const cv::Scalar& color = COLORS[i % std::size(COLORS)];
        char text[96];
        std::snprintf(text, sizeof text, "%s: %s %.2f", stage.name.c_str(),
                      stage.kept ? "kept" : "dropped", stage.score);
        const int y = picture.rows - 8 - 20 * static_cast<int>(results.size() - 1 - i);
        if (!stage.kept && !(stage.score > 0)) {
            drawText(picture, stage.name + ": nothing", cv::Point(6, y), color);
            continue;
        }
        drawText(picture, text, cv::Point(6, y), color);
        if (!stage.kept) continue;
        const float inset = 6 * static_cast<float>(i);
        const cv::Size2f size(std::max(stage.width - inset, 4.0f),
                              std::max(stage.height - inset, 4.0f));
        drawTurned(picture, cv::RotatedRect(cv::Point2f(stage.x, stage.y), size, -stage.angle),
                   color, 1);
    }
}

}  // namespace

const char* stateName(const Outcome& outcome, const FrameState& state) {
    if (outcome.gesture == "palm") return "palm";
    if (outcome.gesture == "MOVING") return "MOVING";
    const bool rests = state.framesSinceHit > 0 && state.framesSinceHit <= REST_FRAMES;
    return rests ? "rest" : "looking";
}

void drawOutcome(cv::Mat& picture, const Outcome& outcome, const FrameState& state) {
    const std::string name = stateName(outcome, state);
    const cv::Scalar color = stateColor(name);
    drawStages(picture, outcome.stages);
    if (name == "palm") {
        drawBox(picture, outcome, GREEN, 2);
        char text[64];
        std::snprintf(text, sizeof text, "palm %.2f  %+.0f deg", outcome.score, outcome.angle);
        const int y = std::max(32, static_cast<int>(outcome.top) - 6);
        drawText(picture, text, cv::Point(std::max(4, static_cast<int>(outcome.left)), y), GREEN);
    } else if (name == "rest") {
        drawBox(picture, state.lastHit, GREEN * (1.0 - 0.13 * state.framesSinceHit), 1);
    }
    char text[64];
    std::snprintf(text, sizeof text, "%d  %.2f s  %.1f ms  %s", state.number, state.time,
                  outcome.milliseconds, name.c_str());
    drawText(picture, text, cv::Point(6, 16), color);
    if (name == "palm" || name == "MOVING") {
        cv::rectangle(picture, cv::Rect(0, 0, picture.cols, picture.rows), color, 4);
    }
}

}  // namespace palm
