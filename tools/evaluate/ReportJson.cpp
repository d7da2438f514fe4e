#include "ReportJson.h"

#include <algorithm>
#include <cmath>
#include <fstream>

#include "Curve.h"
#include "Failure.h"
#include "GRE_Interface.h"

namespace evaluate {

using nlohmann::json;
using nlohmann::ordered_json;
using training::Kind;

namespace {

const char* const FORMAT = "evaluate 1";

/// Enough digits to compare runs, few enough to read.
ordered_json rounded(double value) {
    if (!std::isfinite(value)) return nullptr;
    return std::round(value * 1e5) / 1e5;
}

ordered_json jsonOf(const Interval& interval) {
    return {{"value", rounded(interval.value)},
            {"low", rounded(interval.low)},
            {"high", rounded(interval.high)}};
}

ordered_json jsonOf(const Figure& figure) {
    ordered_json entry = {{"measure", figure.measure}, {"group", figure.group}};
    if (!figure.bin.empty()) entry["bin"] = figure.bin;
    entry["some"] = figure.some;
    entry["all"] = figure.all;
    entry.update(jsonOf(figure.interval));
    return entry;
}

ordered_json jsonOf(const std::vector<Figure>& figures) {
    ordered_json list = ordered_json::array();
    for (const Figure& figure : figures) list.push_back(jsonOf(figure));
    return list;
}

ordered_json jsonOf(const PhotoOutcome& outcome) {
    ordered_json entry = {{"kind", nameOf(outcome.kind)},
                          {"image", outcome.image},
                          {"row", outcome.number},
                          {"source", outcome.source},
                          {"brightness", rounded(outcome.brightness)},
                          {"doubtful", outcome.doubtful},
                          {"reported", outcome.reported},
                          {"last_score", rounded(outcome.lastScore)}};
    if (outcome.kind != Kind::SCENE) {
        entry["palm_width"] = rounded(outcome.palmWidth);
        entry["angle"] = rounded(outcome.angle);
    }
    if (outcome.reported) {
        const cv::Rect2d& rect = outcome.rect;
        entry["first_frame"] = outcome.firstFrame;
        entry["score"] = rounded(outcome.score);
        entry["rect"] = {rounded(rect.x), rounded(rect.y), rounded(rect.width),
                         rounded(rect.height)};
        entry["reported_angle"] = outcome.reportedAngle;
    }
    if (!outcome.isPalm()) return entry;
    entry["side"] = outcome.side;
    entry["found"] = outcome.found;
    if (outcome.otherReported) entry["other_reported"] = true;
    if (outcome.found) {
        entry["offset"] = {rounded(outcome.offset.x), rounded(outcome.offset.y)};
        entry["angle_error"] = rounded(outcome.angleError);
    }
    if (outcome.lost) entry["lost"] = nameOf(*outcome.lost);
    return entry;
}

ordered_json jsonOf(const SequenceOutcome& outcome) {
    ordered_json entry = {{"video", outcome.video},
                          {"kind", outcome.hasPalm ? "palm" : "none"},
                          {"seconds", rounded(outcome.seconds)},
                          {"frames_per_second", rounded(outcome.framesPerSecond)},
                          {"alarms", outcome.alarms()}};
    if (outcome.hasPalm) {
        entry["start"] = outcome.start;
        entry["end"] = outcome.end;
        entry["found"] = outcome.hit() != nullptr;
        if (outcome.hit()) entry["latency_frames"] = outcome.latency();
    }
    entry["reports"] = ordered_json::array();
    for (const SequenceReport& report : outcome.reports) {
        entry["reports"].push_back({{"frame", report.frame},
                                    {"seconds", rounded(report.seconds)},
                                    {"score", rounded(report.score)}});
    }
    return entry;
}

ordered_json jsonOf(const FrameTimes& times) {
    return {{"frames", times.frames},
            {"median_ms", rounded(times.median)},
            {"p99_ms", rounded(times.p99)}};
}

ordered_json jsonOf(const AlarmRate& rate) {
    ordered_json entry = {{"alarms", rate.alarms}, {"hours", rounded(rate.hours)}};
    entry["per_hour"] = jsonOf(rate.perHour);
    return entry;
}

ordered_json lossesJson(const Evaluation& evaluation) {
    const std::vector<int> losses = lossesByStage(evaluation.photographs);
    ordered_json entry;
    for (size_t i = 0; i < losses.size(); ++i) entry[nameOf(static_cast<Stage>(i))] = losses[i];
    return entry;
}

ordered_json curveJson(const Evaluation& evaluation) {
    ordered_json list = ordered_json::array();
    for (const CurvePoint& point : curveOf(evaluation.photographs)) {
        list.push_back({{"threshold", rounded(point.threshold)},
                        {"recall", rounded(point.recall)},
                        {"pose_alarms", rounded(point.poseAlarms)},
                        {"scene_alarms", rounded(point.sceneAlarms)}});
    }
    return list;
}

template <typename Entry>
ordered_json listOf(const std::vector<Entry>& entries) {
    ordered_json list = ordered_json::array();
    for (const Entry& entry : entries) list.push_back(jsonOf(entry));
    return list;
}

Stage stageOf(const std::string& name) {
    for (const Stage stage : {Stage::SCAN, Stage::FIRST_VERIFIER, Stage::SECOND_VERIFIER}) {
        if (name == nameOf(stage)) return stage;
    }
    return Stage::CONFIRMATION;
}

FrameTimes readTimes(const json& entry) {
    return {entry.at("frames"), entry.at("median_ms"), entry.at("p99_ms")};
}

PhotoOutcome readPhotograph(const json& entry) {
    PhotoOutcome outcome;
    outcome.kind = kindOf(entry.at("kind"));
    outcome.image = entry.at("image");
    outcome.number = entry.at("row");
    outcome.source = entry.at("source");
    outcome.brightness = entry.at("brightness");
    outcome.doubtful = entry.at("doubtful");
    outcome.reported = entry.at("reported");
    outcome.lastScore = entry.at("last_score");
    outcome.palmWidth = entry.value("palm_width", 0.0);
    outcome.angle = entry.value("angle", 0.0);
    outcome.firstFrame = entry.value("first_frame", -1);
    outcome.score = entry.value("score", 0.0);
    if (outcome.reported) {
        const json& rect = entry.at("rect");
        outcome.rect = {rect.at(0), rect.at(1), rect.at(2), rect.at(3)};
        outcome.reportedAngle = entry.at("reported_angle");
    }
    if (!outcome.isPalm()) return outcome;
    outcome.side = entry.at("side");
    outcome.found = entry.at("found");
    outcome.otherReported = entry.value("other_reported", false);
    if (outcome.found) {
        const json& offset = entry.at("offset");
        outcome.offset = {offset.at(0), offset.at(1)};
    }
    outcome.angleError = entry.value("angle_error", 0.0);
    if (entry.contains("lost")) outcome.lost = stageOf(entry.at("lost"));
    return outcome;
}

SequenceOutcome readSequence(const json& entry) {
    SequenceOutcome outcome;
    outcome.video = entry.at("video");
    outcome.hasPalm = entry.at("kind") == "palm";
    outcome.seconds = entry.at("seconds");
    outcome.framesPerSecond = entry.at("frames_per_second");
    outcome.start = entry.value("start", 0.0);
    outcome.end = entry.value("end", 0.0);
    for (const json& report : entry.at("reports")) {
        outcome.reports.push_back({report.at("frame"), report.at("seconds"), report.at("score")});
    }
    return outcome;
}

}  // namespace

Report::Report(const Evaluation& run) : evaluation(run), figures(figuresOf(run.photographs, true)) {
    const auto isDoubtful = [](const PhotoOutcome& outcome) { return outcome.doubtful; };
    if (std::any_of(run.photographs.begin(), run.photographs.end(), isDoubtful)) {
        sureFigures = figuresOf(run.photographs, false);
    }
}

std::vector<int> lossesByStage(const std::vector<PhotoOutcome>& outcomes) {
    std::vector<int> losses(static_cast<int>(Stage::CONFIRMATION) + 1);
    for (const PhotoOutcome& outcome : outcomes) {
        if (outcome.lost) ++losses[static_cast<int>(*outcome.lost)];
    }
    return losses;
}

ordered_json jsonOf(const Report& report) {
    const Evaluation& run = report.evaluation;
    return {{"format", FORMAT},
            {"engine", GRE_GetVersion()},
            {"data", run.data},
            {"split", run.split},
            {"every", run.every},
            {"limit", run.limit},
            {"has_verifiers", run.hasVerifiers},
            {"figures", jsonOf(report.figures)},
            {"figures_without_doubtful_rows", jsonOf(report.sureFigures)},
            {"lost_by", lossesJson(run)},
            {"alarms_in_videos", jsonOf(alarmsInVideos(run.sequences))},
            {"alarms_in_still_scenes", jsonOf(alarmsOnStills(run.photographs))},
            {"processor_time",
             {{"full_scan", jsonOf(run.scanning)},
              {"tracking", jsonOf(run.tracking)},
              {"between", jsonOf(run.resting)}}},
            {"curve", curveJson(run)},
            {"sequences", listOf(run.sequences)},
            {"photographs", listOf(run.photographs)}};
}

json readJson(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw training::Failure(path + ": cannot be opened");
    try {
        return json::parse(file);
    } catch (const json::exception& fault) {
        throw training::Failure(path + ": is no JSON file: " + fault.what());
    }
}

Evaluation readReport(const std::string& path) {
    const json report = readJson(path);
    Evaluation evaluation;
    try {
        if (report.at("format") != FORMAT) throw training::Failure("another format");
        evaluation.data = report.at("data");
        evaluation.split = report.at("split");
        evaluation.every = report.at("every");
        evaluation.limit = report.at("limit");
        evaluation.hasVerifiers = report.at("has_verifiers");
        const json& times = report.at("processor_time");
        evaluation.scanning = readTimes(times.at("full_scan"));
        evaluation.tracking = readTimes(times.at("tracking"));
        evaluation.resting = readTimes(times.at("between"));
        for (const json& entry : report.at("photographs")) {
            evaluation.photographs.push_back(readPhotograph(entry));
        }
        for (const json& entry : report.at("sequences")) {
            evaluation.sequences.push_back(readSequence(entry));
        }
    } catch (const std::exception& fault) {
        throw training::Failure(path + ": is no report of evaluate run: " + fault.what());
    }
    return evaluation;
}

}  // namespace evaluate
