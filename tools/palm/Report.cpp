#include "Report.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace palm {

bool Report::add(int frame, double time, const std::string& name, const Outcome& outcome) {
    milliseconds_.push_back(outcome.milliseconds);
    const bool goesOn = outcome.gesture == "MOVING" && previous_ == "MOVING";
    previous_ = outcome.gesture;
    if (goesOn) events_.back().lastFrame = frame;
    if (goesOn || outcome.gesture.empty()) return false;
    events_.push_back({frame, frame, time, name, outcome});
    return true;
}

std::string Report::line() const {
    const Event& event = events_.back();
    const Outcome& o = event.outcome;
    char text[256];
    if (o.gesture == "palm") {
        std::snprintf(text, sizeof text,
                      "frame %d  t %.3f s  palm  score %.2f  rect %.0f,%.0f,%.0f,%.0f  angle %.0f",
                      event.frame, event.time, o.score, o.left, o.top, o.right, o.bottom, o.angle);
    } else {
        std::snprintf(text, sizeof text, "frame %d  t %.3f s  %s", event.frame, event.time,
                      o.gesture.c_str());
    }
    return event.name.empty() ? text : std::string(text) + "  " + event.name;
}

std::string Report::stagesLine(int frame, double time, const Outcome& outcome) {
    if (outcome.stages.empty()) return std::string();
    char text[128];
    std::snprintf(text, sizeof text, "frame %d  t %.3f s  stages", frame, time);
    std::string line = text;
    for (const stages::StageResult& stage : outcome.stages) {
        line += "  | " + stage.name + ": ";
        if (stage.kept) {
            std::snprintf(text, sizeof text, "%.3f at %.0f,%.0f size %.0f angle %.0f", stage.score,
                          stage.x, stage.y, stage.width, stage.angle);
            line += text;
            continue;
        }
        std::snprintf(text, sizeof text, "dropped, %.3f", stage.score);
        line += stage.score > 0 ? text : "nothing";
        break;
    }
    return line;
}

double Report::quantile(double q) const {
    if (milliseconds_.empty()) return 0;
    std::vector<double> sorted = milliseconds_;
    std::sort(sorted.begin(), sorted.end());
    return sorted[std::min(sorted.size() - 1, static_cast<size_t>(q * sorted.size()))];
}

int Report::countOf(const std::string& gesture) const {
    return static_cast<int>(std::count_if(events_.begin(), events_.end(), [&](const Event& event) {
        return event.outcome.gesture == gesture;
    }));
}

std::string Report::summary() const {
    char text[256];
    std::snprintf(text, sizeof text,
                  "frames %zu, time per frame median %.2f ms, 99th percentile %.2f ms, "
                  "gestures: palm %d, MOVING %d",
                  milliseconds_.size(), quantile(0.5), quantile(0.99), countOf("palm"),
                  countOf("MOVING"));
    return text;
}

std::string Report::json(const std::string& input, const cv::Size& frameSize) const {
    nlohmann::ordered_json report;
    report["input"] = input;
    report["frame_size"] = {frameSize.width, frameSize.height};
    report["frames"] = milliseconds_.size();
    report["milliseconds_per_frame"] = {{"median", quantile(0.5)}, {"p99", quantile(0.99)}};
    report["gestures"] = nlohmann::ordered_json::array();
    for (const Event& event : events_) {
        const Outcome& o = event.outcome;
        nlohmann::ordered_json entry = {
            {"frame", event.frame}, {"time", event.time}, {"gesture", o.gesture}};
        if (!event.name.empty()) entry["picture"] = event.name;
        if (o.gesture == "palm") {
            entry["rect"] = {o.left, o.top, o.right, o.bottom};
            entry["score"] = o.score;
            entry["angle"] = o.angle;
        } else {
            entry["last_frame"] = event.lastFrame;
        }
        for (const stages::StageResult& stage : o.stages) {
            entry["stages"].push_back({{"stage", stage.name},
                                       {"kept", stage.kept},
                                       {"score", stage.score},
                                       {"center", {stage.x, stage.y}},
                                       {"size", {stage.width, stage.height}},
                                       {"angle", stage.angle}});
        }
        report["gestures"].push_back(entry);
    }
    return report.dump(2) + "\n";
}

}  // namespace palm
