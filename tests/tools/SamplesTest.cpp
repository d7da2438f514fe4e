#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "Composer.h"
#include "DataFolder.h"
#include "Failure.h"
#include "PatchLight.h"
#include "SampleMiner.h"
#include "Window.h"

namespace {

using namespace training;

/// Drawn palms and fists as whole photographs and as crops, and scenes; on demand some of each that
/// are held out.
void writePhotographs(const std::string& folder, bool withHeldOut) {
    std::ofstream manifest(folder + "/manifest.csv");
    manifest << "image,source,split,kind,cx,cy,palm_width,angle,side\n";
    const auto add = [&](const std::string& name, const cv::Mat& picture, const char* row) {
        cv::imwrite(folder + "/" + name, picture);
        manifest << name << "," << row << "\n";
    };
    const cv::Mat hand = drawnHand(), fist = drawnFist();
    const cv::Mat scene(240, 320, CV_8U, cv::Scalar(70));
    add("right.png", hand, "person,train,palm,59.5,59.5,36,0,RIGHT");
    add("left.png", flipped(hand), "other,train,palm,59.5,59.5,36,0,LEFT");
    add("fist.png", fist, "person,train,hand,60,78,36,0,");
    add("cropped.png", fist(cv::Rect(36, 50, 48, 56)), "hagrid_capstone,train,hand,,,,,");
    add("palm.png", hand(cv::Rect(20, 10, 84, 96)),
        "hagrid_capstone,train,palm,39.5,49.5,36,0,RIGHT");
    add("scene.png", scene, "room,train,scene,,,,,");
    if (!withHeldOut) return;
    add("held.png", hand, "sl18401,train,palm,59.5,59.5,36,0,RIGHT");
    add("heldfist.png", fist, "sl18401,train,hand,60,78,36,0,");
    add("heldscene.png", scene, "sl18401,train,scene,,,,,");
    for (const std::string kind : {"palm", "hand"}) {
        Photo crop{"", "hagrid_capstone", "train", {}};
        for (int i = 0; crop.image.empty() || !isHeldOut(crop); ++i)
            crop.image = kind + std::to_string(i) + ".png";
        add(crop.image, hand, ("hagrid_capstone,train," + kind + ",59.5,59.5,36,0,RIGHT").c_str());
    }
}

// The labels that frames carry are where the hands are: the patch at each palm's label is an
// upright right hand, whatever was mirrored, turned and scaled on the way, in both sizes.
TEST(SampleFrames, PatchesAtTheLabelsAreUprightRightHands) {
    TemporaryFolder folder;
    writePhotographs(folder.path(), false);
    const PhotoStore store(folder.path());
    const SampleFrames frames(store, false);
    cv::Mat sums[2] = {cv::Mat(33, 35, CV_32F, cv::Scalar(0)),
                       cv::Mat(60, 50, CV_32F, cv::Scalar(0))};
    int palms = 0, mirrored = 0, others = 0;
    for (uint64_t i = 0; i < 60; ++i) {
        Random random(i);
        ShownFrame frame;
        if (i % 2 == 0) frames.drawPhoto(random, 0.7, frame);
        if (i % 2 != 0) frames.drawCrops(random, 0.7, frame);
        DetectorView view;
        view.make(frame.pixels, true);
        for (const ShownHand& hand : frame.hands) {
            others += hand.kind == Kind::HAND ? 1 : 0;
            if (hand.kind != Kind::PALM) continue;
            ++palms;
            mirrored += hand.mirrored ? 1 : 0;
            EXPECT_LE(std::fabs(hand.angle), 36);
            PatchPair patches = cutPatches(view.image(), placed(hand, view, Deviation()));
            for (int k = 0; k < VERIFIERS; ++k) {
                cv::accumulate(cv::Mat(sums[k].size(), CV_8U, patches.pixels[k].data()), sums[k]);
            }
        }
    }
    EXPECT_GT(palms, 40);
    EXPECT_GT(others, 15);
    EXPECT_NEAR(0.5, static_cast<double>(mirrored) / palms, 0.2);
    for (cv::Mat& sum : sums) {
        sum.convertTo(sum, CV_8U, 1.0 / palms);
        const cv::Mat expected =
            placedHand(sum.size(), sum.cols / WindowShape::PER_PALM, 0, sum.cols / 25.0);
        EXPECT_GT(correlation(sum, expected), 0.93);
        EXPECT_LT(correlation(sum, flipped(expected)), correlation(sum, expected) - 0.03);
    }
}

TEST(SampleFrames, HoldsOutWholeSourcesAndShareOfTheCrowds) {
    EXPECT_TRUE(isHeldOut({"a.jpg", "sl18401", "train", {}}));
    EXPECT_FALSE(isHeldOut({"a.jpg", "subhih_hands", "train", {}}));
    int held = 0;
    for (int i = 0; i < 2000; ++i)
        held += isHeldOut({std::to_string(i) + ".jpg", "hagrid_capstone", "train", {}});
    EXPECT_NEAR(160, held, 40);
    TemporaryFolder folder;
    writePhotographs(folder.path(), false);
    EXPECT_THROW(SampleFrames(PhotoStore(folder.path()), true), Failure);
}

class Judging : public testing::Test {
protected:
    Judging() {
        frame.pixels = cv::Mat(240, 320, CV_8U, cv::Scalar(70));
        view.make(frame.pixels, true);
        frame.hands.push_back(hand(Kind::PALM, 100, 30));
        frame.hands.push_back(hand(Kind::HAND, 220, 30));
    }
    static ShownHand hand(Kind kind, double x, double palm) {
        ShownHand hand;
        hand.kind = kind;
        hand.centre = {x, 120};
        hand.palmWidth = palm;
        hand.zone = {hand.centre, palm * 2};
        return hand;
    }
    /// The label of a location `right` palm widths beside the hand number `i`.
    Finding::What at(int i, float right, float logScale, float angle) const {
        return judge(frame, view, placed(frame.hands[i], view, {right, 0, logScale, angle, 1}))
            .what;
    }

