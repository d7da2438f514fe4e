#include "KZ_InheritedState.h"

#include "KZ_Stream.h"

namespace KZ {

void printValue(std::ostream& stream, const std::vector<float>& values) {
    StreamO(stream) << values;
}

void printValue(std::ostream& stream, const std::vector<PointF>& points) {
    StreamO(stream) << points;
}

void printValue(std::ostream& stream, const std::map<std::string, std::string>& entries) {
    StreamO(stream) << entries;
}

}  // namespace KZ
