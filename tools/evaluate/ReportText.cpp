#include "ReportText.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace evaluate {

namespace {

__attribute__((format(printf, 1, 2))) std::string format(const char* pattern, ...) {
    char line[256];
    va_list values;
    va_start(values, pattern);
    std::vsnprintf(line, sizeof line, pattern, values);
    va_end(values);
    return line;
}

std::string lineOf(const Figure& figure) {
    const std::string label = figure.bin.empty() ? figure.group : figure.group + " " + figure.bin;
    const bool isShare = figure.some > 0 || figure.group != "palms found";
    const std::string count =
        isShare ? format("%d of %d", figure.some, figure.all) : format("%d", figure.all);
    return format("  %-32s %14s   %s\n", label.c_str(), count.c_str(),
                  textOf(figure.interval).c_str());
}

std::string tableOf(const std::vector<Figure>& figures) {
    std::string text, measure;
    for (const Figure& figure : figures) {
        if (figure.measure != measure) text += figure.measure + "\n";
        measure = figure.measure;
        text += lineOf(figure);
    }
    return text;
}

std::string lineOf(const char* name, const AlarmRate& rate) {
    return format("%s: %d in %.1f minutes, an hour %.1f [%.1f, %.1f]\n", name, rate.alarms,
                  rate.hours * 60, rate.perHour.value, rate.perHour.low, rate.perHour.high);
}

std::string lineOf(const char* name, const FrameTimes& times) {
    return format("  %-32s %14d   median %.2f, 99th percentile %.2f\n", name, times.frames,
                  times.median, times.p99);
}

std::string lossesOf(const Evaluation& evaluation) {
    std::string text = "palms missed, by the stage that lost them\n";
    const std::vector<int> losses = lossesByStage(evaluation.photographs);
    for (size_t i = 0; i < losses.size(); ++i) {
        text += format("  %-32s %14d\n", nameOf(static_cast<Stage>(i)), losses[i]);
    }
    const auto& outcomes = evaluation.photographs;
    const auto others = std::count_if(outcomes.begin(), outcomes.end(),
                                      [](const auto& outcome) { return outcome.otherReported; });
    text += format("  %-32s %14d\n", "none: another one was reported", static_cast<int>(others));
    return text;
}

std::string sequencesOf(const Evaluation& evaluation) {
    std::string text;
    for (const SequenceOutcome& outcome : evaluation.sequences) {
        if (!outcome.hasPalm) continue;
        const std::string found =
            outcome.hit() ? format("reported %d frames after the palm came up", outcome.latency())
                          : "palm missed";
        text += format("  %-40s %s, %d alarms\n", outcome.video.c_str(), found.c_str(),
                       outcome.alarms());
    }
    if (!text.empty()) text = "videos with a palm\n" + text;
    if (!evaluation.sequences.empty()) {
        text += lineOf("alarms in videos without a palm", alarmsInVideos(evaluation.sequences));
    }
    return text;
}

std::string headline(const std::vector<Figure>& figures) {
    std::string text;
    for (const Figure& figure : figures) {
        if (figure.group != "all" && figure.group != "macro") continue;
        text += format("  %-24s", figure.measure.c_str()) + lineOf(figure).substr(2);
    }
    return text;
}

}  // namespace

std::string textOf(const Interval& interval) {
    return format("%.4g [%.4g, %.4g]", interval.value, interval.low, interval.high);
}

std::string textOf(const Report& report) {
    const Evaluation& run = report.evaluation;
    std::string text = "Intervals hold 95%, by draws of people and of their pictures.\n\n";
    text += tableOf(report.figures) + lossesOf(run) + sequencesOf(run);
    text += lineOf("alarms on still scenes", alarmsOnStills(run.photographs));
    text += "processor time of a frame, milliseconds\n";
    text += lineOf("full scan", run.scanning) + lineOf("tracking", run.tracking) +
            lineOf("between", run.resting);
    if (!report.sureFigures.empty()) {
        text += "without the rows that are doubtful by eye\n" + headline(report.sureFigures);
    }
    return text;
}

}  // namespace evaluate
