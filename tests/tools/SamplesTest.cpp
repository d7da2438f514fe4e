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
    cv::Mat left, fist(120, 120, CV_8U, cv::Scalar(70));
    cv::flip(drawnHand(), left, 1);
    cv::ellipse(fist, {60, 78}, {18, 20}, 0, 0, 360, cv::Scalar(190), cv::FILLED);
    cv::imwrite(folder + "/right.png", drawnHand());
    cv::imwrite(folder + "/left.png", left);
    cv::imwrite(folder + "/fist.png", fist);
    cv::imwrite(folder + "/cropped.png", fist(cv::Rect(36, 50, 48, 56)));
    cv::imwrite(folder + "/scene.png", cv::Mat(240, 320, CV_8U, cv::Scalar(70)));
    const cv::Mat hand = drawnHand();
    cv::imwrite(folder + "/palm.png", hand(cv::Rect(20, 10, 84, 96)));
    manifest << "right.png,person,train,palm,59.5,59.5,36,0,RIGHT\n"
             << "left.png,other,train,palm,59.5,59.5,36,0,LEFT\n"
             << "fist.png,person,train,hand,60,78,36,0,\n"
             << "cropped.png,hagrid_capstone,train,hand,,,,,\n"
             << "palm.png,hagrid_capstone,train,palm,39.5,49.5,36,0,RIGHT\n"
             << "scene.png,room,train,scene,,,,,\n";
    if (!withHeldOut) return;
    cv::imwrite(folder + "/held.png", drawnHand());
    cv::imwrite(folder + "/heldfist.png", fist);
    cv::imwrite(folder + "/heldscene.png", cv::Mat(240, 320, CV_8U, cv::Scalar(90)));
    manifest
        << "held.png,sl18401,train,palm,59.5,59.5,36,0,RIGHT\n"
        << "heldfist.png,sl18401,train,hand,60,78,36,0,\nheldscene.png,sl18401,train,scene,,,,,\n";
    for (const char* kind : {"palm", "hand"}) {
        Photo crop{"", "hagrid_capstone", "train", {}};
        for (int i = 0; crop.image.empty() || !isHeldOut(crop); ++i) {
            crop.image = kind + std::to_string(i) + ".png";
        }
        cv::imwrite(folder + "/" + crop.image, drawnHand());
        manifest << crop.image << ",hagrid_capstone,train," << kind << ",59.5,59.5,36,0,RIGHT\n";
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
        if (i % 2 == 0) {
            frames.drawPhoto(random, 0.7, frame);
        } else {
            frames.drawCrops(random, 0.7, frame);
        }
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
        cv::Mat expected(sum.size(), CV_8U, cv::Scalar(70)), thumbLeft;
        Placement placement;
        placement.anchor = {59.5, 59.5};
        placement.position = {(sum.cols - 1) * 0.5, (sum.rows - 1) * 0.5};
        placement.scale = sum.cols / WindowShape::PER_PALM / DRAWN_PALM;
        paste(drawnHand(), placement, 1, 1, expected);
        cv::GaussianBlur(expected, expected, {0, 0}, sum.cols / 25.0);
        cv::flip(expected, thumbLeft, 1);
        EXPECT_GT(correlation(sum, expected), 0.93);
        EXPECT_LT(correlation(sum, thumbLeft), correlation(sum, expected) - 0.03);
    }
}

TEST(SampleFrames, HoldsOutWholeSourcesAndShareOfTheCrowds) {
    EXPECT_TRUE(isHeldOut({"a.jpg", "sl18401", "train", {}}));
    EXPECT_FALSE(isHeldOut({"a.jpg", "subhih_hands", "train", {}}));
    int held = 0;
    for (int i = 0; i < 2000; ++i) {
        const Photo photo{std::to_string(i) + ".jpg", "hagrid_capstone", "train", {}};
        held += isHeldOut(photo) ? 1 : 0;
        EXPECT_EQ(isHeldOut(photo), isHeldOut(photo));
    }
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
    struct Row {
        const char* what;
        int hand;
        float right, logScale, angle;
        Finding::What expected;
    };
    const Row rows[] = {
        {"on the palm", 0, 0, 0, 0, Finding::PALM},
        {"turned as far as a scan is", 0, 0.2f, 0.2f, -40, Finding::PALM},
        {"turned too far", 0, 0, 0, 60, Finding::UNKNOWN},
        {"beside the palm", 0, 0.6f, 0, 0, Finding::UNKNOWN},
        {"a part of the palm", 0, 0, -0.6f, 0, Finding::UNKNOWN},
        {"on the other hand", 1, 0.1f, 0, 0, Finding::HAND},
        {"beside it", 1, 1.6f, 0, 0, Finding::UNKNOWN},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.expected, at(row.hand, row.right, row.logScale, row.angle)) << row.what;
    }
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
            EXPECT_NEAR(deviation.x, finding.deviation.x, 1e-4);
            EXPECT_NEAR(deviation.y, finding.deviation.y, 1e-4);
            EXPECT_NEAR(deviation.logScale, finding.deviation.logScale, 1e-4);
            EXPECT_NEAR(deviation.angle, finding.deviation.angle, 1e-4);
            EXPECT_EQ(deviation.sameSide, finding.deviation.sameSide);
        }
    }
}

// What mining gives depends on the order alone, and survives a file.
TEST(SampleMiner, EqualWithOtherThreadsAndFromTheFile) {
    TemporaryFolder folder;
    writePhotographs(folder.path(), true);
    const PhotoStore store(folder.path());
    const RingContent ring = readRing(std::string(RHD_SOURCE_DIR) + "/data/trained/palm.ring");
    MiningOrder order;
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

TEST(PatchLight, VariesWithinTheInputsRange) {
    const KZ::Size size(50, 60);
    cv::Mat hand;
    cv::resize(drawnHand(), hand, {50, 60});
    std::vector<float> plain(3000), varied(3000), again(3000);
    plainPatch(hand.data, size, plain.data());
    EXPECT_FLOAT_EQ(INPUT_SCALE * (hand.data[0] / 256.0f - INPUT_CENTRE), plain[0]);
    const float least = INPUT_SCALE * -INPUT_CENTRE, most = least + INPUT_SCALE * 255 / 256;
    double likeness = 0;
    for (uint64_t seed = 0; seed < 40; ++seed) {
        Random first(seed), second(seed);
        varyPatch(hand.data, size, first, varied.data());
        varyPatch(hand.data, size, second, again.data());
        EXPECT_EQ(varied, again);
        EXPECT_NE(plain, varied);
        EXPECT_GE(*std::min_element(varied.begin(), varied.end()), least);
        EXPECT_LE(*std::max_element(varied.begin(), varied.end()), most);
        likeness += correlation(cv::Mat(60, 50, CV_32F, plain.data()),
                                cv::Mat(60, 50, CV_32F, varied.data()));
    }
    EXPECT_GT(likeness / 40, 0.95) << "still the same hand";
}

}  // namespace
