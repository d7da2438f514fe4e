#pragma once

#include <string>
#include <vector>

#include "ReportJson.h"

namespace evaluate {

/// A source of pictures as the data folder's README lists it.
struct DataSource {
    std::string split, name, repository, licence, images, palms, hands, scenes;
};

/// The table of sources in a README: rows "| train | name | repository | licence | images | palm |
/// hand | scene | ...". Throws Failure, naming `path`, when there is none.
std::vector<DataSource> readSources(const std::string& path);

/// The model card in Markdown: what was trained, on what, and what the report says of it.
std::string modelCard(const Report& report, const std::vector<DataSource>& sources);

}  // namespace evaluate
