#include <gtest/gtest.h>

#include "DetectorSet.h"
#include "FakeDetector.h"
#include "ResultKeeper.h"

using testing_support::FakeDetector;

namespace {

DetectorData noData;
const KZ::DetectRegion noRegion;

}  // namespace

TEST(DetectorSet, DataRoiIsTheUnionOfWhatChildrenNeed) {
    const KZ::Rect a(10, 10, 20, 20), b(0, 0, 15, 15), line(0, 0, 50, 0), far(-5, 12, -1, 40);
    struct Row {
        const char* what;
        std::vector<KZ::Rect> needed;
        KZ::Rect expected;
    };
    const Row rows[] = {
        {"none needs anything", {KZ::Rect(), KZ::Rect()}, KZ::Rect()},
        {"both", {a, b}, KZ::Rect(0, 0, 20, 20)},
        {"an empty answer in front does not pull in the origin", {KZ::Rect(), a}, a},
        {"a line has no area", {a, line}, a},
        {"apart", {a, far}, KZ::Rect(-5, 10, 20, 40)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        DetectorSet set("", false);
        for (const KZ::Rect& rect : row.needed) set.addDetector(new FakeDetector(nullptr, rect));
        EXPECT_EQ(row.expected, set.getDataRoi(noData, noRegion));
    }
}

TEST(DetectorSet, StopsAtTheFirstFindOnlyWhenTold) {
    for (const bool stop : {true, false}) {
        std::string order;
        DetectorSet set("", stop);
        for (const char letter : {'a', 'b', 'c'}) {
            set.addDetector(new FakeDetector(
                [&order, letter](DetectorData&, const KZ::DetectRegion&, DetectorResult& result) {
                    order += letter;
                    result.found = letter == 'b';
                }));
        }
        DetectorResult result(true);
        set.detect(noData, noRegion, result);
        EXPECT_EQ(stop ? "ab" : "abc", order);
    }
}

TEST(DetectorSet, NamesSharedChildrenOwnsAndResetsAll) {
    int deleted = 0;
    FakeDetector *own = new FakeDetector, *shared = new FakeDetector;
    own->deleted = shared->deleted = &deleted;
    const KZ::SharedPtr<BaseDetector> owner(shared);
    {
        DetectorSet* inner = new DetectorSet("inner", false);
        const KZ::SharedPtr<BaseDetector> innerOwner(inner);
        inner->addDetector(owner);
        inner->addDetector(own);
        DetectorSet outer("", true);
        outer.addDetector(innerOwner);
        outer.addDetector(owner);
        EXPECT_EQ(" of \\l * inner of \\l | * fake\\l * fake", outer.name());
        outer.reset();
        EXPECT_EQ(1, own->resets);
        EXPECT_EQ(2, shared->resets);
    }
    EXPECT_EQ(1, deleted) << "the shared child stays with its other owner";
}

TEST(ResultKeeper, SavesLoadsAndClearsOneTable) {
    const auto run = [](ResultKeeper::Type type, const char* key, float score) {
        DetectorResult result("running");
        result.score = score;
        ResultKeeper(type, key).detect(noData, noRegion, result);
        return result;
    };
    run(ResultKeeper::SAVE, "first", 0.5f);
    run(ResultKeeper::SAVE, "second", 0.75f);
    EXPECT_EQ(0.5f, run(ResultKeeper::LOAD, "first", 9).score);
    EXPECT_EQ(9, run(static_cast<ResultKeeper::Type>(3), "first", 9).score);
    run(ResultKeeper::CLEAR, "no such key", 9);
    for (const char* key : {"first", "second", "never saved"}) {
        const DetectorResult result = run(ResultKeeper::LOAD, key, 9);
        EXPECT_EQ("", result.name) << key;
        EXPECT_EQ(3.4028235e38f, result.score) << key;
    }
}
