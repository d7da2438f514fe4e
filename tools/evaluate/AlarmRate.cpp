#include "AlarmRate.h"

#include <cmath>
#include <cstdio>
#include <limits>

#include "Evaluation.h"

namespace evaluate {

namespace {

/// Something shown without a palm in it.
struct Exposure {
    Origin origin;
    int alarms = 0;
    double hours = 0;
};

AlarmRate rateOf(const std::vector<Exposure>& exposures) {
    AlarmRate rate;
    std::vector<Origin> origins;
    for (const Exposure& exposure : exposures) {
        origins.push_back(exposure.origin);
        rate.alarms += exposure.alarms;
        rate.hours += exposure.hours;
    }
    const Bootstrap bootstrap(origins);
    rate.perHour = bootstrap.of([&](const Draw& draw) {
        double alarms = 0, hours = 0;
        for (const std::vector<int>& list : draw) {
            for (const int i : list) {
                alarms += exposures[i].alarms;
                hours += exposures[i].hours;
            }
        }
        return hours > 0 ? alarms / hours : std::numeric_limits<double>::quiet_NaN();
    });
    // What no draw can show: the highest rate at which none in so many hours is not yet unlikely.
    if (rate.alarms == 0 && rate.hours > 0) rate.perHour.high = -std::log(0.025) / rate.hours;
    return rate;
}

}  // namespace

std::string AlarmRate::text() const {
    char text[48];
    std::snprintf(text, sizeof text, "%d in %.1f minutes", alarms, hours * 60);
    return text;
}

AlarmRate alarmsInVideos(const std::vector<SequenceOutcome>& sequences) {
    std::vector<Exposure> exposures;
    for (const SequenceOutcome& outcome : sequences) {
        if (outcome.hasPalm) continue;
        exposures.push_back({{outcome.video, ""}, outcome.alarms(), outcome.seconds / 3600});
    }
    return rateOf(exposures);
}

AlarmRate alarmsOnStills(const std::vector<PhotoOutcome>& outcomes) {
    const double hours = STILL_FRAMES / EngineSession::STILL_RATE / 3600;
    std::vector<Exposure> exposures;
    for (const PhotoOutcome& outcome : outcomes) {
        if (outcome.kind != training::Kind::SCENE) continue;
        exposures.push_back({{outcome.source, outcome.image}, outcome.reported ? 1 : 0, hours});
    }
    return rateOf(exposures);
}

}  // namespace evaluate
