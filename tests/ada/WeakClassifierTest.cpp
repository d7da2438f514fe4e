#include <gtest/gtest.h>

#include <sstream>

#include "AdaSupport.h"

using namespace ada_test;

namespace {

const KZ::Size SIZE(19, 14);

// The vote of a weak classifier on the patch that fills `mono`.
int voteOf(const WeakClassifierRmct& weak, const KZ::Image& mono) {
    StrongClassifier stage;
    stage.addRmctClassifier(weak);
    const Planes planes(mono);
    stage.activate(planes.rmct.stripLength(), planes.integral.stripLength(), 1);
    return stage.scoreRmct(planes.rmct.data());
}

int voteOf(const WeakClassifierHaar& weak, const KZ::Image& mono) {
    StrongClassifier stage;
    stage.addHaarClassifier(weak);
    const Planes planes(mono);
    stage.activate(planes.rmct.stripLength(), planes.integral.stripLength(), 1);
    return stage.scoreHaar(planes.integral.row<unsigned int>(0));
}

int voteOf(const WeakClassifierHog& weak, const KZ::Image& mono) {
    StrongClassifier stage;
    stage.addHogClassifier(weak);
    const KZ::Rect roi = stage.calculateHogRoi();
    stage.moveHogRoi(roi);
    KZ::Image hog;
    KZ::computeIntegralHog(mono, hog, roi, KZ::COLOR_MODE_INTEGRAL_HOG_UNSIGNED6);
    stage.activate(mono.stripLength(), 0, 1);
    return stage.scoreHog(hog);
}

// A wave of one direction whose gradients have no two parts of equal size, where a turned
// direction falls between two sectors.
KZ::Image wave(double degrees) {
    KZ::Image image(SIZE, KZ::COLOR_MODE_MONO);
    const double dx = std::cos(degrees * 3.14159265 / 180),
                 dy = std::sin(degrees * 3.14159265 / 180);
    for (int y = 0; y < SIZE.height; ++y)
        for (int x = 0; x < SIZE.width; ++x)
            *image.data(x, y) =
                static_cast<unsigned char>(127 + 120 * std::sin((x * dx + y * dy) / 4));
    for (int y = 1; y < SIZE.height - 1; ++y)
        for (int x = 1; x < SIZE.width - 1; ++x) {
            const KZ::Point g = gradient(image, x, y);
            EXPECT_TRUE(g == KZ::Point() || std::abs(g.x) != std::abs(g.y)) << degrees;
        }
    return image;
}

template <typename Weak, typename Make>
void expectFullTurns(Random& random, Make make) {
    for (int i = 0; i < 30; ++i) {
        const Weak original = make(random, SIZE);
        Weak weak = original;
        weak.flip(SIZE);
        EXPECT_FALSE(weak == original && i == 0);
        weak.flip(SIZE);
        EXPECT_TRUE(weak == original);
        for (int turn = 0; turn < 4; ++turn)
            weak.rotate(turn % 2 ? KZ::Size(SIZE.height, SIZE.width) : SIZE);
        EXPECT_TRUE(weak == original);
    }
}

}  // namespace

TEST(WeakClassifier, BitsOfCodesMove) {
    struct Row {
        size_t code;
        int rotated, flipped;
    };
    const Row rows[] = {{1, 32, 4}, {2, 8, 2}, {8, 64, 16}, {128, 4, 32}, {255, 255, 255}};
    for (const Row& row : rows) {
        EXPECT_EQ(row.rotated, WeakClassifierRmct::bitRotationMatrix[row.code]) << row.code;
        EXPECT_EQ(row.flipped, WeakClassifierRmct::bitFlipMatrix[row.code]) << row.code;
    }
}

// The transformed classifier sees on the transformed picture what the original sees on the
// original.
TEST(WeakClassifier, VotesMoveWithThePicture) {
    Random random(20260301);
    for (int i = 0; i < 60; ++i) {
        const KZ::Image image = randomImage(random, SIZE);
        const auto rmct = randomRmct(random, SIZE);
        auto rmctTurned = rmct, rmctMirrored = rmct;
        rmctTurned.rotate(SIZE);
        rmctMirrored.flip(SIZE);
        EXPECT_EQ(referenceVote(rmct, image, 0, 0), voteOf(rmct, image));
        EXPECT_EQ(voteOf(rmct, image), voteOf(rmctTurned, turned(image)));
        EXPECT_EQ(voteOf(rmct, image), voteOf(rmctMirrored, mirrored(image)));

        const auto haar = randomHaar(random, SIZE);
        auto haarTurned = haar, haarMirrored = haar;
        haarTurned.rotate(SIZE);
        haarMirrored.flip(SIZE);
        EXPECT_EQ(referenceVote(haar, Planes(image), 0, 0), voteOf(haar, image));
        EXPECT_EQ(voteOf(haar, image), voteOf(haarTurned, turned(image)));
        EXPECT_EQ(voteOf(haar, image), voteOf(haarMirrored, mirrored(image)));

        const auto hog = randomHog(random, SIZE);
        auto hogTurned = hog, hogMirrored = hog;
        hogTurned.rotate(SIZE);
        hogMirrored.flip(SIZE);
        EXPECT_EQ(referenceVote(hog, image, 0, 0), voteOf(hog, image));
        EXPECT_EQ(voteOf(hog, image), voteOf(hogMirrored, mirrored(image)));
        const KZ::Image steady = wave(i % 2 ? 17 : 68);
        EXPECT_EQ(voteOf(hog, steady), voteOf(hogTurned, turned(steady)));
    }
}

