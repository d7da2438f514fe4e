// In place of LimitsCommand.cpp where the renderer of hands is not built.

#include "Failure.h"
#include "LimitsCommand.h"

namespace evaluate {

void drawLimits(const LimitsOptions&) {
    throw training::Failure(
        "this build reads no hand mesh: install libassimp-dev, configure and build again");
}

}  // namespace evaluate
