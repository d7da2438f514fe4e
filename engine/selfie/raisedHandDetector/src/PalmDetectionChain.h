#pragma once

#include "BaseDetector.h"
#include "KZ_SharedPtr.h"

/// A new chain of the palm detector's stages: cascade scan, verification and score. It judges each
/// frame on its own.
KZ::SharedPtr<BaseDetector> palmTrackingDetector();

/// The same, wrapped in the confirmation over frames.
KZ::SharedPtr<BaseDetector> confirmedPalmDetector();
