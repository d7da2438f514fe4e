#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "Allocations.h"
#include "EveryLayer.h"

namespace {

std::atomic<int> count;
size_t largest;

void* allocate(std::size_t size) {
    ++count;
    if (size > largest) largest = size;
    void* memory = std::malloc(size ? size : 1);
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

namespace testing_support {

int allocationCount() {
    return count;
}

size_t& largestAllocation() {
    return largest;
}

TEST(Allocations, SettledRunsAskForNothing) {
    for (const NnDetector& network :
         {everyLayerNetwork(), verifierNetwork(firstVerifier(), randomBlobs(firstVerifier(), 4)),
          verifierNetwork(secondVerifier(), randomBlobs(secondVerifier(), 5))}) {
        KZ::Image image(network.getSize(), KZ::COLOR_MODE_MONO);
        std::fill(image.data(), image.data() + image.size().area(), static_cast<unsigned char>(77));
        for (int i = 0; i < 2; ++i) network.detect(image);
        const int before = allocationCount();
        for (int i = 0; i < 3; ++i) network.detect(image);
        EXPECT_EQ(before, allocationCount()) << network.getName();
    }
}

}  // namespace testing_support