    ShownFrame frame;
    DetectorView view;
};

TEST_F(Judging, TakesOnlyWhatIsSure) {
    EXPECT_EQ(Finding::PALM, at(0, 0.2f, 0.2f, -40)) << "turned as far as a scan is";
    EXPECT_EQ(Finding::UNKNOWN, at(0, 0, 0, 60)) << "turned too far";
    EXPECT_EQ(Finding::UNKNOWN, at(0, 0.6f, 0, 0)) << "beside the palm";
    EXPECT_EQ(Finding::UNKNOWN, at(0, 0, -0.6f, 0)) << "a part of the palm";
    EXPECT_EQ(Finding::HAND, at(1, 0.1f, 0, 0));
    EXPECT_EQ(Finding::UNKNOWN, at(1, 1.6f, 0, 0)) << "beside it";
    frame.hands.push_back(hand(Kind::IGNORE, 225, 30));
    EXPECT_EQ(Finding::UNKNOWN, at(1, 0, 0, 0)) << "an unclear hand is there too";
    frame.hands.push_back(hand(Kind::HAND, 100, 30));
    EXPECT_EQ(Finding::UNKNOWN, at(0, 0, 0, 0)) << "a palm and another hand in one place";
    frame = ShownFrame();
    frame.isScene = true;
    const KZ::ObjectLocation anywhere(KZ::PointF(50, 60), KZ::SizeF(40, 40), 0, KZ::Side::LEFT);
    EXPECT_EQ(Finding::SCENE, judge(frame, view, anywhere).what);
}

TEST_F(Judging, TellsTheDeviationThatWasPlaced) {
    for (const bool mirrored : {false, true}) {
        for (const int sameSide : {0, 1}) {
            ShownHand& palm = frame.hands[0];
            palm.mirrored = mirrored;
            palm.angle = 25;
            const Deviation deviation{0.1f, -0.2f, 0.15f, -20, sameSide};
            const KZ::ObjectLocation location = placed(palm, view, deviation);
            EXPECT_EQ(mirrored == (sameSide == 1), location.side == KZ::Side::LEFT);
            const Finding finding = judge(frame, view, location);
            ASSERT_EQ(Finding::PALM, finding.what);
            const Deviation& found = finding.deviation;
            EXPECT_LT(
                cv::norm(cv::Vec4f(deviation.x, deviation.y, deviation.logScale, deviation.angle) -
                         cv::Vec4f(found.x, found.y, found.logScale, found.angle)),
                2e-4);
            EXPECT_EQ(deviation.sameSide, found.sameSide);
        }
    }
}

// What mining gives depends on the order alone, and survives a file.
TEST(SampleMiner, EqualWithOtherThreadsAndFromTheFile) {
    TemporaryFolder folder;
    writePhotographs(folder.path(), true);
    const PhotoStore store(folder.path());
    const RingContent ring = readRing(std::string(RHD_SOURCE_DIR) + "/data/trained/palm.ring");
    SampleOrder order;
    order.seed = 9;
    order.frames = 8;
    order.photoShare = 0.5;
    order.palmShare = 0.6;
    SampleSet sets[2];
    for (int i = 0; i < 2; ++i) {
        SampleMiner miner(store, ring, 40, 1 + 2 * i);
        miner.setDeviations({{0.02f, 0, 0, 5, 1}});
        sets[i] = miner.mine(order);
    }
    ASSERT_GT(sets[0].size(), 8);
    const std::string path = folder.path("x.samples");
    sets[1].write(path, "key");
    SampleSet read;
    EXPECT_FALSE(read.read(path, "other key"));
    ASSERT_TRUE(read.read(path, "key"));
    ASSERT_EQ(sets[0].size(), read.size());
    for (int i = 0; i < read.size(); ++i) {
        EXPECT_EQ(sets[0][i].origin, read[i].origin);
        for (int k = 0; k < VERIFIERS; ++k) {
            const size_t area = static_cast<size_t>(verifierDesign(k).input.area());
            EXPECT_EQ(0, std::memcmp(sets[0].patch(i, k), read.patch(i, k), area));
        }
    }
    std::filesystem::resize_file(path, std::filesystem::file_size(path) - 1);
    EXPECT_FALSE(read.read(path, "key")) << "a file that ends early";
}

// The held-out pictures measure first and are learnt in the end.
TEST(SampleMiner, MarksWhatIsNotLearnt) {
    TemporaryFolder folder;
    writePhotographs(folder.path(), true);
    const PhotoStore store(folder.path());
    const RingContent ring = readRing(std::string(RHD_SOURCE_DIR) + "/data/trained/palm.ring");
    SampleMiner miner(store, ring, 40, 2);
    miner.setDeviations({{0.02f, 0, 0, 5, 1}});
    SampleOrder order;
    order.frames = 8;
    order.photoShare = 1;
    order.heldOut = true;
    int samples[2] = {};
    for (const bool toLearn : {false, true}) {
        order.toLearn = toLearn;
        const SampleSet found = miner.mine(order);
        samples[toLearn] = found.size();
        for (int i = 0; i < found.size(); ++i) EXPECT_EQ(!toLearn, found[i].heldOut);
    }
    EXPECT_GT(samples[0], 8);
    EXPECT_GT(samples[1], samples[0]) << "jittered ones too";
}

TEST(PatchLight, VariesWithinTheInputsRange) {
    const KZ::Size size(50, 60);
    cv::Mat hand;
    cv::resize(drawnHand(), hand, {50, 60});
    cv::Mat plain(60, 50, CV_32F), varied(60, 50, CV_32F);
    plainPatch(hand.data, size, plain.ptr<float>());
    const float least = INPUT_SCALE * -INPUT_CENTRE, most = least + INPUT_SCALE * 255 / 256;
    EXPECT_FLOAT_EQ(least + INPUT_SCALE * hand.data[0] / 256, plain.at<float>(0));
    double likeness = 0;
    for (uint64_t seed = 0; seed < 40; ++seed) {
        Random random(seed);
        varyPatch(hand.data, size, random, varied.ptr<float>());
        EXPECT_TRUE(cv::checkRange(varied, true, nullptr, least, std::nextafter(most, 9.0f)));
        likeness += correlation(plain, varied) / 40;
    }
    EXPECT_GT(likeness, 0.9) << "still the same hand";
    EXPECT_LT(likeness, 1);
}

}  // namespace
