#pragma once

#include <cmath>
#include <opencv2/core.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "EngineSession.h"
#include "Exhibits.h"

namespace evaluate {

/// What became of one exhibit. Lengths are pixels of a frame of 320 by 240, angles degrees.
struct PhotoOutcome {
    training::Kind kind = training::Kind::SCENE;
    std::string image, source, side;  ///< `side`: LEFT, RIGHT or empty
    int number = 0;                   ///< of the row among those of its picture
    double palmWidth = 0, angle = 0;  ///< as shown; 0 for scenes
    double brightness = 0;            ///< grey levels, see Exhibits::brightness
    bool doubtful = false;            ///< its label is doubtful by eye

    bool reported = false;     ///< anywhere
    bool found = false;        ///< on the labelled palm
    int firstFrame = -1;       ///< index of the first report that counts, -1 without one
    cv::Rect2d rect;           ///< of that report
    double score = 0;          ///< likewise
    double reportedAngle = 0;  ///< likewise
    cv::Point2d offset;        ///< of a palm found: of the report's centre, in palm widths
    double angleError = 0;     ///< of a palm found: absolute
    /// Not this palm was reported but another of its picture, or an unclear hand. As the engine
    /// reports one palm a frame, this one is then neither found nor missed.
    bool otherReported = false;
    std::optional<Stage> lost;  ///< of a palm missed: the stage behind which it was never seen
    /// The largest threshold on the score of the chain's last stage at which the looks that were
    /// taken would still have confirmed a palm (of a palm: there); 0 when at none.
    double lastScore = 0;

    bool isPalm() const { return kind == training::Kind::PALM; }
    double locationError() const { return std::hypot(offset.x, offset.y); }
    std::string key() const { return keyOf(kind, image, number); }
};

/// The rectangle has the palm's size, give or take a factor of 1.6, and its centre lies within half
/// a palm width of the palm's.
bool liesOn(const ShownPalm& palm, const cv::Rect2d& rect);

/// Judges the engine's answers to the frames of one exhibit. `palm`: where the labelled one stands,
/// for exhibits of the kind PALM; `others`: what else of the picture may be reported. Fills all
/// that the answers decide.
void judge(const std::vector<FrameAnswer>& answers, const std::optional<ShownPalm>& palm,
           const std::vector<ShownPalm>& others, PhotoOutcome& outcome);

/// A report of a gesture in a video.
struct SequenceReport {
    int frame = 0;
    double seconds = 0;
    double score = 0;
};

/// What became of one video.
struct SequenceOutcome {
    std::string video;
    bool hasPalm = false;
    double seconds = 0, framesPerSecond = 0;
    double start = 0, end = 0;  ///< seconds in which a palm is in view
    std::vector<SequenceReport> reports;

    /// The first report while the palm is in view or right after; null without one.
    const SequenceReport* hit() const;
    /// Reports that tell no palm.
    int alarms() const;
    /// Frames from the raising to the report; negative without one.
    int latency() const;
};

/// The videos with a palm.
struct RaisedPalms {
    int all = 0;
    std::vector<int> latencies;  ///< of those found, in frames

    explicit RaisedPalms(const std::vector<SequenceOutcome>& sequences);
    /// "3 of 4".
    std::string text() const;
};

}  // namespace evaluate
