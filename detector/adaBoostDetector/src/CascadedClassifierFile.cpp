#include <cctype>
#include <limits>

#include "CascadedClassifier.h"
#include "KZ_AngleRange.h"
#include "VoteTable.h"

namespace {

const int MAX_STAGES = 10000;
const int TRAILER_DIGITS = 1000;

KZ::Size loadSize(std::istream& stream) {
    const int width = VoteTable::readNumber(stream, 0, VoteTable::MAX_SIDE);
    const int height = VoteTable::readNumber(stream, 0, VoteTable::MAX_SIDE);
    return KZ::Size(width, height);
}

// The next whole line, behind the rest of the current one.
std::string loadLine(std::istream& stream) {
    std::string line;
    stream.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    std::getline(stream, line);
    return line;
}

// Takes a run of digits, and the blanks before it, if one is next.
void skipDigits(std::istream& stream) {
    stream >> std::ws;
    while (stream && std::isdigit(stream.peek())) stream.get();
}

}  // namespace

void CascadedClassifier::save(std::ostream& stream) const {
    stream << monoSize.width << ' ' << monoSize.height << '\n'
           << baseSize_.width << ' ' << baseSize_.height << '\n'
           << name << '\n'
           << (side == KZ::Side::BOTH) << '\n'
           << strongClassifiers.size() << '\n'
           << angle << '\n';
    for (const StrongClassifier& stage : strongClassifiers) stage.save(stream);
    stream << std::string(TRAILER_DIGITS, '0');
}

bool CascadedClassifier::load(std::istream& stream) {
    *this = CascadedClassifier();
    const KZ::Size windowSize = loadSize(stream);
    const KZ::Size objectSize = loadSize(stream);
    const std::string title = loadLine(stream);
    const int symmetric = VoteTable::readNumber(stream, 0, 1);
    const int numStages = VoteTable::readNumber(stream, 0, MAX_STAGES);
    int degrees = VoteTable::readNumber(stream, -360, 360);
    if (!stream) return false;

    setMonoSize(windowSize);
    setBaseSize(objectSize);
    setName(title);
    setSymmetry(symmetric != 0);
    KZ::normalizeAngle(degrees);  // as those of poses are
    setAngle(degrees);
    for (int i = 0; i < numStages; ++i) {
        StrongClassifier stage;
        if (!stage.load(stream) || !stage.fits(monoSize)) return false;
        addStrongClassifier(stage);
    }
    skipDigits(stream);
    return true;
}
