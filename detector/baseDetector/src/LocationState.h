#pragma once

#include "KZ_InheritedState.h"
#include "KZ_ObjectLocation.h"
#include "KZ_StateTags.h"

/// Where an object is, as detectors publish it.
using LocationState = KZ::InheritedState<KZ::ObjectLocation, KZ::_LocationState>;
