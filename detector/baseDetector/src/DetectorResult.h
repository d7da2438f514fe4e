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
    explicit DetectorResult(bool isFound) : found(isFound) {}
    explicit DetectorResult(const std::string& patternName) : name(patternName) {}
    explicit DetectorResult(const char* patternName) : name(patternName) {}
    explicit DetectorResult(const LocationState& place) : location(place) {}
    DetectorResult(const std::string& patternName, const LocationState& place)
        : name(patternName), location(place) {}

    /// Back to "nothing found"; `previous` stays.
    void reset();
};
