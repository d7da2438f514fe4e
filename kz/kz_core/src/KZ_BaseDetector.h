#pragma once

#include "KZ_SharedPtr.h"

namespace KZ {

class StateAggregator;

/// The older form of a detector: it reads and writes the typed states of a frame. It stands beside
/// the detector tree, not in it.
class BaseDetector {
public:
    virtual ~BaseDetector() = default;
    virtual void detect(SharedPtr<StateAggregator>& states) = 0;
};

}  // namespace KZ
