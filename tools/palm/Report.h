#pragma once

#include <string>
#include <vector>

#include "Engine.h"

namespace palm {

/// One gesture as it was reported. "MOVING" is one event from its first to its last frame.
struct Event {
    int frame;
    int lastFrame;
    double time;
    std::string name;  ///< file of the picture, empty in a video
    Outcome outcome;
};

/// Collects the outcomes of a run.
class Report {
public:
    /// Returns true when the frame begins an event.
    bool add(int frame, double time, const std::string& name, const Outcome& outcome);

    /// The line that tells the newest event.
    std::string line() const;
    /// One line on what each stage kept of a frame; empty when the chain did not run.
    static std::string stagesLine(int frame, double time, const Outcome& outcome);
    /// "frames 300, time per frame median 3.1 ms, 99th percentile 9.0 ms, palm 12, MOVING 1".
    std::string summary() const;
    /// The whole run as JSON: input, frame size, frames, times, events.
    std::string json(const std::string& input, const cv::Size& frameSize) const;

private:
    double quantile(double q) const;
    int countOf(const std::string& gesture) const;

    std::vector<Event> events_;
    std::vector<double> milliseconds_;
    std::string previous_;
};

}  // namespace palm
