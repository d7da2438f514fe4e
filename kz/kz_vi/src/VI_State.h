#pragma once

#include <mutex>

#include "KZ_ViFrameParameters.h"
#include "KZ_ViResult.h"

// What the VI_* functions share. The two mutexes are never held together.

extern std::mutex engineMutex;                   ///< guards the engine and `viFrameParameters`
extern KZ::ViFrameParameters viFrameParameters;  ///< for the next VI_ProcessFrame

extern std::mutex viResultMutex;  ///< guards `viResult`
extern KZ::ViResult viResult;     ///< copy of the last frame's result

/// Frames are halved on intake. Written in VI_Init only, which does not run beside VI_SetFrame.
extern bool zoomTwice;
