#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>

#include "AdaSupport.h"
#include "ClassifierRing.h"
#include "LogCapture.h"
#include "PatchTransform.h"
#include "PatternDetector.h"

using namespace ada_test;
using testing_support::assertionOf;

namespace {

const KZ::Size SIZE(12, 10);

// A file that goes away, of this run of the program alone: several may run at once.
struct OwnFile {
    const std::string path;

    explicit OwnFile(const std::string& name)
        : path(testing::TempDir() + "ada_" + std::to_string(getpid()) + name) {}
    ~OwnFile() { std::remove(path.c_str()); }
    std::string text() const {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
};

// Up to three cascades as the palm's, with their ring.
struct Palm {
    explicit Palm(int count, int numHog = 3, bool symmetric = false) : cascades(size_t(count)) {
        Random random(20260321);
        std::vector<CascadedClassifier*> pointers;
        for (CascadedClassifier& cascade : cascades) {
            cascade = randomCascade(random, pointers.size() == 1 ? KZ::Size(11, 9) : SIZE, numHog);
            cascade.setAngle(30 * (static_cast<int>(pointers.size()) - 1));
            cascade.setSymmetry(symmetric);
            pointers.push_back(&cascade);
        }
        ring = std::make_unique<ClassifierRing>(pointers);
        ring->setName("palm");
        ring->generatePossibilities();
    }
    std::string saved() const {
        const OwnFile file("saved.ring");
        ring->save(file.path);
        return file.text();
    }

