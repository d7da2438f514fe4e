#include "HandRenderer.h"

#include <cmath>
#include <map>
#include <random>
#include <set>
#include <stdexcept>

#include "HandMeshFile.h"
#include "Rasterizer.h"

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

TEST(ImportHandMesh, NamesTheFileThatItCannotRead) {
    try {
        loadHandMesh("/nowhere/hand.glb");
        FAIL() << "no exception";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string::npos, std::string(error.what()).find("/nowhere/hand.glb"));
    }
}

using HandRendererTest = WithHandMesh;

TEST_F(HandRendererTest, RefusesALeftHand) {
    std::string left = handMeshPath();
    left.replace(left.rfind("right"), 5, "left");
    EXPECT_THROW(loadHandMesh(left), std::runtime_error);
}

// The surface is closed from the finger tips to the open end of the bare forearm, and every vertex
// hangs on joints whose weights sum to 1.
TEST_F(HandRendererTest, ContinuesTheHandWithoutAGap) {
    std::map<std::pair<int, int>, int> edges;
    for (const Triangle& t : mesh().triangles) {
        if (std::max({t.a, t.b, t.c}) >= mesh().skinVertices) continue;
        ++edges[{t.a, t.b}];
        ++edges[{t.b, t.c}];
        ++edges[{t.c, t.a}];
    }
    for (const auto& edge : edges) {
        ASSERT_EQ(1, edge.second) << "an edge used twice in the same sense";
        if (edges.count({edge.first.second, edge.first.first})) continue;
        EXPECT_LT(mesh().positions[edge.first.first].y, -.08f) << "a hole above the sleeve";
    }
    for (const Influence& influence : mesh().influences) {
        float sum = 0;
        for (float weight : influence.weight) sum += weight;
        ASSERT_NEAR(1, sum, 1e-4f);
    }
}

// Light from the right leaves the left in shadow; normals of a mirrored hand still point outwards.
TEST_F(HandRendererTest, LightsTheSideThatFacesTheLight) {
    const Surface plain{std::vector<Vector3>(mesh().positions.size(), {.5f, .5f, .5f}),
                        std::vector<float>(mesh().positions.size()),
                        std::vector<float>(mesh().positions.size())};
    for (bool left : {false, true}) {
        for (float lightFrom : {-1.f, 1.f}) {
            HandPlacement placement;
            placement.left = left;
            const PosedHand posed = pose(mesh(), fistPose(), placement);
            Light light;
            light.toKey = {lightFrom, 0, .3f};
            const HandLayer layer = render(mesh(), plain, posed, illuminate(mesh(), posed, light),
                                           light, Camera(), Parts::HAND);
            double moment = 0, mass = 0, middle = 0, brightness = 0;
            for (size_t i = 0; i < layer.colour.size(); ++i) {
                middle += double(i % layer.width) * layer.coverage[i];
                mass += layer.coverage[i];
                moment += double(i % layer.width) * layer.colour[i].y;
                brightness += layer.colour[i].y;
            }
            EXPECT_GT((moment / brightness - middle / mass) * lightFrom, 3) << left;
        }
    }
}

}  // namespace
