#include "Outcome.h"

#include <algorithm>
#include <cmath>

#include "Window.h"

namespace evaluate {

namespace {

/// How far the answer's size may be from the palm's, and its centre in palm widths.
constexpr double SIZE_FACTOR = 1.6, CENTRE_DISTANCE = 0.5;
/// The confirmation: so many hits among so many looks.
constexpr size_t LOOKS = 3, HITS = 2;
/// A track outlives its palm by the looks that it remembers.
constexpr double SECONDS_AFTER_PALM = 0.2;

cv::Point2d middleOf(const cv::Rect2d& rect) {
    return {rect.x + rect.width / 2, rect.y + rect.height / 2};
}

double distance(const ShownPalm& palm, const cv::Rect2d& rect) {
    const cv::Point2d offset = middleOf(rect) - palm.centre;
    return std::hypot(offset.x, offset.y) / palm.width;
}

bool sees(const ChainLook& look, const std::optional<ShownPalm>& palm) {
    return look.stages[0].found && (!palm || liesOn(*palm, look.place));
}

double confirmableScore(const std::vector<FrameAnswer>& answers,
                        const std::optional<ShownPalm>& palm) {
    std::vector<double> recent;
    double best = 0;
    for (const FrameAnswer& answer : answers) {
        const ChainLook::Answer* last = answer.look.last();
        if (!last) continue;
        recent.push_back(sees(answer.look, palm) ? last->score : 0);
        if (recent.size() > LOOKS) recent.erase(recent.begin());
        if (recent.size() < HITS) continue;
        std::vector<double> sorted = recent;
        std::sort(sorted.rbegin(), sorted.rend());
        best = std::max(best, sorted[HITS - 1]);
    }
    return best;
}

Stage deepestLoss(const std::vector<FrameAnswer>& answers, const std::optional<ShownPalm>& palm) {
    Stage deepest = Stage::SCAN;
    for (const FrameAnswer& answer : answers) {
        if (sees(answer.look, palm)) deepest = std::max(deepest, answer.look.lostAt());
    }
    return deepest;
}

}  // namespace

bool liesOn(const ShownPalm& palm, const cv::Rect2d& rect) {
    const double scale = rect.width / (palm.width * training::WindowShape::PER_PALM);
    return distance(palm, rect) <= CENTRE_DISTANCE && scale <= SIZE_FACTOR &&
           scale >= 1 / SIZE_FACTOR;
}

void judge(const std::vector<FrameAnswer>& answers, const std::optional<ShownPalm>& palm,
           const std::vector<ShownPalm>& others, PhotoOutcome& outcome) {
    for (size_t i = 0; i < answers.size(); ++i) {
        const FrameAnswer& answer = answers[i];
        if (!answer.reported) continue;
        const bool onPalm = palm && liesOn(*palm, answer.rect);
        // The first report counts, and of a palm the first that lies on it.
        if (!outcome.reported || (onPalm && !outcome.found)) {
            outcome.firstFrame = static_cast<int>(i);
            outcome.rect = answer.rect;
            outcome.score = answer.score;
            outcome.reportedAngle = answer.angle;
        }
        outcome.reported = true;
        outcome.found = outcome.found || onPalm;
    }
    outcome.lastScore = confirmableScore(answers, palm);
    if (!palm) return;
    if (outcome.found) {
        outcome.offset = (middleOf(outcome.rect) - palm->centre) / palm->width;
        outcome.angleError = std::fabs(outcome.reportedAngle - outcome.angle);
        return;
    }
    outcome.otherReported =
        outcome.reported && std::any_of(others.begin(), others.end(), [&](const ShownPalm& other) {
            return liesOn(other, outcome.rect);
        });
    if (!outcome.otherReported) outcome.lost = deepestLoss(answers, palm);
}

const SequenceReport* SequenceOutcome::hit() const {
    const auto found = std::find_if(reports.begin(), reports.end(), [&](const auto& report) {
        return hasPalm && report.seconds >= start && report.seconds <= end + SECONDS_AFTER_PALM;
    });
    return found == reports.end() ? nullptr : &*found;
}

int SequenceOutcome::alarms() const {
    return static_cast<int>(std::count_if(reports.begin(), reports.end(), [&](const auto& report) {
        return !hasPalm || report.seconds < start || report.seconds > end + SECONDS_AFTER_PALM;
    }));
}

int SequenceOutcome::latency() const {
    const SequenceReport* report = hit();
    return report ? report->frame - cvCeil(start * framesPerSecond - 1e-9) : -1;
}

RaisedPalms::RaisedPalms(const std::vector<SequenceOutcome>& sequences) {
    for (const SequenceOutcome& outcome : sequences) {
        if (!outcome.hasPalm) continue;
        ++all;
        if (outcome.hit()) latencies.push_back(outcome.latency());
    }
}

std::string RaisedPalms::text() const {
    return std::to_string(latencies.size()) + " of " + std::to_string(all);
}

}  // namespace evaluate
