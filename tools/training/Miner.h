#pragma once

#include <functional>
#include <vector>

#include "NegativeFrames.h"
#include "RingFile.h"
#include "Window.h"

namespace training {

struct MiningOrder {
    int sceneWindows = 0, handWindows = 0;  ///< wanted for each cascade
    int perFrame = 0;                       ///< at most so many of one frame for a cascade
    int maxFrames = 0;                      ///< give up after so many frames of either kind
    uint64_t seed = 0;
    int threads = 1;
};

/// What mining found for one cascade.
struct Mined {
    std::vector<Window> windows;  ///< scenes first
    int sceneWindows = 0;         ///< how many of them come from scenes
    int frames = 0;               ///< scene frames searched
    double searched = 0;          ///< windows in those frames
    double passed = 0;            ///< windows among them that the cascade takes for palms
};

/// Runs the library's scan with the cascades of `ring` over random frames without palms and
/// collects windows that pass, a random choice of each frame's. Cascades without stages pass every
/// window. `onFrames` hears of every batch of frames that is done. The outcome depends on the
/// order alone, not on the threads' timing.
std::vector<Mined> mine(const RingContent& ring, const NegativeFrames& frames,
                        const MiningOrder& order, const std::function<void(int frames)>& onFrames);

}  // namespace training
