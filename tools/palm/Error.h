#pragma once

#include <stdexcept>
#include <string>

namespace palm {

/// What the user gave cannot be used: one line that says what is wrong and what to do.
struct InputError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The work failed though the input was right, such as a full disk.
struct WorkError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace palm
