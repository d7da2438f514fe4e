#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "EveryLayer.h"
#include "NnSupport.h"

namespace {

std::atomic<int> count;
size_t largest;

}  // namespace

// The forms for arrays end here too.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++count;
    if (size > largest) largest = size;
    void* memory = std::malloc(size ? size : 1);
    if (!memory) throw std::bad_alloc();
    return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace testing_support {

size_t& largestAllocation() {
    return largest;
}

TEST(Allocations, SettledRunsAskForNothing) {
    for (const NnDetector& network :
         {everyLayerNetwork(), verifierNetwork(firstVerifier(), randomBlobs(firstVerifier(), 4)),
          verifierNetwork(secondVerifier(), randomBlobs(secondVerifier(), 5))}) {
        const KZ::Image image = noise(network.getSize(), KZ::COLOR_MODE_MONO, 1);
        for (int i = 0; i < 2; ++i) network.detect(image);
        const int before = count;
        for (int i = 0; i < 3; ++i) network.detect(image);
        EXPECT_EQ(before, count) << network.getName();
    }
}

}  // namespace testing_support
