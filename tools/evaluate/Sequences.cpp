#include "Sequences.h"

#include <filesystem>
#include <opencv2/imgproc.hpp>
#include <opencv2/videoio.hpp>

#include "CsvLines.h"
#include "Failure.h"

namespace evaluate {

namespace {

Sequence readRow(const CsvLines& lines, const std::string& folder) {
    Sequence sequence;
    SequenceOutcome& outcome = sequence.outcome;
    outcome.video = lines.field("video");
    sequence.path = folder + "/sequences/" + outcome.video;
    const std::string& kind = lines.field("kind");
    if (kind != "palm" && kind != "none") {
        lines.fail("kind: palm or none expected, found \"" + kind + "\"");
    }
    outcome.hasPalm = kind == "palm";
    if (outcome.hasPalm) {
        outcome.start = lines.number("start");
        outcome.end = lines.number("end");
        if (outcome.end <= outcome.start) lines.fail("end: must be after start");
    }
    return sequence;
}

}  // namespace

std::vector<Sequence> readSequences(const std::string& folder, const std::string& split) {
    const std::string list = folder + "/sequences.csv";
    std::vector<Sequence> sequences;
    if (!std::filesystem::exists(list)) return sequences;
    CsvLines lines(list, {"video", "split", "kind", "start", "end"});
    while (lines.next()) {
        if (lines.field("split") == split) sequences.push_back(readRow(lines, folder));
    }
    return sequences;
}

SequenceOutcome showSequence(const Sequence& sequence, EngineSession& session,
                             std::vector<FrameAnswer>& answers) {
    cv::VideoCapture video(sequence.path);
    SequenceOutcome outcome = sequence.outcome;
    const double rate = video.get(cv::CAP_PROP_FPS);
    outcome.framesPerSecond = rate > 0 && rate < 1000 ? rate : EngineSession::STILL_RATE;
    session.forget(0);
    cv::Mat picture, grey;
    int frame = 0;
    for (; video.read(picture); ++frame) {
        cv::cvtColor(picture, grey, cv::COLOR_BGR2GRAY);
        const cv::Size size(EngineSession::WIDTH, EngineSession::HEIGHT);
        if (grey.size() != size) cv::resize(grey, grey, size, 0, 0, cv::INTER_AREA);
        answers.push_back(session.process(grey));
        if (!answers.back().reported) continue;
        outcome.reports.push_back({frame, frame / outcome.framesPerSecond, answers.back().score});
    }
    if (frame == 0) throw training::Failure(sequence.path + ": holds no frames that can be read");
    outcome.seconds = frame / outcome.framesPerSecond;
    return outcome;
}

}  // namespace evaluate
