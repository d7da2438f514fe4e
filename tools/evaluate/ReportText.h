#pragma once

#include <string>

#include "ReportJson.h"

namespace evaluate {

/// The report as a table to read, 100 columns wide.
std::string textOf(const Report& report);

/// "0.953 [0.931, 0.970]".
std::string textOf(const Interval& interval);

}  // namespace evaluate
