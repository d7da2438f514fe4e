#include <iostream>

#include "FuzzTarget.h"

// Refusals are the ordinary case here, and their messages would only cost time.

extern "C" int __android_log_print(int, const char*, const char*, ...) {
    return 0;
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    std::cout.setstate(std::ios::failbit);
    std::cerr.setstate(std::ios::failbit);
    return 0;
}
