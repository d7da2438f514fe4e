// Counts the memory that a settled frame asks for. Images and states are reused; what a frame may
// ask for is small: the matrices and the tables of resampling and, behind VI_ProcessFrame, the
// parser of the frame's parameters with its texts. The BGR frame of VI_SetFrame is new each time:
// it is prepared while the one before may be at work.

#include <atomic>
#include <climits>
#include <cstdlib>
#include <new>
#include <vector>

#include "GreFixture.h"
#include "MultiFrameVerification.h"
#include "VI_Interface.h"

namespace {

std::atomic<int> allocations;
std::atomic<int> allowed{INT_MAX};  // from now on; then memory has run out
std::atomic<int> largeAllocations;  // more than a table of a row of 448 pixels takes

void* allocate(std::size_t size) {
    ++allocations;
    if (size >= 8192) ++largeAllocations;
    void* memory = allowed-- > 0 ? std::malloc(size ? size : 1) : nullptr;
    if (!memory) throw std::bad_alloc();
    return memory;
}

}  // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

struct Cost {
    int all, large;
};

template <typename Call>
Cost costOf(Call call) {
    const Cost before{allocations, largeAllocations};
    call();
    return {allocations - before.all, largeAllocations - before.large};
}

class Allocations : public GreFixture {
protected:
    // The pipeline's confirmation around a detector that sees no palm: it works on every third
    // frame, on the products of the whole picture.
    void SetUp() override {
        GreFixture::SetUp();
        chain = new testing_support::FakeDetector(nullptr, KZ::Rect(0, 0, 10000, 10000));
        raisedHandDetector.setDetector(KZ::SharedPtr<BaseDetector>(
            new MultiFrameVerification(chain, MultiFrameVerification::Parameters(3))));
    }

    const std::vector<unsigned char> pixels = std::vector<unsigned char>(640 * 720, 90);
};

}  // namespace

TEST_F(Allocations, GreyFrames) {
    GRE_Init(320, 240);
    GRE_SetCameraAngle(270);
    const auto frame = [&] { GRE_ProcessFrame(pixels.data()); };
    for (int i = 0; i < 6; ++i) frame();
    for (int i = 0; i < 6; ++i) {
        const int before = chain->detects;
        const Cost cost = costOf(frame);
        EXPECT_EQ(i % 3 == 0, chain->detects != before);
        EXPECT_EQ(0, cost.large);
        // Four to turn the picture; one table for each of the 20 layers.
        EXPECT_LE(cost.all, i % 3 == 0 ? 24 : 4);
    }
    averageSpeed = 1e9f;
    EXPECT_EQ(0, costOf(frame).all) << "the closed gate";
    averageSpeed = 0;
    framesToSkip = 3;
    EXPECT_EQ(0, costOf(frame).all) << "at rest after a hit";
}

// Memory that runs out anywhere in a frame costs that frame alone. The picture changes its shape,
// so that no image can be reused.
TEST_F(Allocations, RunOutForOneFrame) {
    int n = 0;
    for (bool failed = true; failed; ++n) {
        failed = false;
        GRE_Init(n % 2 ? 320 : 240, n % 2 ? 240 : 320);
        raisedHandDetector.setHandSizes(33, 60);
        framesToSkip = 0;
        chain->act = nullptr;
        allowed = n;
        try {
            for (int i = 0; i < 3; ++i) GRE_ProcessFrame(pixels.data());
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        allowed = INT_MAX;
        find(testing_support::square(50, 50, 20));
        for (int i = 0; i < 6 && gesture() != "palm"; ++i) GRE_ProcessFrame(pixels.data());
        ASSERT_EQ("palm", gesture()) << n;
    }
    EXPECT_GT(n, 20);
}

// The palm chain itself, on a picture without a hand.
TEST_F(Allocations, BuiltInChain) {
    raisedHandDetector.setDetector(KZ::SharedPtr<BaseDetector>());
    GRE_Init(320, 240);
    const auto frame = [&] { GRE_ProcessFrame(pixels.data()); };
    for (int i = 0; i < 6; ++i) frame();
    for (int i = 0; i < 6; ++i) EXPECT_EQ(0, costOf(frame).large);
}

TEST_F(Allocations, WholeInterface) {
    VI_Init();
    const auto frame = [&] {
        VI_SetFrame(pixels.data(), 640, 720, 0);
        VI_ProcessFrame();
    };
    for (int i = 0; i < 6; ++i) frame();
    int costs[6];
    for (int& cost : costs) {
        const Cost all = costOf(frame);
        EXPECT_LE(all.large, 1);
        cost = all.all;
    }
    for (int i = 0; i < 3; ++i) EXPECT_EQ(costs[i], costs[i + 3]) << "no frame costs more in time";
    averageSpeed = 1e9f;
    frame();
    const Cost moving = costOf(frame);
    EXPECT_LE(moving.large, 1);
    EXPECT_EQ(moving.all, costOf(frame).all);
}
