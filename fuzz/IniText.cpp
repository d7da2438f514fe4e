#include <sstream>
#include <string>

#include "FuzzTarget.h"
#include "KZ_IniParser.h"

// INI files: what was taken in, also from a file that breaks off at a bad line, is loaded again
// from what `save` writes.

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::istringstream text(std::string(reinterpret_cast<const char*>(data), size));
    KZ::IniParser first;
    first.load(text);
    std::stringstream once, twice;
    fuzz::require(first.save(once), "cannot save");

    KZ::IniParser second;
    fuzz::require(second.load(once), "a file that was saved is refused");
    fuzz::require(second.getAllKeys() == first.getAllKeys(), "the keys change");
    // A slash in a section's name hides its keys: full keys are cut at their first one.
    for (const std::string& key : first.getAllKeys())
        if (first.hasKey(key))
            fuzz::require(second.getKey(key) == first.getKey(key), "a value changes");
    second.save(twice);
    fuzz::require(twice.str() == once.str(), "the text changes");
    return 0;
}
