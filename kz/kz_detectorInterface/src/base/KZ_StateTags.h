#pragma once

// Tags of the states that several parts share; see NumericState and InheritedState. A part may add
// its own beside its class.

namespace KZ {

struct _ScoreState {};
struct _ScoresState {};
struct _LocationState {};
struct _FrameNumState {};
struct _SkeletonState {};
struct _FrameParametersState {};
struct _GestureState {};

}  // namespace KZ
