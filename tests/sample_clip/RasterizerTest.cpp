#include "Rasterizer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>

namespace {

using namespace hand;

// The weights must reproduce any linear function, and the cells the triangle's area, also where the
// grid cuts it off.
TEST(Rasterizer, CoversTrianglesWithTheirWeights) {
    std::mt19937 random(5);
    std::uniform_real_distribution<float> place(-20, 70);
    for (int round = 0; round < 200; ++round) {
        Vector3 corner[3];
        for (Vector3& p : corner) p = {place(random), place(random), 0};
        const auto value = [](float x, float y) { return 3 * x - 2 * y + 7; };
        std::set<std::pair<int, int>> cells;
        forEachCell(corner[0], corner[1], corner[2], 50, 40,
                    [&](int x, int y, float a, float b, float c) {
                        EXPECT_TRUE(cells.insert({x, y}).second);
                        const float mixed = a * value(corner[0].x, corner[0].y) +
                                            b * value(corner[1].x, corner[1].y) +
                                            c * value(corner[2].x, corner[2].y);
                        EXPECT_NEAR(value(float(x) + .5f, float(y) + .5f), mixed, .05f);
                    });
        // Every cell by the half-plane definition, in double.
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 50; ++x) {
                double least = 1e9, most = -1e9;
                for (int i = 0; i < 3; ++i) {
                    const Vector3 &a = corner[i], &b = corner[(i + 1) % 3];
                    const double side =
                        (double(b.x) - a.x) * (y + .5 - a.y) - (double(b.y) - a.y) * (x + .5 - a.x);
                    least = std::min(least, side);
                    most = std::max(most, side);
                }
                if (std::min(std::abs(least), std::abs(most)) < .02) continue;  // on an edge
                ASSERT_EQ(least > 0 || most < 0, cells.count({x, y}) == 1) << x << "," << y;
            }
        }
    }
}

}  // namespace
