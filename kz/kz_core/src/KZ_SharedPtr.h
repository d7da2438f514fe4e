#pragma once

#include <atomic>
#include <cstdint>

namespace KZ {

template <typename T>
struct DefaultPtrDeleter {
    static void free(T* p) { delete p; }
};

template <typename T>
struct DefaultArrayDeleter {
    static void free(T* p) { delete[] p; }
};

using UseCount = std::atomic<int32_t>;

/// A pointer beside a pointer to an atomic use count. The holder that brings the count to 0 frees
/// the object and the count. Holders made on `staticCounter_` (empty ones, and those of `unowned`)
/// never free anything: that counter starts at 1 and so never falls to 0. The count is the only
/// part that may be touched by several threads at once.
template <typename T, typename Deleter>
class SharedHolder {
public:
    SharedHolder() : SharedHolder(nullptr, &staticCounter_) {}
    /// Takes ownership of `p` under a new counter; where there is no memory for that, `p` is freed.
    explicit SharedHolder(T* p) : SharedHolder(p, true) {}
    /// Takes ownership only if told so.
    SharedHolder(T* p, bool owned) : SharedHolder(p, owned ? newCounter(p) : &staticCounter_) {}
    SharedHolder(const SharedHolder& other) : SharedHolder(other.pointer_, other.counter_) {}
    template <typename U, typename D>
    SharedHolder(const SharedHolder<U, D>& other) : SharedHolder(other.get(), other.counter()) {}
    ~SharedHolder() { release(); }

    /// A holder of `p` that never frees it.
    static SharedHolder unowned(T* p) { return SharedHolder(p, &staticCounter_); }

    SharedHolder& operator=(const SharedHolder& other) {
        if (this == &other) return *this;
        SharedHolder copy(other);
        swap(copy);
        return *this;
    }

    void swap(SharedHolder& other) {
        T* pointer = pointer_;
        UseCount* counter = counter_;
        pointer_ = other.pointer_;
        counter_ = other.counter_;
        other.pointer_ = pointer;
        other.counter_ = counter;
    }

    void reset() { SharedHolder().swap(*this); }

    T* get() const { return pointer_; }
    UseCount* counter() const { return counter_; }
    T& operator*() const { return *pointer_; }
    T* operator->() const { return pointer_; }
    T& operator[](int64_t i) const { return pointer_[i]; }
    explicit operator bool() const { return pointer_ != nullptr; }

private:
    SharedHolder(T* p, UseCount* counter) : pointer_(p), counter_(counter) {
        counter_->fetch_add(1, std::memory_order_relaxed);
    }

    static UseCount* newCounter(T* p) {
        try {
            return new UseCount(0);
        } catch (...) {
            Deleter::free(p);
            throw;
        }
    }

    void release() {
        if (counter_->fetch_sub(1, std::memory_order_acq_rel) != 1) return;
        if (counter_ == &staticCounter_) return;  // for the compiler, which cannot see the count
        Deleter::free(pointer_);
        delete counter_;
    }

    inline static UseCount staticCounter_{1};

    T* pointer_;
    UseCount* counter_;
};

template <typename T>
using SharedPtr = SharedHolder<T, DefaultPtrDeleter<T>>;

template <typename T>
using SharedArray = SharedHolder<T, DefaultArrayDeleter<T>>;

}  // namespace KZ
