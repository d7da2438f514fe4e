#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <new>

namespace testing_support {

/// `count` cells of T that end where an unreadable page begins: a read or write past the end faults
/// at once. T must be trivial; the cells start as zero.
template <typename T>
class GuardedBuffer {
public:
    explicit GuardedBuffer(size_t count) : count_(count) {
        const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        const size_t bytes = count * sizeof(T);
        mapped_ = (bytes + page - 1) / page * page + page;
        void* memory =
            mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) throw std::bad_alloc();
        base_ = static_cast<unsigned char*>(memory);
        unsigned char* guard = base_ + mapped_ - page;
        mprotect(guard, page, PROT_NONE);
        cells_ = reinterpret_cast<T*>(guard - bytes);
    }
    ~GuardedBuffer() { munmap(base_, mapped_); }
    GuardedBuffer(const GuardedBuffer&) = delete;
    GuardedBuffer& operator=(const GuardedBuffer&) = delete;

    T* data() { return cells_; }
    T* begin() { return cells_; }
    T* end() { return cells_ + count_; }
    T& operator[](size_t i) { return cells_[i]; }
    size_t size() const { return count_; }

private:
    size_t count_;
    size_t mapped_;
    unsigned char* base_;
    T* cells_;
};

}  // namespace testing_support