    std::vector<CascadedClassifier> cascades;
    std::unique_ptr<ClassifierRing> ring;
};

KZ::Image transformed(const KZ::Image& image, const ClassifierProperties::Transformation& way) {
    KZ::Image result = way.flip ? mirrored(image) : image;
    for (int i = 0; i < way.rotations; ++i) result = turned(result);
    return result;
}

// Centre and score of each object that one cascade finds in a picture, sorted, and moved as the
// picture is when it is transformed.
std::vector<std::vector<int>> hits(CascadedClassifier& cascade, const KZ::Image& image,
                                   const ClassifierProperties::Transformation& way = {}) {
    const Planes planes(image);
    std::vector<AdaObject> out;
    cascade.addMatches(planes.rmct, planes.mono, planes.integral, out, 1, 1);
    std::vector<std::vector<int>> places;
    for (const AdaObject& object : out) {
        KZ::Size size = image.size();
        KZ::Point p = way.flip ? flipPointOnSize(object.center, size) : object.center;
        for (int i = 0; i < way.rotations; ++i) {
            p = rotatePointOnSize(p, size);
            std::swap(size.width, size.height);
        }
        places.push_back({p.x, p.y, object.score});
    }
    std::sort(places.begin(), places.end());
    return places;
}

}  // namespace

TEST(ClassifierRing, PosesThatFollow) {
    const int rows[][4] = {{0, true, 4, 1}, {30, true, 8, 2}, {0, false, 8, 2}, {30, false, 8, 2}};
    for (const auto& row : rows) {
        Palm palm(1, 0, row[1] != 0);
        palm.cascades[0].setAngle(row[0]);
        for (const int count : {row[2], row[3]}) {
            palm.ring->generatePossibilities();
            EXPECT_EQ(static_cast<size_t>(count), palm.ring->possibilities.size()) << row[0];
            palm.ring->angleRange = KZ::AngleRange(-30, 30);
        }
    }
}

// The heart of the ring: a derived cascade finds on the transformed picture exactly what the
// trained one finds on the picture itself.
TEST(ClassifierRing, DerivedCascadesSeeTransformedPictures) {
    Random random(20260320);
    const KZ::Image image = randomImage(random, KZ::Size(70, 50));
    for (size_t pose = 0; pose < 16; ++pose) {
        Palm palm(1, 0, pose >= 8);
        const ClassifierProperties wanted = palm.ring->possibilities[pose % 8];
        CascadedClassifier& base = palm.ring->baseClassifier(0);
        const auto way = base.transformCost(wanted);
        const auto expected = hits(base, image, way);
        EXPECT_GT(expected.size(), 50u);
        const auto derived = palm.ring->getClassifiers(KZ::AngleRange(wanted.angle), wanted.side);
        ASSERT_EQ(1u, derived.size());
        EXPECT_EQ(expected, hits(*derived[0], transformed(image, way))) << wanted.angle;
        EXPECT_EQ(way.rotations % 2 ? KZ::Size(10, 12) : SIZE, derived[0]->monoSize);
        EXPECT_EQ(SIZE, derived[0]->baseSize_);
        EXPECT_EQ(wanted.angle, derived[0]->angle);
        EXPECT_EQ(wanted.side, derived[0]->side);
    }
    // Gradients fall into the same sectors when mirrored; turned, into neighbouring ones at times.
    ClassifierProperties::Transformation flip;
    flip.flip = true;
    CascadedClassifier cascade = randomCascade(random, SIZE, 6), mirror = cascade;
    mirror.flipVertically();
    EXPECT_EQ(hits(cascade, image, flip), hits(mirror, mirrored(image)));
}

TEST(ClassifierRing, CascadesAreMadeOnceAndTakeThresholds) {
    Palm palm(3);
    const auto first = palm.ring->getClassifiers(KZ::AngleRange(-30, 30), KZ::Side::BOTH);
    const auto again = palm.ring->getClassifiers(KZ::AngleRange(-30, 30), KZ::Side::BOTH);
    EXPECT_EQ(6u, first.size());
    EXPECT_TRUE(std::is_permutation(first.begin(), first.end(), again.begin(), again.end()));
    EXPECT_EQ(3, palm.ring->getNumClassifiers());

    palm.ring->setLastCascadeThreshold(-40);
    const auto detector = palm.ring->getDetector(KZ::AngleRange(-30, 30), KZ::Side::RIGHT, 4);
    EXPECT_EQ(-40, detector->getClassifierThreshold());
    detector->setClassifierThreshold(12);
    detector->setClassifierThreshold(0x7fffffff);
    EXPECT_EQ(12, palm.cascades[2].strongClassifiers.back().threshold);
    EXPECT_EQ(0, palm.cascades[2].strongClassifiers.front().threshold);
}

TEST(ClassifierRing, FileRoundTrip) {
    for (const int count : {0, 1, 3}) {
        Palm palm(count);
        palm.ring->setConfig({{"falsePositive1", "5"}, {"negative", "/a b/c=d"}, {"empty", ""}});
        palm.ring->log = "log\nstage 1\n\nstage 2 = 7\n";
        const OwnFile file("round.ring");
        palm.ring->save(file.path);
        const auto config = palm.ring->config;
        *palm.ring = ClassifierRing(file.path);
        EXPECT_EQ(config, palm.ring->config);
        EXPECT_EQ("stage 1\n\nstage 2 = 7\n", palm.ring->log);
        ASSERT_EQ(count, palm.ring->getNumClassifiers());
        for (int i = 0; i < count; ++i)
            EXPECT_TRUE(palm.cascades[i] == palm.ring->baseClassifier(i));
        palm.ring->log.insert(0, "log\n");
        EXPECT_TRUE(file.text() == palm.saved());
    }
    // The source form of the palm's own ring is tested where it is in the tree, but for a log.
    Palm palm(1);
    palm.ring->log = "log\nwhat?\?/ \"quoted\" \\ 100%\n";
    const OwnFile source("palm.cpp");
    palm.ring->saveHeader(source.path);
    EXPECT_NE(std::string::npos,
              source.text().find("        \"what\\?\\?/ \\\"quoted\\\" \\\\ 100%\\n\";\n"));
}

// Whatever a file holds: it is read up to somewhere, or refused.
TEST(ClassifierRing, BrokenFiles) {
    const OwnFile file("broken.ring");
    Palm palm(1);
    palm.cascades[0].strongClassifiers.resize(2);
    const std::string whole = palm.saved();
    Random random(20260325);
    const auto read = [&](const std::string& text) {
        std::ofstream(file.path, std::ios::binary) << text;
        int numRead = 0;
        const std::string failure =
            assertionOf([&] { numRead = ClassifierRing(file.path).getNumClassifiers(); });
        EXPECT_TRUE(failure == "no failure" || failure == "set baseSize firts\n") << failure;
        return numRead;
    };
    const size_t trailer = whole.find(std::string(1000, '0'));
    ASSERT_NE(std::string::npos, trailer);
    EXPECT_EQ(1, read(whole.substr(0, trailer + 500)));
    EXPECT_EQ(1, read(whole.substr(0, trailer)));
    for (size_t length = 0; length < trailer - 4; length += 101)
        EXPECT_EQ(0, read(whole.substr(0, length)));
    for (int i = 0; i < 120; ++i) {
        std::string text = whole;
        for (int j = random.between(1, 4); j > 0; --j) {
            const auto place = static_cast<size_t>(random.between(0, i % 2 ? 60 : 9000));
            text.replace(std::min(place, text.size()), 1, 1,
                         "0189-\n .x\377"[random.between(0, 9)]);
        }
        read(text);
    }
}

// Angles of files may be those beside the full circle: the same poses follow.
TEST(ClassifierRing, AnglesBesideTheCircle) {
    for (const int degrees : {-360, -270, 180, 270, 360}) {
        Palm palm(1);
        palm.cascades[0].setAngle(degrees);
        const OwnFile file("angle.ring");
        palm.ring->save(file.path);
        ClassifierRing ring(file.path);
        const auto derived = ring.getClassifiers(KZ::AngleRange(), KZ::Side::BOTH);
        ASSERT_EQ(8u, derived.size()) << degrees;
        EXPECT_EQ(derived.size(), ring.possibilities.size());
        for (const ClassifierProperties& pose : ring.possibilities)
            EXPECT_TRUE(std::any_of(derived.begin(), derived.end(),
                                    [&](const CascadedClassifier* made) { return *made == pose; }))
                << degrees << " " << pose.angle;
    }
}

// A place that mirroring takes beyond a signed char would come out to the left of the window.
TEST(ClassifierRing, WindowsThatRmctPlacesReach) {
    Random random(20261121);
    for (const KZ::Size size : {KZ::Size(128, 9), KZ::Size(129, 9), KZ::Size(9, 129)}) {
        CascadedClassifier cascade = cascadeOf(size, {randomStage(random, size, 1, 0, 0)});
        WeakClassifierRmct corner;
        corner.setData(randomVotes(random));
        cascade.strongClassifiers[0].addRmctClassifier(corner);
        std::vector<CascadedClassifier*> pointers = {&cascade};
        const OwnFile file("wide.ring");
        ClassifierRing(pointers).save(file.path);
        EXPECT_EQ(size == KZ::Size(128, 9) ? 1 : 0, ClassifierRing(file.path).getNumClassifiers())
            << size;
    }
}

TEST(StrongClassifier, RefusesRectanglesOutOfRange) {
    std::string votes;
    for (int i = 0; i < 255; ++i) votes += " 7";
    // Well; left beyond right; top beyond bottom; the inner rectangle sticks out; no such vote.
    const std::pair<const char*, bool> lines[] = {{"2 1 9 8 4 3 5 6 -128", true},
                                                  {"2 9 1 8 4 3 5 6 0", false},
                                                  {"8 1 9 2 0 0 0 0 0", false},
                                                  {"2 1 9 8 4 3 5 9 0", false},
                                                  {"2 1 9 8 4 3 5 6 128", false}};
    for (const auto& line : lines) {
        std::istringstream stream("0 1 0\n5 0\n" + (line.first + votes) + "\n\n");
        EXPECT_EQ(line.second, StrongClassifier().load(stream)) << line.first;
    }
}
