#pragma once

#include <string>
#include <vector>

#include "Outcome.h"
#include "Random.h"

/// An exhibit that counts or does not: a palm found, or an alarm.
inline evaluate::PhotoOutcome outcomeOf(training::Kind kind, const std::string& source, int number,
                                        bool counts) {
    evaluate::PhotoOutcome outcome;
    outcome.kind = kind;
    outcome.image = source + "/" + std::to_string(number) + ".jpg";
    outcome.source = source;
    outcome.palmWidth = 30;
    outcome.reported = counts;
    outcome.firstFrame = counts ? 2 : -1;
    if (!outcome.isPalm()) return outcome;
    outcome.side = "LEFT";
    outcome.found = counts;
    if (!counts) outcome.lost = evaluate::Stage::SCAN;
    return outcome;
}

/// Exhibits of every kind and in every state.
inline std::vector<evaluate::PhotoOutcome> randomOutcomes(int count, training::Random& random) {
    using training::Kind;
    std::vector<evaluate::PhotoOutcome> outcomes;
    for (int i = 0; i < count; ++i) {
        const Kind kind = std::vector<Kind>{Kind::PALM, Kind::HAND, Kind::SCENE}[random.below(3)];
        const std::string source =
            random.chance(0.3) ? "hagrid_capstone" : "person" + std::to_string(random.below(5));
        evaluate::PhotoOutcome outcome = outcomeOf(kind, source, i, random.chance(0.6));
        outcome.palmWidth = kind == Kind::SCENE ? 0 : random.uniform(20, 60);
        outcome.angle = kind == Kind::SCENE ? 0 : random.uniform(-35, 35);
        outcome.brightness = random.uniform(0, 255);
        outcome.doubtful = random.chance(0.1);
        if (outcome.isPalm()) outcome.side = random.chance(0.5) ? "LEFT" : "RIGHT";
        outcome.lastScore = random.unit();
        if (outcome.reported) {
            outcome.firstFrame = random.below(9);
            outcome.rect = {random.unit(), random.unit(), random.uniform(40, 90), 70};
            outcome.score = random.unit();
            outcome.reportedAngle = random.below(60) - 30;
        }
        if (outcome.found) {
            outcome.offset = {random.uniform(-.3, .3), random.uniform(-.3, .3)};
            outcome.angleError = random.uniform(0, 20);
        }
        outcome.otherReported = outcome.lost && random.chance(0.2);
        if (outcome.otherReported) outcome.lost.reset();
        outcomes.push_back(outcome);
    }
    return outcomes;
}
