#pragma once

#include <map>
#include <string>

#include "CascadeTrainer.h"

namespace training {

/// The settings that a finished ring carries along; they have no effect on detection.
std::map<std::string, std::string> ringConfig(const TrainingPlan& plan);

}  // namespace training
