#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "AlarmRate.h"
#include "Evaluation.h"
#include "Metrics.h"

namespace evaluate {

/// A run with its figures.
struct Report {
    Evaluation evaluation;
    std::vector<Figure> figures;      ///< of all rows
    std::vector<Figure> sureFigures;  ///< without doubtful rows; empty where none was shown

    explicit Report(const Evaluation& run);
};

/// Missed palms by the stage that lost them, in the order of the stages.
std::vector<int> lossesByStage(const std::vector<PhotoOutcome>& outcomes);

/// Everything, outcome by outcome.
nlohmann::ordered_json jsonOf(const Report& report);

/// The outcomes of a report written by `jsonOf`. Throws Failure, naming `path`, for anything else.
Evaluation readReport(const std::string& path);

/// Parses a file; throws Failure with its name and what is wrong.
nlohmann::json readJson(const std::string& path);

}  // namespace evaluate
