#pragma once

#include <string>

#include "KZ_Limits.h"
#include "KZ_SharedPtr.h"
#include "LocationState.h"

/// What a detector says about a frame. One record passes down the tree and each stage overwrites
/// it; copies are independent but for the object behind `previous`.
struct DetectorResult {
    bool found = false;  ///< a detector has accepted an object
    std::string name;    ///< which pattern it is; empty: none
    LocationState location;
    int reserved = 0;
    float score = KZ::maxValue<float>();  ///< confidence of the last stage; the maximum: no score
    KZ::SharedPtr<DetectorResult> previous;  ///< an earlier result, or null

    DetectorResult() = default;
    explicit DetectorResult(bool found) : found(found) {}
    explicit DetectorResult(const std::string& name) : name(name) {}
    explicit DetectorResult(const char* name) : name(name) {}
    explicit DetectorResult(const LocationState& location) : location(location) {}
    DetectorResult(const std::string& name, const LocationState& location)
        : name(name), location(location) {}

    /// Back to "nothing found"; `previous` stays.
    void reset();
};
