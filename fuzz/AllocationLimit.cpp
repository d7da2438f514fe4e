#include "AllocationLimit.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

const size_t UNLIMITED = std::numeric_limits<size_t>::max();
size_t largestRequest = UNLIMITED;

void* request(size_t bytes) {
    return bytes > largestRequest ? nullptr : std::malloc(bytes > 0 ? bytes : 1);
}

void* allocate(size_t bytes) {
    void* memory = request(bytes);
    if (!memory) throw std::bad_alloc();
    return memory;
}

}  // namespace

namespace fuzz {

AllocationLimit::AllocationLimit(size_t bytes) {
    largestRequest = bytes;
}

AllocationLimit::~AllocationLimit() {
    largestRequest = UNLIMITED;
}

}  // namespace fuzz

void* operator new(size_t bytes) {
    return allocate(bytes);
}

void* operator new[](size_t bytes) {
    return allocate(bytes);
}

void* operator new(size_t bytes, const std::nothrow_t&) noexcept {
    return request(bytes);
}

void* operator new[](size_t bytes, const std::nothrow_t&) noexcept {
    return request(bytes);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, size_t) noexcept {
    std::free(memory);
}
