#include "Evaluation.h"

namespace evaluate {

void Runner::show(const std::vector<Exhibit>& photographs) {
    for (const Exhibit& exhibit : photographs) {
        cv::Mat frame;
        std::optional<ShownPalm> hand = exhibits_.draw(exhibit, frame);
        PhotoOutcome outcome = describe(exhibit);
        if (hand) outcome.palmWidth = hand->width;
        if (!outcome.isPalm()) hand.reset();
        const auto others = hand ? exhibits_.others(exhibit, *hand) : std::vector<ShownPalm>();
        const auto answers = session_.showStill(frame, STILL_FRAMES, exhibit.seed);
        judge(answers, hand, others, outcome);
        note(answers);
        evaluation_.photographs.push_back(outcome);
        onShown_(nameOf(exhibit.kind));
    }
}

void Runner::show(const std::vector<Sequence>& sequences) {
    for (const Sequence& sequence : sequences) {
        std::vector<FrameAnswer> answers;
        evaluation_.sequences.push_back(showSequence(sequence, session_, answers));
        note(answers);
        onShown_("video");
    }
}

PhotoOutcome Runner::describe(const Exhibit& exhibit) const {
    PhotoOutcome outcome;
    outcome.kind = exhibit.kind;
    outcome.image = exhibit.row.image;
    outcome.source = exhibit.row.source;
    outcome.number = exhibit.number;
    outcome.angle = exhibit.row.angle;
    if (outcome.isPalm()) outcome.side = exhibit.row.mirrored ? "LEFT" : "RIGHT";
    outcome.brightness = exhibits_.brightness(exhibit);
    outcome.doubtful = doubtful_.contains(outcome.image, outcome.kind);
    return outcome;
}

void Runner::note(const std::vector<FrameAnswer>& answers) {
    for (const FrameAnswer& answer : answers) {
        (answer.look.work == Work::SCAN    ? scanning_
         : answer.look.work == Work::TRACK ? tracking_
                                           : resting_)
            .push_back(answer.milliseconds);
        const auto& stages = answer.look.stages;
        evaluation_.hasVerifiers = evaluation_.hasVerifiers || stages[1].ran || stages[2].ran;
    }
}

Evaluation Runner::result() const {
    Evaluation result = evaluation_;
    result.scanning = timesOf(scanning_);
    result.tracking = timesOf(tracking_);
    result.resting = timesOf(resting_);
    return result;
}

}  // namespace evaluate
