#pragma once

#include <functional>
#include <string>
#include <utility>

#include "BaseDetector.h"
#include "DetectorData.h"
#include "DetectorResult.h"

namespace testing_support {

/// A detector that does what the test tells it, and counts its calls.
class FakeDetector : public BaseDetector {
public:
    using Act = std::function<void(DetectorData&, const KZ::DetectRegion&, DetectorResult&)>;

    FakeDetector() = default;
    explicit FakeDetector(Act action, const KZ::Rect& needed = KZ::Rect())
        : act(std::move(action)), roi(needed) {}
    ~FakeDetector() override {
        if (deleted) ++*deleted;
    }

    KZ::Rect getDataRoi(const DetectorData&, const KZ::DetectRegion& asked) override {
        region = asked;
        return roi;
    }
    void detect(DetectorData& data, const KZ::DetectRegion& asked,
                DetectorResult& result) override {
        ++detects;
        region = asked;
        if (act) act(data, asked, result);
    }
    void reset() override { ++resets; }
    std::string name() override { return "fake"; }

    Act act;
    KZ::Rect roi;             ///< what getDataRoi answers
    KZ::DetectRegion region;  ///< of the last call
    int detects = 0;
    int resets = 0;
    int* deleted = nullptr;
};

inline KZ::ObjectLocation square(float x, float y, float width,
                                 KZ::Side::Value side = KZ::Side::RIGHT) {
    return KZ::ObjectLocation(KZ::PointF(x, y), KZ::SizeF(width, width), 0, side);
}

/// Makes `result` a hit at `location`.
inline void setHit(DetectorResult& result, const KZ::ObjectLocation& location, float score = 0.5f) {
    result.found = true;
    result.name = "hand";
    static_cast<KZ::ObjectLocation&>(result.location) = location;
    result.score = score;
}

}  // namespace testing_support
