#pragma once

#include <set>
#include <string>
#include <utility>

#include "Manifest.h"

namespace evaluate {

/// Rows of the manifest whose label is doubtful by eye, from a CSV file with the columns image,
/// kind (palm, hand or scene) and reason. All rows of that kind of the picture are meant.
class DoubtfulRows {
public:
    DoubtfulRows() = default;
    /// Throws Failure with file and line for anything else.
    static DoubtfulRows read(const std::string& path);

    bool contains(const std::string& image, training::Kind kind) const {
        return rows_.count({image, kind}) > 0;
    }
    size_t size() const { return rows_.size(); }

private:
    std::set<std::pair<std::string, training::Kind>> rows_;
};

}  // namespace evaluate
