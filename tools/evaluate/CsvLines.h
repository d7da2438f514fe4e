#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "Failure.h"

namespace evaluate {

/// A CSV file of known columns, line by line. The last column takes the rest of its line, commas
/// included; the others hold none.
class CsvLines {
public:
    /// Throws Failure when the file cannot be opened or has another header.
    CsvLines(const std::string& path, const std::vector<std::string>& columns);

    /// False at the end. Throws Failure for a line with too few fields.
    bool next();
    const std::string& field(const std::string& column) const;
    /// A number of at least 0; throws Failure.
    double number(const std::string& column) const;

    /// Throws Failure that names file and line.
    [[noreturn]] void fail(const std::string& what) const;
    /// What `parse` returns; its Failure gets file and line.
    template <typename Parse>
    auto parsed(const Parse& parse) const {
        try {
            return parse();
        } catch (const training::Failure& failure) {
            fail(failure.what());
        }
    }

private:
    std::string path_;
    std::vector<std::string> columns_, fields_;
    std::ifstream file_;
    int line_ = 1;
};

}  // namespace evaluate
