#pragma once

#include <array>
#include <opencv2/core.hpp>
#include <vector>

namespace evaluate {

/// What the chain did in a frame: nothing, a search over the whole frame, a look at a tracked palm.
enum class Work { NONE, SCAN, TRACK };

/// The stages that may lose a palm, in their order.
enum class Stage { SCAN, FIRST_VERIFIER, SECOND_VERIFIER, CONFIRMATION };

const char* nameOf(Stage stage);

/// What the stages left when the chain looked at a frame.
struct ChainLook {
    struct Answer {
        bool ran = false;    ///< the stage is in the chain, and the chain ran
        bool found = false;  ///< it let a palm pass
        double score = 0;
    };

    Work work = Work::NONE;
    std::array<Answer, 3> stages;  ///< scan and verifiers
    cv::Rect2d place;              ///< what the scan found; pixels of a frame of 320 by 240

    /// The last stage of the chain let a palm pass.
    bool found() const { return last() != nullptr && last()->found; }
    /// The answer of the chain's last stage, null when the chain did not run.
    const Answer* last() const;
    /// The first stage that let nothing pass; CONFIRMATION when all let a palm pass.
    Stage lostAt() const;
};

/// Reads what the chain keeps of its stages. Nothing of this goes through the exported interface:
/// the probe needs the library's objects linked into the program. It changes no result.
class ChainProbe {
public:
    /// Before a frame.
    void arm();
    /// After it.
    ChainLook read();

private:
    Work follow(const ChainLook& look);

    /// Hits and misses that the confirmation remembers while it tracks.
    std::vector<bool> memory_;
};

}  // namespace evaluate
