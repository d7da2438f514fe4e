#pragma once

#include <string>
#include <vector>

/// What the stages of the detection chain said of a frame, for those who want to know which of them
/// lost a palm. It reads the results that the chain keeps for its own scoring.
namespace stages {

/// One stage. Place and size are in pixels of the half-size frame that the engine sees, mapped
/// there as the engine maps its report; the angle in degrees, counter-clockwise.
struct StageResult {
    std::string name;   ///< "scan", "first verifier" or "second verifier"
    float score = 0;    ///< 0 to 1, also of what the stage dropped; 0 without a location before it
    bool kept = false;  ///< the stage let a location pass; else all that follows is 0
    float x = 0, y = 0, width = 0, height = 0;  ///< centre and sides of the window
    float angle = 0;
};

/// Forgets the results of the frame before. To be called before each frame: the engine does not
/// search every frame, and old results would be taken for this frame's.
void forget();

/// The stages in the chain's order, after the frame. Empty: the chain did not run (the phone moves,
/// or the engine rests after a hit).
std::vector<StageResult> ofLastFrame();

}  // namespace stages
