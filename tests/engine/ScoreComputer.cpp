#include "ScoreComputer.h"

#include <gtest/gtest.h>

#include "FakeDetector.h"
#include "ResultKeeper.h"

TEST(ScoreComputer, GradesByTheStageReached) {
    const float none = 3.4028235e38f;
    const float rows[][4] = {
        // cascade, first and second verifier, expected
        {0.5f, 0, 0, 0.5f / 3}, {0.5f, 0.4f, 0, 1.4f / 3}, {0.5f, 0.4f, 0.9f, 2.9f / 3},
        {1.2f, 0, 1.5f, 0},     {0.5f, 1, none, 2.0f / 3}, {0.5f, 1.01f, 1, 1},
        {none, none, none, 0},  {1, none, none, 0},        {-0.75f, -1, 0, -0.75f / 3},
    };
    const char* const keys[] = {"AdaBoostResult", "Verifier1Result", "Verifier2Result"};
    for (const float(&row)[4] : rows) {
        DetectorData data;
        DetectorResult result;
        for (int i = 0; i < 3; ++i) {
            result.score = row[i];
            ResultKeeper(ResultKeeper::SAVE, keys[i]).detect(data, KZ::DetectRegion(), result);
        }
        testing_support::setHit(result, testing_support::square(3, 4, 5));
        ScoreComputer().detect(data, KZ::DetectRegion(), result);
        EXPECT_FLOAT_EQ(row[3], result.score) << row[0] << " " << row[1] << " " << row[2];
        EXPECT_EQ("hand", result.name) << "all but the score stays";
        EXPECT_EQ(3, result.location.center.x);
    }
}
