#pragma once

#include <functional>
#include <string>
#include <vector>

#include "DoubtfulRows.h"
#include "EngineSession.h"
#include "Exhibits.h"
#include "Metrics.h"
#include "Outcome.h"
#include "Sequences.h"

namespace evaluate {

/// Frames for which a photograph is shown: a third of a second.
constexpr int STILL_FRAMES = 9;

/// What one run found out.
struct Evaluation {
    std::string data, split;
    int every = 1, limit = 0;
    bool hasVerifiers = false;  ///< the chain has more stages than the scan
    std::vector<PhotoOutcome> photographs;
    std::vector<SequenceOutcome> sequences;
    FrameTimes scanning, tracking, resting;  ///< processor time by what the chain did
};

/// Shows photographs and videos to the engine and gathers what becomes of them.
class Runner {
public:
    /// Hears of every photograph and video.
    using Listener = std::function<void(const std::string& what)>;

    Runner(const Exhibits& exhibits, const DoubtfulRows& doubtful, Listener onShown)
        : exhibits_(exhibits), doubtful_(doubtful), onShown_(std::move(onShown)) {}

    void show(const std::vector<Exhibit>& photographs);
    void show(const std::vector<Sequence>& sequences);

    /// Outcomes and times of all that was shown.
    Evaluation result() const;

private:
    void note(const std::vector<FrameAnswer>& answers);
    PhotoOutcome describe(const Exhibit& exhibit) const;

    const Exhibits& exhibits_;
    const DoubtfulRows& doubtful_;
    Listener onShown_;
    EngineSession session_;
    Evaluation evaluation_;
    std::vector<double> scanning_, tracking_, resting_;
};

}  // namespace evaluate
