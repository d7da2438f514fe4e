#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

#include "AdaSupport.h"
#include "ClassifierRing.h"
#include "LogCapture.h"
#include "PatternDetector.h"

using namespace ada_test;
using testing_support::assertionOf;

namespace {

const KZ::Size SIZE(12, 10);

ClassifierProperties poseAt(int angle, KZ::Side::Value side) {
    ClassifierProperties pose;
    pose.setMonoSize(SIZE);
    pose.setAngle(angle);
    pose.side = side;
    return pose;
}

std::string fileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void writeFile(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

// Three cascades as the palm's, with settings and a log.
struct Palm {
    CascadedClassifier cascades[3];
    std::vector<CascadedClassifier*> pointers;

    explicit Palm(unsigned int seed, int numHog = 3) {
        Random random(seed);
        for (int i = 0; i < 3; ++i) {
            cascades[i] = randomCascade(random, i == 1 ? KZ::Size(11, 9) : SIZE, numHog);
            cascades[i].setAngle(30 * (i - 1));
            pointers.push_back(&cascades[i]);
        }
    }
};

std::string savedText(const ClassifierRing& ring) {
    const std::string path = testing::TempDir() + "ada_saved.ring";
    ring.save(path);
    return fileText(path);
}

// Centre and score of each object that one cascade finds in a picture, sorted, and moved as the
// picture is when it is mirrored and then turned.
std::vector<std::vector<int>> hits(CascadedClassifier& cascade, const KZ::Image& image,
                                   bool flip = false, int rotations = 0) {
    const Planes planes(image);
    std::vector<AdaObject> out;
    cascade.addMatches(planes.rmct, planes.mono, planes.integral, out, 1, 1);
    std::vector<std::vector<int>> places;
    for (const AdaObject& object : out) {
        KZ::Point p = flip ? flipPointOnSize(object.center, image.size()) : object.center;
        KZ::Size size = image.size();
        for (int i = 0; i < rotations; ++i) {
            p = rotatePointOnSize(p, size);
            std::swap(size.width, size.height);
        }
        places.push_back({p.x, p.y, object.score});
    }
    std::sort(places.begin(), places.end());
    return places;
}

KZ::Image transformed(const KZ::Image& image, bool flip, int rotations) {
    KZ::Image result = flip ? mirrored(image) : image;
    for (int i = 0; i < rotations; ++i) result = turned(result);
    return result;
}

}  // namespace

TEST(ClassifierProperties, CostOfATransformation) {
    const KZ::Side::Value R = KZ::Side::RIGHT, L = KZ::Side::LEFT, B = KZ::Side::BOTH;
    struct Row {
        int from;
        KZ::Side::Value fromSide;
        int to;
        KZ::Side::Value toSide;
        bool possible, flip;
        int rotations;
    };
    const Row rows[] = {
        {0, R, 0, R, false, false, 0},    {0, R, 0, L, true, true, 0},
        {0, R, 90, R, true, false, 1},    {0, R, 90, L, true, true, 1},
        {0, R, -90, R, true, false, 3},   {-30, R, 30, L, true, true, 0},
        {-30, R, -30, L, false, true, 0}, {0, R, 45, R, false, false, 0},
        {-30, R, 150, R, true, false, 2}, {30, B, -30, B, true, true, 0},
        {30, B, 120, B, true, false, 1},  {-180, R, -180, L, true, true, 0},
        {170, R, -80, L, true, true, 1},
    };
    for (const Row& row : rows) {
        const auto way = poseAt(row.from, row.fromSide).transformCost(poseAt(row.to, row.toSide));
        const std::string what = KZ::joined(row.from, " ", row.fromSide, " -> ", row.to);
        EXPECT_EQ(row.possible, way.possible) << what;
        EXPECT_EQ(row.flip, way.flip) << what;
        EXPECT_EQ(row.rotations, way.rotations) << what;
        EXPECT_EQ(row.possible ? row.rotations + row.flip : 0x7fffffff, way.cost()) << what;
    }
    ClassifierProperties other = poseAt(90, R);
    other.setName("other");
    EXPECT_FALSE(poseAt(0, R).transformCost(other).possible);
    EXPECT_EQ("set baseSize firts\n",
              assertionOf([] { ClassifierProperties().setObjectCenter(KZ::Point(1, 1)); }));
}

TEST(ClassifierRing, PosesThatFollow) {
    struct Row {
        int angle;
        bool symmetric;
        size_t poses, narrow;
    };
    const Row rows[] = {{0, true, 4, 1}, {30, true, 8, 2}, {0, false, 8, 2}, {30, false, 8, 2}};
    for (const Row& row : rows) {
        CascadedClassifier cascade;
        cascade.setMonoSize(SIZE);
        cascade.setAngle(row.angle);
        cascade.setSymmetry(row.symmetric);
        std::vector<CascadedClassifier*> pointers(1, &cascade);
        ClassifierRing ring(pointers);
        EXPECT_EQ(row.poses, ring.possibilities.size()) << row.angle;
        EXPECT_EQ(row.symmetric, ring.isSymmetric());
        ring.angleRange = KZ::AngleRange(-30, 30);
        ring.generatePossibilities();
        EXPECT_EQ(row.narrow, ring.possibilities.size()) << row.angle;
    }
}

// The heart of the ring: a derived cascade finds on the transformed picture exactly what the
// trained one finds on the picture itself.
TEST(ClassifierRing, DerivedCascadesSeeTransformedPictures) {
    Random random(20260320);
    const KZ::Image image = randomImage(random, KZ::Size(70, 50));
    for (int pose = 0; pose < 8; ++pose) {
        Palm palm(20260321, 0);
        palm.pointers.resize(1);
        ClassifierRing ring(palm.pointers);
        ring.setName("palm");
        ring.generatePossibilities();
        const auto wanted = ring.possibilities[static_cast<size_t>(pose)];
        CascadedClassifier& base = ring.baseClassifier(0);
        const auto way = base.transformCost(wanted);
        const auto expected = hits(base, image, way.flip, way.rotations);
        EXPECT_GT(expected.size(), 50u);

        const auto derived = ring.getClassifiers(KZ::AngleRange(wanted.angle), wanted.side);
        ASSERT_EQ(1u, derived.size());
        EXPECT_EQ(expected, hits(*derived[0], transformed(image, way.flip, way.rotations)))
            << wanted.angle << " " << wanted.side;
        EXPECT_EQ(way.rotations % 2 ? KZ::Size(10, 12) : SIZE, derived[0]->monoSize);
        EXPECT_EQ(SIZE, derived[0]->baseSize_);
        EXPECT_EQ("palm", derived[0]->name);
    }
}

TEST(ClassifierRing, CascadesAreMadeOnce) {
    Palm palm(20260321);
    ClassifierRing ring(palm.pointers);
    const auto first = ring.getClassifiers(KZ::AngleRange(-30, 30), KZ::Side::BOTH);
    const auto again = ring.getClassifiers(KZ::AngleRange(-30, 30), KZ::Side::BOTH);
    EXPECT_EQ(6u, first.size());
    EXPECT_TRUE(std::is_permutation(first.begin(), first.end(), again.begin(), again.end()));
    EXPECT_EQ(3, ring.getNumClassifiers());
}

TEST(ClassifierRing, GradientsAreMirrored) {
    Random random(20260322);
    const KZ::Image image = randomImage(random, KZ::Size(60, 45));
    CascadedClassifier cascade = randomCascade(random, SIZE, 6);
    CascadedClassifier mirror = cascade;
    mirror.flipVertically();
    EXPECT_GT(hits(cascade, image).size(), 50u);
    EXPECT_EQ(hits(cascade, image, true), hits(mirror, mirrored(image)));
}

TEST(ClassifierRing, FileRoundTrip) {
    const std::string path = testing::TempDir() + "ada_round_trip.ring";
    for (const size_t numCascades : {0u, 1u, 3u}) {
        Palm palm(20260323);
        palm.pointers.resize(numCascades);
        ClassifierRing ring(palm.pointers);
        ring.setName("raised palm");
        ring.generatePossibilities();
        ring.setConfig({{"falsePositive1", "5"}, {"negative", "/a b/c=d"}, {"empty", ""}});
        ring.log = "log\nstage 1\n\nstage 2 = 7\n";
        ring.save(path);

        ClassifierRing read(path);
        EXPECT_EQ("raised palm", read.name);
        EXPECT_EQ(ring.config, read.config);
        EXPECT_EQ("stage 1\n\nstage 2 = 7\n", read.log);
        ASSERT_EQ(static_cast<int>(numCascades), read.getNumClassifiers());
        EXPECT_EQ(8 * numCascades, read.possibilities.size());
        read.log = ring.log;
        EXPECT_TRUE(savedText(ring) == savedText(read));
        for (size_t i = 0; i < numCascades; ++i)
            EXPECT_TRUE(palm.cascades[i] == read.baseClassifier(static_cast<int>(i)));
    }
}

TEST(ClassifierRing, RefusedFiles) {
    const std::string missing = testing::TempDir() + "no_such_folder/x.ring";
    EXPECT_EQ("cannot open file '" + missing + "\n",
              assertionOf([&] { ClassifierRing ring(missing); }));
    const std::string wrong = testing::TempDir() + "ada_wrong.txt";
    writeFile(wrong, "palm\n0\n");
    EXPECT_EQ("only ring files supported\n", assertionOf([&] { ClassifierRing ring(wrong); }));

    // A stage that tells one classifier too many.
    for (const char* counts : {"10001 0 0", "0 10001 0", "0 0 10001", "-1 0 0", "9999999999 0 0"}) {
        std::istringstream text(std::string(counts) + "\n5 0\n\n");
        StrongClassifier stage;
        EXPECT_FALSE(stage.load(text)) << counts;
    }
    std::string votes;
    for (int i = 0; i < 255; ++i) votes += " 7";
    const std::pair<const char*, bool> lines[] = {
        {"2 1 9 8\t4 3 5 6\t-128", true},  {"2 1 9 8\t0 0 0 0\t127", true},
        {"2 9 1 8\t4 3 5 6\t0", false},     // left beyond right
        {"8 1 9 2\t0 0 0 0\t0", false},     // top beyond bottom
        {"2 1 9 8\t4 3 5 9\t0", false},     // the inner rectangle sticks out
        {"2 1 9 5000\t4 3 5 6\t0", false},  // no such patch
        {"2 1 9 8\t4 3 5 6\t128", false},   // no such vote
    };
    for (const auto& line : lines) {
        std::istringstream text("0 1 0\n5 0\n" + (line.first + votes) + "\n\n");
        StrongClassifier stage;
        EXPECT_EQ(line.second, stage.load(text)) << line.first;
    }
}

// Whatever a file holds: it is read up to somewhere, or refused.
TEST(ClassifierRing, BrokenFiles) {
    const std::string path = testing::TempDir() + "ada_broken.ring";
    Palm palm(20260324, 1);
    palm.pointers.resize(1);
    palm.cascades[0].strongClassifiers.resize(2);
    ClassifierRing ring(palm.pointers);
    const std::string whole = savedText(ring);
    Random random(20260325);
    const auto read = [&](const std::string& text) {
        writeFile(path, text);
        int numRead = 0;
        const std::string failure =
            assertionOf([&] { numRead = ClassifierRing(path).getNumClassifiers(); });
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

TEST(ClassifierRing, EmittedSource) {
    Palm palm(20260326);
    ClassifierRing ring(palm.pointers);
    ring.setName("palm");
    ring.log = "log\nwhat?\?/ \"quoted\" \\ 100%\n";
    ring.setConfig({{"ringName", "ada_palm"}, {"creationTime", "2014_12_05__17_40_12"}});
    const std::string path = testing::TempDir() + "ada_palm.cpp";
    ring.saveHeader(path);
    const std::string source = fileText(path);
    ring.saveHeader(path);
    EXPECT_TRUE(source == fileText(path));

    const char* const parts[] = {
        "// @file ada_palm.cpp\n",
        "// @brief This file contains previously trained set of classifiers.\n",
        "#include \"ClassifierMap.h\"\n\n// Creation time: 2014_12_05__17_40_12\n",
        "    int set_threshold_ada_palm_r2[3] = {0, 0, 0};\n",
        "    short set_weak_classifiers_rmct_n_ada_palm_r0[3] = {3, 2, 2};\n",
        "    short set_weak_classifiers_haar_n_ada_palm_r0[3] = {0, 3, 2};\n",
        "    short set_weak_classifiers_hog_n_ada_palm_r0[3] = {0, 0, 3};\n",
        "\tstatic cData weak_classifiers_ada_palm_r1_2[7][266] = {\n",
        "    static CascadedClassifier ada_palm_r0_cascadedClassifier;\n",
        "ada_palm_r1_cascadedClassifier.setMonoSize(KZ::Size(11, 9));\n",
        "ada_palm_r0_cascadedClassifier.setAngle(-30);\n",
        "ada_palm_r0_cascadedClassifier.setName(\"ada_palm_r0\");\n",
        "_weak_hog.setData((KZ::schar*) weak_classifiers_ada_palm_r0_2[j] + 9);\n",
        "DLL_DECLSPEC ClassifierRing* ada_palm() {\n    static ClassifierRing* pRing = NULL;\n",
        "    classifiersVec.push_back(&ada_palm_r2_cascadedClassifier);\n",
        "    ring.setName(\"palm\");\n    ring.generatePossibilities();\n",
        "    config[\"ringName\"] = \"ada_palm\";\n",
        "        \"log\\n\"\n        \"what\\?\\?/ \\\"quoted\\\" \\\\ 100%\\n\";\n",
    };
    for (const char* part : parts) EXPECT_NE(std::string::npos, source.find(part)) << part;

    // The rows of the last cascade's tables are its classifiers in order: RMCT, Haar, HOG.
    std::ostringstream rows;
    for (const StrongClassifier& stage : palm.cascades[2].strongClassifiers) {
        for (const auto& weak : stage.rmctClassifiers()) weak.writeWeakClassifier(rows);
        for (const auto& weak : stage.haarClassifiers()) weak.writeWeakClassifier(rows);
        for (const auto& weak : stage.hogClassifiers()) weak.writeWeakClassifier(rows);
    }
    std::string tables;
    std::istringstream lines(source.substr(source.find("build_ada_palm_r2()")));
    for (std::string line; std::getline(lines, line);)
        if (line.compare(0, 2, "\t{") == 0) tables += line + "\n";
    EXPECT_TRUE(rows.str() == tables);
}

TEST(ClassifierRing, ThresholdsAndDetectors) {
    Palm palm(20260327);
    ClassifierRing ring(palm.pointers);
    ring.setLastCascadeThreshold(0x7fffffff);
    EXPECT_EQ(0, palm.cascades[0].strongClassifiers.back().threshold);
    ring.setLastCascadeThreshold(-40);
    const auto detector = ring.getDetector(KZ::AngleRange(-30, 30), KZ::Side::RIGHT, 4);
    EXPECT_EQ(-40, detector->getClassifierThreshold());
    EXPECT_EQ(4, detector->parameters().minNeighbors);
    EXPECT_EQ("PatternDetector ", detector->name());
    detector->setClassifierThreshold(0x7fffffff);
    detector->setClassifierThreshold(12);
    EXPECT_EQ(12, palm.cascades[2].strongClassifiers.back().threshold);
    EXPECT_EQ(0, palm.cascades[2].strongClassifiers.front().threshold);
}
