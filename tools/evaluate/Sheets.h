#pragma once

#include <string>

#include "Evaluation.h"

namespace evaluate {

/// Writes misses.png, pose_alarms.png and scene_alarms.png: the worst of each, as the engine saw
/// them, with label and report drawn in. Misses are worst when an early stage lost them, alarms
/// when their score is high. One source fills no more than a part of a sheet.
void writeSheets(const Evaluation& evaluation, const Exhibits& exhibits, const std::string& folder);

/// The worst outcomes, worst first, at most `most`, of each source a third of those at most.
std::vector<PhotoOutcome> worstMisses(const std::vector<PhotoOutcome>& outcomes, size_t most);
std::vector<PhotoOutcome> worstAlarms(const std::vector<PhotoOutcome>& outcomes,
                                      training::Kind kind, size_t most);

}  // namespace evaluate
