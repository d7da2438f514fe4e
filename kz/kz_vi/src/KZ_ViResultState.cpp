#include "KZ_ViResultState.h"

#include "KZ_StateAggregator.h"
#include "KZ_Stream.h"

namespace KZ {

namespace {

const char* const CELL = "<td border=\"1\">";
const char* const TABLE = "<table border=\"0\" cellspacing=\"0\">";

// A list that fits on a line.
template <typename List>
void writeLine(std::ostream& stream, const char* label, const List& list) {
    if (list.empty()) return;
    stream << "  <tr>" << CELL << label << "</td>" << CELL;
    StreamO(stream) << list;
    stream << "</td></tr>\n";
}

// A list with a row for each element.
template <typename List>
void writeTable(std::ostream& stream, const char* label, const List& list) {
    if (list.empty()) return;
    stream << "  <tr>" << CELL << label << "</td>" << CELL << TABLE;
    for (const auto& element : list) {
        stream << "<tr>" << CELL;
        StreamO(stream) << element;
        stream << "</td></tr>";
    }
    stream << "</table></td></tr>\n";
}

bool isEmpty(const ViResult& result) {
    return result.gestures.empty() && result.floats.empty() && result.rects.empty() &&
           result.points.empty() && result.points3d.empty() && result.parameters.empty();
}

}  // namespace

ViResult ViResultState::viResult;

int ViResultState::id() {
    static const int number = StateAggregator::getId();
    return number;
}

void ViResultState::print(std::ostream& stream) const {
    stream << "ViResultState(" << viResult << ")";
}

void ViResultState::saveToDot(std::ostream& stream) {
    stream << "<tr>" << CELL << "ViResultState</td><td align=\"left\" border=\"1\">";
    if (!isEmpty(viResult)) {
        stream << TABLE << "\n";
        writeLine(stream, "gestures", viResult.gestures);
        writeLine(stream, "floats", viResult.floats);
        writeTable(stream, "rects", viResult.rects);
        writeTable(stream, "points", viResult.points);
        writeTable(stream, "points3d", viResult.points3d);
        writeTable(stream, "parameters", viResult.parameters);
        stream << "</table>";
    }
    stream << "</td></tr>\n";
}

void ViResultState::saveToDot(std::ostream& stream, StateAggregator*) {
    saveToDot(stream);
}

}  // namespace KZ
