// The truth against the picture: what the drawn pixels alone say about the hand.

#include "HandTruth.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>

#include "HandMesh.h"

namespace {

using namespace hand;

struct Pixel {
    double x, y, weight;
};

std::vector<Pixel> maskOf(const HandMesh& mesh, const PosedHand& posed, const Camera& camera) {
    static const Surface surface = paintHand(mesh, skinTone(0), {});
    const Illumination dark{std::vector<Vector3>(posed.positions.size()),
                            std::vector<float>(posed.positions.size())};
    const HandLayer layer = render(mesh, surface, posed, dark, Light(), camera, Parts::HAND);
    std::vector<Pixel> mask;
    for (int y = 0; y < layer.height; ++y) {
        for (int x = 0; x < layer.width; ++x) {
            const float coverage = layer.coverage[size_t(y) * layer.width + x];
            if (coverage > 0) mask.push_back({x + .5, y + .5, coverage});
        }
    }
    return mask;
}

// The mask turned upright about `angle` and measured with a ruler.
struct Ruler {
    double top = 1e9, bottom = -1e9, left = 1e9, right = -1e9, knuckles = 0;

    Ruler(const std::vector<Pixel>& mask, double cx, double cy, double angle) {
        const double c = std::cos(angle * M_PI / 180), s = std::sin(angle * M_PI / 180);
        std::map<int, double> widths;
        for (const Pixel& p : mask) {
            const double dx = p.x - cx, dy = p.y - cy;
            const double across = c * dx - s * dy, down = s * dx + c * dy;
            if (p.weight > .5) {
                top = std::min(top, down);
                bottom = std::max(bottom, down);
                left = std::min(left, across);
                right = std::max(right, across);
            }
            widths[int(std::floor(down))] += p.weight;
        }
        // Just below the clefts of the fingers: half way up the hand.
        const int middle = int(std::lround((top + bottom) / 2 + (bottom - top) * .03));
        for (int i = -2; i <= 2; ++i) knuckles += widths[middle + i] / 5;
    }
};

// The rigged hand that scripts/make_sample fetches; RHD_HAND_MESH names another place.
class HandTruthTest : public testing::Test {
protected:
    void SetUp() override {
        const char* named = std::getenv("RHD_HAND_MESH");
        const std::string path =
            named ? named
                  : RHD_SOURCE_DIR
                "/.cache/npm/node_modules/@webxr-input-profiles/assets/dist/profiles/generic-hand/"
                "right.glb";
        if (!std::filesystem::exists(path))
            GTEST_SKIP() << "no hand mesh: run scripts/make_sample to fetch it";
        mesh_ = loadHandMesh(path);
    }
    HandMesh mesh_;
};

TEST_F(HandTruthTest, AgreesWithTheMask) {
    struct Row {
        const char* what;
        Vector3 position;
        float roll, yaw, scale;
        bool left;
        int thumb;  // 1 on the right of an upright picture, -1 on the left
    };
    const Row rows[] = {
        {"right palm", {0, 0, -.5f}, 0, 0, 1, false, 1},
        {"left palm", {0, 0, -.5f}, 0, 0, 1, true, -1},
        {"back of the right hand", {0, 0, -.5f}, 0, 180, 1, false, -1},
        {"counter-clockwise", {.05f, -.03f, -.45f}, 25, 0, 1, false, 1},
        {"clockwise, left", {-.08f, .04f, -.6f}, -30, 0, 1, true, -1},
        {"small and far aside", {.2f, .1f, -.7f}, 10, 0, .8f, false, 1},
        {"near", {.02f, .01f, -.3f}, -12, 0, 1, false, 1},
    };
    HandPose thumbInside = closedPose();  // out of the way of the ruler at the knuckles
    thumbInside.fingers[THUMB] = fistPose().fingers[THUMB];
    const Camera camera;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const HandPlacement placement{row.position, row.roll, row.yaw, 0, row.scale, row.left};
        const PosedHand posed = pose(mesh_, openPose(), placement);
        const HandTruth truth = measure(mesh_, posed, camera);
        const std::vector<Pixel> mask = maskOf(mesh_, posed, camera);
        EXPECT_NEAR(row.roll, truth.angle, 3);
        const Ruler ruler(mask, truth.cx, truth.cy, truth.angle);
        const double size = ruler.bottom - ruler.top;
        EXPECT_NEAR(0, ruler.top + ruler.bottom, .04 * size);
        // The thumb reaches farther out than the little finger.
        EXPECT_GT((ruler.left + ruler.right) * row.thumb, 0.05 * size);
        const std::vector<Pixel> slim = maskOf(mesh_, pose(mesh_, thumbInside, placement), camera);
        const Ruler palm(slim, truth.cx, truth.cy, truth.angle);
        EXPECT_NEAR(truth.palmWidth, palm.knuckles, .09 * truth.palmWidth);
        EXPECT_TRUE(truth.inside);
    }
}

TEST_F(HandTruthTest, KnowsTheEdges) {
    for (const Vector3& beyond : {Vector3{.45f, 0, -.5f}, Vector3{0, .25f, -.5f}}) {
        HandPlacement placement;
        placement.position = beyond;
        EXPECT_FALSE(measure(mesh_, pose(mesh_, openPose(), placement), Camera()).inside);
    }
}

}  // namespace
