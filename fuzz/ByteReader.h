#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz {

/// Decodes choices and texts from an input. Behind its end everything is 0 or empty.
class ByteReader {
public:
    ByteReader(const uint8_t* data, size_t size) : data_(data), size_(size) {}

    bool empty() const { return position_ == size_; }
    uint8_t next() { return empty() ? uint8_t{0} : data_[position_++]; }

    template <typename T, size_t count>
    const T& pick(const T (&table)[count]) {
        return table[next() % count];
    }

    /// A text without zero bytes, of at most as many bytes as its first byte says.
    std::string text() {
        const size_t length = std::min<size_t>(next(), size_ - position_);
        std::string result(reinterpret_cast<const char*>(data_) + position_, length);
        position_ += length;
        return result.c_str();
    }

private:
    const uint8_t* data_;
    size_t size_;
    size_t position_ = 0;
};

}  // namespace fuzz
