#pragma once

#include <string>
#include <vector>

#include "VerifierTrainer.h"

namespace training {

/// Writes a picture of loss, recall and false alarms over the epochs. Throws Failure.
void writePlot(const std::string& title, const std::vector<EpochReport>& reports,
               const std::string& path);

}  // namespace training
