#include <gtest/gtest.h>

#include "DetectorSet.h"
#include "FakeDetector.h"
#include "ResultKeeper.h"

using testing_support::FakeDetector;

namespace {

DetectorData noData;
const KZ::DetectRegion noRegion;

}  // namespace

// An empty answer, or a line, does not pull in the places between.
TEST(DetectorSet, DataRoiIsTheUnionOfWhatChildrenNeed) {
    const KZ::Rect a(10, 10, 20, 20), b(0, 0, 15, 15), line(0, 0, 50, 0), far(-5, 12, -1, 40), none;
    const KZ::Rect rows[][3] = {{none, none, none},
                                {a, b, KZ::Rect(0, 0, 20, 20)},
                                {none, a, a},
                                {a, line, a},
                                {a, far, KZ::Rect(-5, 10, 20, 40)}};
    for (const auto& row : rows) {
        DetectorSet set("", false);
        set.addDetector(new FakeDetector(nullptr, row[0]));
        set.addDetector(new FakeDetector(nullptr, row[1]));
        EXPECT_EQ(row[2], set.getDataRoi(noData, noRegion));
    }
}

TEST(DetectorSet, StopsAtTheFirstFindOnlyWhenTold) {
    for (const bool stop : {true, false}) {
        std::string order;
        DetectorSet set("", stop);
        for (const char letter : {'a', 'b', 'c'})
            set.addDetector(new FakeDetector(
                [&order, letter](DetectorData&, const KZ::DetectRegion&, DetectorResult& result) {
                    order += letter;
                    result.found = letter == 'b';
                }));
        DetectorResult result(true);
        set.detect(noData, noRegion, result);
        EXPECT_EQ(stop ? "ab" : "abc", order);
    }
}

TEST(DetectorSet, NamesAndSharesChildren) {
    int deleted = 0;
    FakeDetector* shared = new FakeDetector;
    shared->deleted = &deleted;
    {
        const KZ::SharedPtr<BaseDetector> owner(shared);
        DetectorSet inner("inner", false), outer("", true);
        inner.addDetector(owner);
        outer.addDetector(KZ::SharedPtr<BaseDetector>::unowned(&inner));
        outer.addDetector(owner);
        EXPECT_EQ(" of \\l * inner of \\l | * fake\\l * fake", outer.name());
        outer.reset();
        EXPECT_EQ(2, shared->resets);
    }
    EXPECT_EQ(1, deleted);
}

TEST(ResultKeeper, SavesLoadsAndClearsOneTable) {
    const auto run = [](ResultKeeper::Type type, const char* key, float score) {
        DetectorResult result("running");
        result.score = score;
        ResultKeeper(type, key).detect(noData, noRegion, result);
        return result.score;
    };
    run(ResultKeeper::SAVE, "first", 0.5f);
    run(ResultKeeper::SAVE, "second", 0.75f);
    EXPECT_EQ(0.5f, run(ResultKeeper::LOAD, "first", 9));
    run(ResultKeeper::CLEAR, "no such key", 9);
    EXPECT_EQ(3.4028235e38f, run(ResultKeeper::LOAD, "first", 9));
}
