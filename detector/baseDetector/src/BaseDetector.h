#pragma once

#include <string>

#include "KZ_BaseRect.h"
#include "KZ_DetectRegion.h"

struct DetectorData;
struct DetectorResult;

/// A stage of recognition. Pipelines are trees of them; per frame their owner calls `getDataRoi`,
/// computes the frame's data on the answered rectangle, and calls `detect`.
class BaseDetector {
public:
    virtual ~BaseDetector() = default;

    /// The rectangle of the frame, in its pixels, whose data `detect` will read. It may reach
    /// beyond the frame. Empty: nothing is needed, and the frame costs nothing.
    virtual KZ::Rect getDataRoi(const DetectorData& data, const KZ::DetectRegion& region);
    /// Reads `result` as the stage before left it and overwrites it. Assertions of a stage pass
    /// through, with the result as that stage left it.
    virtual void detect(DetectorData& data, const KZ::DetectRegion& region,
                        DetectorResult& result) = 0;
    /// Forgets what was carried over from earlier frames. Called between runs, not per frame.
    virtual void reset() {}
    /// For displays; by default the object's address.
    virtual std::string name();
};
