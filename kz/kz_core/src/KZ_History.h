#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>

#include "KZ_Assert.h"

namespace KZ {

/// A ring of the last `capacity` values. Setting `counter` to 0 empties it.
template <typename T>
class History {
public:
    uint32_t capacity = 0;
    uint32_t counter = 0;  ///< values added since it was empty

    /// Without storage: adding and reading are assertions. So is a ring of capacity 0.
    History() = default;
    explicit History(uint32_t length)
        : capacity(length), data_(length == 0 ? nullptr : new T[length]()) {}
    History(const History& other) : History(other.capacity) {
        counter = other.counter;
        std::copy_n(other.data_.get(), capacity, data_.get());
    }
    History(History&&) = default;
    History& operator=(const History& other) {
        if (this != &other) *this = History(other);
        return *this;
    }
    History& operator=(History&&) = default;

    /// Values that can be read: at most `capacity`.
    uint32_t size() const { return std::min(counter, capacity); }

    void add(const T& value) {
        KZ_ASSERT(data_, "init not called\n");
        data_[counter % capacity] = value;
        ++counter;
    }

    /// The value `number` steps back: 0 is the newest, `size() - 1` the oldest.
    T& element(uint32_t number) { return data_[index(number)]; }
    const T& element(uint32_t number) const { return data_[index(number)]; }

private:
    uint32_t index(uint32_t number) const {
        KZ_ASSERT(data_, "init not called\n");
        KZ_ASSERT(number < size(),
                  "accessing of element out of range : " << number << " >= " << size());
        return (counter - 1 - number) % capacity;
    }

    std::unique_ptr<T[]> data_;
};

}  // namespace KZ
