#pragma once

#include <cstddef>

namespace fuzz {

/// While it lives, a larger request of `operator new` throws std::bad_alloc: a few bytes of input
/// can ask for blobs whose computation takes minutes.
class AllocationLimit {
public:
    explicit AllocationLimit(size_t bytes);
    ~AllocationLimit();
    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;
};

}  // namespace fuzz
