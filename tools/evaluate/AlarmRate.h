#pragma once

#include <string>
#include <vector>

#include "Bootstrap.h"
#include "Outcome.h"

namespace evaluate {

/// False alarms in a time without a palm.
struct AlarmRate {
    int alarms = 0;
    double hours = 0;
    Interval perHour;  ///< NaN without a time

    /// "2 in 0.9 minutes".
    std::string text() const;
};

/// Reports in the videos without a palm. The draws are of videos, nearly all of which show one
/// person: the interval holds for other signs of hers, not for other people.
AlarmRate alarmsInVideos(const std::vector<SequenceOutcome>& sequences);

/// Scenes with a report, each still taken for the time that its frames last.
AlarmRate alarmsOnStills(const std::vector<PhotoOutcome>& outcomes);

}  // namespace evaluate
