#include "DoubtfulRows.h"

#include "CsvLines.h"
#include "Outcome.h"

namespace evaluate {

DoubtfulRows DoubtfulRows::read(const std::string& path) {
    DoubtfulRows doubtful;
    CsvLines lines(path, {"image", "kind", "reason"});
    while (lines.next()) {
        if (lines.field("reason").empty()) lines.fail("reason: what makes the row doubtful?");
        const training::Kind kind = lines.parsed([&] { return kindOf(lines.field("kind")); });
        doubtful.rows_.insert({lines.field("image"), kind});
    }
    return doubtful;
}

}  // namespace evaluate
