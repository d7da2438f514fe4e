#include "CsvLines.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace evaluate {

namespace {

bool readLine(std::ifstream& file, std::string& line) {
    if (!std::getline(file, line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
}

std::string joined(const std::vector<std::string>& columns) {
    std::string text;
    for (const std::string& column : columns) text += (text.empty() ? "" : ",") + column;
    return text;
}

}  // namespace

CsvLines::CsvLines(const std::string& path, const std::vector<std::string>& columns)
    : path_(path), columns_(columns), file_(path) {
    if (!file_) throw training::Failure(path + ": cannot be opened");
    std::string header;
    readLine(file_, header);
    if (header != joined(columns)) fail("the header \"" + joined(columns) + "\" expected");
}

bool CsvLines::next() {
    std::string text;
    if (!readLine(file_, text)) return false;
    ++line_;
    fields_.clear();
    size_t begin = 0;
    while (fields_.size() + 1 < columns_.size()) {
        const size_t comma = text.find(',', begin);
        if (comma == std::string::npos) {
            fail(std::to_string(columns_.size()) + " fields expected, found " +
                 std::to_string(fields_.size() + 1));
        }
        fields_.push_back(text.substr(begin, comma - begin));
        begin = comma + 1;
    }
    fields_.push_back(text.substr(begin));
    return true;
}

const std::string& CsvLines::field(const std::string& column) const {
    return fields_[std::find(columns_.begin(), columns_.end(), column) - columns_.begin()];
}

double CsvLines::number(const std::string& column) const {
    const std::string& text = field(column);
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != 0 || !std::isfinite(value) || value < 0) {
        fail(column + ": a number of at least 0 expected, found \"" + text + "\"");
    }
    return value;
}

void CsvLines::fail(const std::string& what) const {
    throw training::Failure(path_ + ":" + std::to_string(line_) + ": " + what);
}

}  // namespace evaluate
