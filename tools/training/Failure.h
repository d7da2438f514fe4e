#pragma once

#include <stdexcept>

namespace training {

/// The work cannot go on: one line that says where, what is wrong and what to do.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace training
