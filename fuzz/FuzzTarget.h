#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <stdexcept>

// What all targets share. Each defines LLVMFuzzerTestOneInput; libFuzzer calls it with inputs that
// it makes up, ReplayMain.cpp with files.

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
/// Silences the log and the standard streams; called once before the first input.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace fuzz {

/// Runs `call`; false when it refused in one of the documented ways. Any other exception is a
/// finding and goes on.
template <typename Call>
bool accepted(const Call& call) {
    try {
        call();
        return true;
    } catch (const char*) {            // an assertion
    } catch (const std::bad_alloc&) {  // a size beyond the memory
    } catch (const std::length_error&) {
    }
    return false;
}

/// Ends the process as a finding unless `holds`.
inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "finding: %s\n", what);
    std::abort();
}

}  // namespace fuzz
