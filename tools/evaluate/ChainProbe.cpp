#include "ChainProbe.h"

#include <algorithm>

#include "DetectorData.h"
#include "DetectorResult.h"
#include "GRE_RaisedHand.h"
#include "KZ_DetectRegion.h"
#include "ResultKeeper.h"

namespace evaluate {

namespace {

const char* const KEYS[] = {"AdaBoostResult", "Verifier1Result", "Verifier2Result"};
/// Left under each key before a frame: where it still stands afterwards, the stage did not run.
const char* const UNTOUCHED = "untouched";
constexpr size_t MEMORY = 3;

void keep(ResultKeeper::Type type, const char* key, DetectorResult& result) {
    static DetectorData unused;
    ResultKeeper(type, key).detect(unused, KZ::DetectRegion(), result);
}

/// From the picture that the chain sees to the engine's frame, which stands upright.
cv::Rect2d placeInFrame(const LocationState& location) {
    constexpr int FRAME_WIDTH = 320, FRAME_HEIGHT = 240;
    const KZ::Image& seen = raisedHandDetector.rotatedFrame();
    const double zoom = raisedHandDetector.zoom();
    const double x = FRAME_WIDTH / 2 + zoom * (location.center.x - seen.width() / 2);
    const double y = FRAME_HEIGHT / 2 + zoom * (location.center.y - seen.height() / 2);
    const double width = zoom * location.size.width, height = zoom * location.size.height;
    return {x - width / 2, y - height / 2, width, height};
}

}  // namespace

const char* nameOf(Stage stage) {
    static const char* const NAMES[] = {"scan", "first verifier", "second verifier",
                                        "confirmation"};
    return NAMES[static_cast<int>(stage)];
}

const ChainLook::Answer* ChainLook::last() const {
    const auto ran = std::find_if(stages.rbegin(), stages.rend(),
                                  [](const Answer& answer) { return answer.ran; });
    return ran == stages.rend() ? nullptr : &*ran;
}

Stage ChainLook::lostAt() const {
    for (size_t i = 0; i < stages.size(); ++i) {
        if (stages[i].ran && !stages[i].found) return static_cast<Stage>(i);
    }
    return Stage::CONFIRMATION;
}

void ChainProbe::arm() {
    for (const char* key : KEYS) {
        DetectorResult untouched(UNTOUCHED);
        keep(ResultKeeper::SAVE, key, untouched);
    }
}

ChainLook ChainProbe::read() {
    ChainLook look;
    for (size_t i = 0; i < look.stages.size(); ++i) {
        DetectorResult kept;
        keep(ResultKeeper::LOAD, KEYS[i], kept);
        ChainLook::Answer& answer = look.stages[i];
        answer.ran = kept.name != UNTOUCHED;
        if (!answer.ran) continue;
        answer.found = kept.found && kept.location.isSet();
        // A stage that had nothing to judge leaves no score.
        answer.score = kept.score <= 1 ? kept.score : 0;
        if (i == 0 && answer.found) look.place = placeInFrame(kept.location);
    }
    look.work = follow(look);
    return look;
}

Work ChainProbe::follow(const ChainLook& look) {
    if (!look.stages[0].ran) return Work::NONE;
    if (memory_.empty()) {
        if (look.found()) memory_.push_back(true);
        return Work::SCAN;
    }
    memory_.push_back(look.found());
    if (memory_.size() > MEMORY) memory_.erase(memory_.begin());
    if (std::find(memory_.begin(), memory_.end(), true) == memory_.end()) memory_.clear();
    return Work::TRACK;
}

}  // namespace evaluate
