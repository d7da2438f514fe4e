#include "ChainProbe.h"

#include <algorithm>

#include "StageResults.h"

namespace evaluate {

namespace {

constexpr size_t MEMORY = 3;

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
    stages::forget();
}

ChainLook ChainProbe::read() {
    ChainLook look;
    const std::vector<stages::StageResult> results = stages::ofLastFrame();
    for (size_t i = 0; i < std::min(results.size(), look.stages.size()); ++i) {
        const stages::StageResult& stage = results[i];
        look.stages[i] = {true, stage.kept, static_cast<double>(stage.score)};
        if (i > 0 || !stage.kept) continue;
        look.place =
            cv::Rect2d(static_cast<double>(stage.x - stage.width / 2),
                       static_cast<double>(stage.y - stage.height / 2),
                       static_cast<double>(stage.width), static_cast<double>(stage.height));
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