TEST(WeakClassifier, FullTurnsLeadBack) {
    Random random(20260302);
    expectFullTurns<WeakClassifierRmct>(random, randomRmct);
    expectFullTurns<WeakClassifierHaar>(random, randomHaar);
    expectFullTurns<WeakClassifierHog>(random, randomHog);
}

TEST(WeakClassifier, HaarIndexIsHalfTheContrast) {
    struct Row {
        const char* what;
        KZ::Rect inner;
        int innerGrey, grey, index;
    };
    const Row rows[] = {
        {"brightness", KZ::Rect(), 100, 100, 177},
        {"brighter inside", KZ::Rect(2, 2, 5, 5), 70, 50, 137},
        {"darker inside, towards zero", KZ::Rect(2, 2, 5, 5), 50, 71, 117},
        {"lowest", KZ::Rect(2, 2, 5, 5), 0, 255, 0},
        {"highest", KZ::Rect(2, 2, 5, 5), 255, 0, 254},
        {"nothing around", KZ::Rect(1, 1, 9, 9), 80, 10, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        KZ::Image image(SIZE, KZ::COLOR_MODE_MONO);
        for (int y = 0; y < SIZE.height; ++y)
            for (int x = 0; x < SIZE.width; ++x) {
                const bool inside = row.inner.contains(KZ::Rect(x, y, x + 1, y + 1));
                *image.data(x, y) = static_cast<unsigned char>(inside ? row.innerGrey : row.grey);
            }
        WeakClassifierHaar weak;
        weak.set(KZ::Rect(1, 1, 9, 9), row.inner, 0);
        const Planes planes(image);
        weak.setStrip(planes.integral.stripLength() / 4);
        EXPECT_EQ(row.index, weak.index(planes.integral.row<unsigned int>(0)));
    }
}

// A picture so bright and large that products leave 32 bits, as on the pyramid's upper layers.
TEST(WeakClassifier, HaarOfLargeRectangles) {
    Random random(20260303);
    const KZ::Image image = randomImage(random, KZ::Size(420, 300));
    const Planes planes(image, 10);
    for (int i = 0; i < 20; ++i) {
        const auto weak = randomHaar(random, planes.mono.size());
        StrongClassifier stage;
        stage.addHaarClassifier(weak);
        stage.activate(0, planes.integral.stripLength(), planes.zoom);
        EXPECT_EQ(referenceVote(weak, planes, 0, 0),
                  stage.scoreHaar(planes.integral.row<unsigned int>(0)));
    }
}

TEST(WeakClassifier, TextForms) {
    std::vector<signed char> votes(256);
    for (size_t i = 0; i < votes.size(); ++i) votes[i] = static_cast<signed char>(i - 128);
    std::string blanks, commas;
    for (const signed char vote : votes) {
        blanks += std::to_string(vote) + " ";
        commas += "," + std::to_string(vote);
    }
    WeakClassifierRmct rmct;
    rmct.set(3, 4);
    WeakClassifierHaar haar;
    haar.set(KZ::Rect(1, 2, 9, 8), KZ::Rect(3, 4, 5, 6), 0);
    WeakClassifierHog hog;
    hog.setBlock(KZ::Rect(1, 2, 9, 8));
    hog.setCell(KZ::Rect(3, 4, 5, 6));
    hog.setSector(5);

    const auto check = [&](auto weak, const std::string& line, const std::string& row) {
        weak.setData(votes.data());
        std::stringstream text, source;
        weak.basicSave(text);
        weak.writeWeakClassifier(source);
        EXPECT_EQ(line + blanks + "\n", text.str());
        EXPECT_EQ("\t{" + row + commas + "},\n", source.str());
        decltype(weak) read;
        EXPECT_FALSE(read == weak);
        read.basicLoad(text);
        EXPECT_TRUE(read == weak);
    };
    check(rmct, "3 4 ", "3, 4");
    check(haar, "2 1 9 8\t4 3 5 6\t", "1, 2, 9, 8, 3, 4, 5, 6");
    check(hog, "2 1 9 8\t4 3 5 6\t5 ", "1, 2, 9, 8, 3, 4, 5, 6, 5");
}
