#include "KZ_Assert.h"

namespace KZ {

void failAssertion(const char* condition, const char* file, int line, const char* function,
                   const std::string& detail) {
    writeErrorMessage(joined("Assertion `", condition, "` failed in ", file, " line ", line,
                             ", function ", function, ":    \n", detail, "\n"));
    writeErrorMessage("");
    throw static_cast<const char*>("assertion");
}

}  // namespace KZ
