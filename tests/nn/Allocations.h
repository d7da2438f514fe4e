#pragma once

#include <cstddef>

// The test program counts what it asks of operator new.

namespace testing_support {

int allocationCount();
/// The largest request since the test set it to 0.
size_t& largestAllocation();

}  // namespace testing_support
