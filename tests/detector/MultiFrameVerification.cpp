#include "MultiFrameVerification.h"

#include <gtest/gtest.h>

#include "FakeDetector.h"
#include "LogCapture.h"

using testing_support::assertionOf;
using testing_support::FakeDetector;
using testing_support::setHit;
using testing_support::square;

namespace {

MultiFrameVerification::Parameters pipelineParameters() {
    MultiFrameVerification::Parameters parameters(3);
    parameters.historySize = 3;
    parameters.minHits = 2;
    return parameters;
}

/// Runs a verification over a script with one letter a frame: what the wrapped detector would see
/// there, 'R' or 'L' for a hit of that side, anything else for a miss.
class Scripted {
public:
    explicit Scripted(const MultiFrameVerification::Parameters& parameters)
        : detector_(new FakeDetector),
          verification_(KZ::SharedPtr<BaseDetector>(detector_), parameters) {
        detector_->roi = KZ::Rect(0, 0, 320, 240);
        data_.mono.create(KZ::Size(320, 240), KZ::COLOR_MODE_MONO);
    }

    /// One letter a frame: the side reported, '.' for nothing, ' ' where the
    /// detector did not run.
    std::string run(const std::string& script) {
        std::string reported;
        for (const char letter : script) reported += frame(letter);
        return reported;
    }

    char frame(char letter, const KZ::DetectRegion& region = KZ::DetectRegion()) {
        detector_->act = [letter](DetectorData&, const KZ::DetectRegion&, DetectorResult& result) {
            result.reset();
            if (letter == 'R') setHit(result, square(150.5f, 100, 100), 0.75f);
            if (letter == 'L') setHit(result, square(150.5f, 100, 100, KZ::Side::LEFT), 0.25f);
        };
        const int before = detector_->detects;
        result_ = DetectorResult("stale");
        const KZ::Rect roi = verification_.getDataRoi(data_, region);
        verification_.detect(data_, region, result_);
        if (detector_->detects == before) {
            EXPECT_EQ(0, roi.area());
            EXPECT_EQ("", result_.name);
            return ' ';
        }
        EXPECT_EQ(detector_->roi, roi);
        EXPECT_EQ(result_.found, result_.location.isSet());
        return !result_.found ? '.' : result_.location.side == KZ::Side::LEFT ? 'L' : 'R';
    }

    const DetectorResult& result() const { return result_; }
    const KZ::DetectRegion& searched() const { return detector_->region; }
    int wrappedResets() const { return detector_->resets; }
    MultiFrameVerification& verification() { return verification_; }

private:
    DetectorData data_;
    DetectorResult result_;
    FakeDetector* detector_;
    MultiFrameVerification verification_;
};

}  // namespace

TEST(MultiFrameVerification, ReportsByScript) {
    struct Row {
        const char* what;
        const char* seen;
        const char* reported;
    };
    const Row rows[] = {
        {"every third frame until a first hit, then each", "-RR-RRRR", ".  .  .R"},
        {"two misses are too many, two hits bring it back", "RR--RR", ".RR..R"},
        {"three misses end the track", "R---RRRR", "....  .R"},
        {"undecided side", "RL", ".."},
        {"majority of sides", "RLL", "..L"},
        {"a new track forgets the old sides", "LLL---RR", ".LLL...R"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(row.reported, Scripted(pipelineParameters()).run(row.seen));
    }
}

TEST(MultiFrameVerification, RefusesWithoutMemoryOrPeriod) {
    MultiFrameVerification::Parameters parameters = pipelineParameters();
    parameters.historySize = 0;
    EXPECT_EQ(".  .  .", Scripted(parameters).run("RRRRRRR"));
    parameters.triggerPeriod = 0;
    EXPECT_EQ("0 <= 0\n", assertionOf([&] { Scripted scripted(parameters); }));
}

// (100.5, 50)-(200.5, 150) is searched 1.8 times as large, every side truncated, and 1.3 times
// wider or narrower.
TEST(MultiFrameVerification, TracksNearTheLastPlace) {
    Scripted scripted(pipelineParameters());
    scripted.frame('R');
    EXPECT_EQ(KZ::Rect(0, 0, 320, 240), scripted.searched().rect) << "trigger: the whole frame";
    KZ::DetectRegion region;
    region.angleRange = KZ::AngleRange(-30, 30);
    scripted.frame('R', region);
    EXPECT_EQ(KZ::Rect(60, 10, 240, 190), scripted.searched().rect);
    EXPECT_FLOAT_EQ(100 / 1.3f, scripted.searched().widthRange.min);
    EXPECT_FLOAT_EQ(130, scripted.searched().widthRange.max);
    EXPECT_EQ(region.angleRange, scripted.searched().angleRange);

    scripted.frame('L');
    scripted.frame('-');
    EXPECT_EQ(0.25f, scripted.result().score) << "of the last hit, also on a miss";
    EXPECT_EQ(150.5f, scripted.result().location.center.x);

    scripted.verification().reset();
    EXPECT_EQ(0, scripted.wrappedResets());
    EXPECT_EQ(".  .R", scripted.run("-RRRR")) << "in step with the reset";
}

TEST(MultiFrameVerification, SweepsAngleAndAreaInTriggerMode) {
    MultiFrameVerification::Parameters parameters(1);
    parameters.sweepAngle = true;
    parameters.triggerRoiScale = 1.25f;
    Scripted scripted(parameters);
    const int from[] = {-180, -120, -60, 0, 60, 120, -180};
    for (const int angle : from) {
        scripted.frame('-');
        EXPECT_EQ(KZ::AngleRange(angle, angle + 30), scripted.searched().angleRange) << angle;
        EXPECT_EQ(KZ::Rect(-40, -30, 360, 270), scripted.searched().rect);
    }
}
