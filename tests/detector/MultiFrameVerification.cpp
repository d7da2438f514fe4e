#include "MultiFrameVerification.h"

#include <gtest/gtest.h>

#include "FakeDetector.h"
#include "LogCapture.h"

using testing_support::assertionOf;
using testing_support::FakeDetector;
using testing_support::setHit;
using testing_support::square;

namespace {

MultiFrameVerification::Parameters pipelineParameters(int historySize = 3) {
    MultiFrameVerification::Parameters parameters(3);
    parameters.historySize = historySize;
    parameters.minHits = 2;
    return parameters;
}

/// Runs a verification over a script with one letter a frame: what the wrapped detector would see
/// there, 'R' or 'L' for a hit of that side, anything else for a miss.
struct Scripted {
    explicit Scripted(const MultiFrameVerification::Parameters& parameters)
        : detector(new FakeDetector),
          verification(KZ::SharedPtr<BaseDetector>(detector), parameters) {
        detector->roi = KZ::Rect(0, 0, 320, 240);
        data.mono.create(KZ::Size(320, 240), KZ::COLOR_MODE_MONO);
    }

    /// One letter a frame: the side reported, '.' for nothing, ' ' where the
    /// detector did not run.
    std::string run(const std::string& script) {
        std::string reported;
        for (const char letter : script) reported += frame(letter);
        return reported;
    }

    char frame(char letter, const KZ::DetectRegion& region = KZ::DetectRegion()) {
        detector->act = [letter](DetectorData&, const KZ::DetectRegion&, DetectorResult& hit) {
            hit.reset();
            if (letter == 'R') setHit(hit, square(150.5f, 100, 100), 0.75f);
            if (letter == 'L') setHit(hit, square(150.5f, 100, 100, KZ::Side::LEFT), 0.25f);
        };
        const int before = detector->detects;
        result = DetectorResult("stale");
        const KZ::Rect roi = verification.getDataRoi(data, region);
        verification.detect(data, region, result);
        EXPECT_EQ(result.found, result.location.isSet());
        EXPECT_EQ(result.found, !result.name.empty());
        const bool ran = detector->detects != before;
        EXPECT_EQ(ran ? detector->roi : KZ::Rect(), roi);
        if (!ran) return ' ';
        return !result.found ? '.' : result.location.side == KZ::Side::LEFT ? 'L' : 'R';
    }

    DetectorData data;
    DetectorResult result;
    FakeDetector* detector;
    MultiFrameVerification verification;
};

}  // namespace

TEST(MultiFrameVerification, ReportsByScript) {
    struct Row {
        const char *what, *seen, *reported;
    };
    const Row rows[] = {
        {"every third frame until a first hit, then each", "-RR-RRRR", ".  .  .R"},
        {"two misses are too many, two hits bring it back", "RR--RR", ".RR..R"},
        {"three misses end the track", "R---RRRR", "....  .R"},
        {"undecided side", "RL", ".."},
        {"majority of sides", "RLL", "..L"},
        {"a new track forgets the old sides", "LLL---RR", ".LLL...R"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.reported, Scripted(pipelineParameters()).run(row.seen)) << row.what;
    EXPECT_EQ(".  .  .", Scripted(pipelineParameters(0)).run("RRRRRRR")) << "no memory";
    const MultiFrameVerification::Parameters never(0);
    EXPECT_EQ("0 <= 0\n", assertionOf([&] { Scripted scripted(never); }));
}

// (100.5, 50)-(200.5, 150) is searched 1.8 times as large, every side truncated, and 1.3 times
// wider or narrower.
TEST(MultiFrameVerification, TracksNearTheLastPlace) {
    Scripted scripted(pipelineParameters());
    const KZ::DetectRegion& searched = scripted.detector->region;
    scripted.frame('R');
    EXPECT_EQ(KZ::Rect(0, 0, 320, 240), searched.rect) << "trigger: the whole frame";
    KZ::DetectRegion region;
    region.angleRange = KZ::AngleRange(-30, 30);
    scripted.frame('R', region);
    EXPECT_EQ(KZ::Rect(60, 10, 240, 190), searched.rect);
    EXPECT_FLOAT_EQ(100 / 1.3f, searched.widthRange.min);
    EXPECT_FLOAT_EQ(130, searched.widthRange.max);
    EXPECT_EQ(region.angleRange, searched.angleRange);

    scripted.run("L-");
    EXPECT_EQ(0.25f, scripted.result.score) << "of the last hit, also on a miss";
    EXPECT_EQ(150.5f, scripted.result.location.center.x);
    scripted.verification.reset();
    EXPECT_EQ(0, scripted.detector->resets);
    EXPECT_EQ(".  .R", scripted.run("-RRRR")) << "in step with the reset";
}

TEST(MultiFrameVerification, SweepsAngleAndAreaInTriggerMode) {
    MultiFrameVerification::Parameters parameters(1);
    parameters.sweepAngle = true;
    parameters.triggerRoiScale = 1.25f;
    Scripted scripted(parameters);
    for (const int angle : {-180, -120, -60, 0, 60, 120, -180}) {
        scripted.frame('-');
        EXPECT_EQ(KZ::AngleRange(angle, angle + 30), scripted.detector->region.angleRange) << angle;
        EXPECT_EQ(KZ::Rect(-40, -30, 360, 270), scripted.detector->region.rect);
    }
}
