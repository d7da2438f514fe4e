#pragma once

#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "ReportJson.h"

namespace evaluate {

/// Recall against alarms as the last threshold moves, with the run's own point and its intervals.
cv::Mat plotCurve(const Report& report);

/// A measure over the bins of a group, with intervals.
cv::Mat plotBins(const std::vector<Figure>& figures, const std::string& measure,
                 const std::string& group, const std::string& title);

/// A measure by source, with intervals, worst on top.
cv::Mat plotSources(const std::vector<Figure>& figures, const std::string& measure,
                    const std::string& title);

/// The figures in a few lines.
cv::Mat plotSummary(const Report& report);

/// The figures, the curve, and recall by palm width, tilt and brightness.
cv::Mat plotOverview(const Report& report);

/// All plots on one page.
cv::Mat plotPage(const Report& report);

/// Writes plots and sheets of a report as PNG files into a folder, made where it is missing.
void writePlots(const Report& report, const Exhibits& exhibits, const std::string& folder);

}  // namespace evaluate
