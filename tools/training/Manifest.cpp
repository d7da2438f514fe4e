#include "Manifest.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>

#include "Failure.h"

namespace training {

namespace {

std::vector<std::string> splitFields(const std::string& line) {
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '"' && quoted && i + 1 < line.size() && line[i + 1] == '"') {
            fields.back() += line[++i];
        } else if (c == '"') {
            quoted = !quoted;
        } else if (c == ',' && !quoted) {
            fields.emplace_back();
        } else if (c != '\r') {
            fields.back() += c;
        }
    }
    return fields;
}

const char* const REQUIRED[] = {"image", "source",     "split", "kind", "cx",
                                "cy",    "palm_width", "angle", "side"};

class Reader {
public:
    explicit Reader(const std::string& path) : path_(path), file_(path) {
        if (!file_) {
            throw Failure(path + ": cannot be opened; give the folder that holds manifest.csv");
        }
    }

    std::vector<ManifestRow> read() {
        readHeader();
        std::vector<ManifestRow> rows;
        while (nextLine()) rows.push_back(readRow());
        if (rows.empty()) throw Failure(path_ + ": no rows after the header; nothing to work on");
        return rows;
    }

private:
    [[noreturn]] void fail(const std::string& what) const {
        throw Failure(path_ + ":" + std::to_string(line_) + ": " + what);
    }

    bool nextLine() {
        std::string text;
        if (!std::getline(file_, text)) return false;
        ++line_;
        fields_ = splitFields(text);
        return true;
    }

    void readHeader() {
        if (!nextLine()) throw Failure(path_ + ": is empty; a header line is expected");
        for (size_t i = 0; i < fields_.size(); ++i) columns_[fields_[i]] = i;
        for (const char* name : REQUIRED) {
            if (!columns_.count(name)) {
                fail("the header lacks the column \"" + std::string(name) +
                     "\"; see docs/manifest.md");
            }
        }
        fieldCount_ = fields_.size();
    }

    const std::string& text(const char* column) const {
        static const std::string absent;
        const auto found = columns_.find(column);
        return found == columns_.end() ? absent : fields_[found->second];
    }

    double number(const char* column) const {
        const std::string& field = text(column);
        char* end = nullptr;
        const double value = std::strtod(field.c_str(), &end);
        if (field.empty() || *end != 0 || !std::isfinite(value)) {
            fail(std::string(column) + ": a number expected, found \"" + field + "\"");
        }
        return value;
    }

    Kind kind() const {
        const std::string& name = text("kind");
        if (name == "palm") return Kind::PALM;
        if (name == "hand") return Kind::HAND;
        if (name == "ignore") return Kind::IGNORE;
        if (name == "scene") return Kind::SCENE;
        fail("kind: palm, hand, ignore or scene expected, found \"" + name + "\"");
    }

    void readPose(ManifestRow& row) const {
        row.hasPose = true;
        row.cx = number("cx");
        row.cy = number("cy");
        row.palmWidth = number("palm_width");
        row.angle = number("angle");
        if (row.palmWidth <= 0) fail("palm_width: must be above 0");
        const std::string& side = text("side");
        if (row.kind == Kind::PALM && side != "RIGHT" && side != "LEFT") {
            fail("side: RIGHT or LEFT expected for a palm, found \"" + side + "\"");
        }
        row.mirrored = side == "LEFT";
    }

    ManifestRow readRow() const {
        if (fields_.size() != fieldCount_) {
            fail(std::to_string(fieldCount_) + " fields expected as in the header, found " +
                 std::to_string(fields_.size()));
        }
        ManifestRow row;
        row.line = line_;
        row.image = text("image");
        row.source = text("source");
        row.split = text("split");
        row.kind = kind();
        if (row.image.empty()) fail("image: a path below the data folder expected");
        if (row.split != "train" && row.split != "val") {
            fail("split: train or val expected, found \"" + row.split + "\"");
        }
        if (row.kind == Kind::PALM || !text("cx").empty()) readPose(row);
        if (!text("x0").empty()) {
            row.hasBox = true;
            row.x0 = number("x0");
            row.y0 = number("y0");
            row.x1 = number("x1");
            row.y1 = number("y1");
            if (row.x1 <= row.x0 || row.y1 <= row.y0) fail("x0 to y1: the box has no area");
        }
        return row;
    }

    const std::string path_;
    std::ifstream file_;
    int line_ = 0;
    size_t fieldCount_ = 0;
    std::map<std::string, size_t> columns_;
    std::vector<std::string> fields_;
};

}  // namespace

std::vector<ManifestRow> readManifest(const std::string& path) {
    return Reader(path).read();
}

}  // namespace training
