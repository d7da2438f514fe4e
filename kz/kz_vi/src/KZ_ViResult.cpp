#include "KZ_ViResult.h"

#include "KZ_Stream.h"

namespace KZ {

void ViResult::reset() {
    gestures.clear();
    floats.clear();
    rects.clear();
    points.clear();
    points3d.clear();
    parameters.clear();
    images.clear();
}

std::ostream& operator<<(std::ostream& stream, const ViResult& result) {
    StreamO out(stream);
    const auto line = [&](const char* label, const auto& list) {
        stream << "\n\t" << label << "=";
        out << list;
    };
    stream << "ViResult(";
    line("gestures", result.gestures);
    line("floats", result.floats);
    line("rects", result.rects);
    line("points", result.points);
    line("points3d", result.points3d);
    line("parameters", result.parameters);
    line("images", result.images);
    return stream << "\n)";
}

}  // namespace KZ
