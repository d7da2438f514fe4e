#include <string>

#include "FuzzTarget.h"
#include "KZ_ImageFile.h"

// Picture files, by the functions that Image::load hands a file's bytes to: what is accepted comes
// back from the file that is written of it.

namespace {

// Rows without pixels take no byte, so that a short file may have millions of them.
const int MOST_ROWS = 4096;

using Reader = KZ::Image (*)(const std::string&);
using Writer = std::string (*)(const KZ::Image&);

void checkRoundTrip(const KZ::Image& image, Writer write, Reader read) {
    const std::string once = write(image);
    KZ::Image again;
    fuzz::require(fuzz::accepted([&] { again = read(once); }), "a picture written is refused");
    fuzz::require(write(again) == once, "a picture changes when it is written and read");
}

void check(const std::string& bytes, Reader read) {
    KZ::Image image;
    if (!fuzz::accepted([&] { image = read(bytes); }) || !image.isCreated()) return;
    if (image.height() > MOST_ROWS) return;
    checkRoundTrip(image, KZ::toPgm, KZ::fromPnm);
    checkRoundTrip(image, KZ::toPpm, KZ::fromPnm);
    checkRoundTrip(image, KZ::toText, KZ::fromText);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    check(bytes, KZ::fromPnm);
    check(bytes, KZ::fromText);
    return 0;
}
