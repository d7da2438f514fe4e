#include <sstream>
#include <string>

#include "AllocationLimit.h"
#include "FuzzTarget.h"
#include "NnDetector.h"

// Network files: what is accepted survives being written and read again and being cloned, can be
// emitted as source, and computes an answer or refuses to.

namespace {

const int LARGEST_SIDE = 64;
const size_t LARGEST_BLOB = 256 << 10;

bool read(const std::string& bytes, NnDetector& network) {
    return fuzz::accepted([&] {
        std::istringstream stream(bytes);
        KZ::ArchiveI archive(stream);
        archive& network;
    });
}

std::string written(const NnDetector& network) {
    std::ostringstream stream;
    KZ::ArchiveO archive(stream);
    archive& network;
    return stream.str();
}

KZ::Image blankImage(const NnDetector& network) {
    KZ::Image image(network.getSize(), network.getInputColorMode());
    zero(image);
    return image;
}

void run(NnDetector& network) {
    const KZ::Size size = network.getSize();
    if (size.width > LARGEST_SIDE || size.height > LARGEST_SIDE) return;
    const fuzz::AllocationLimit limit(LARGEST_BLOB);
    fuzz::accepted([&] {
        network.detect(blankImage(network));
        network.getOutputBlobs();
    });
}

void emit(const NnDetector& network) {
    std::ostringstream stream;
    fuzz::accepted([&] { network.saveToCpp(stream, "network"); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    NnDetector first, second;
    if (!read(std::string(reinterpret_cast<const char*>(data), size), first)) return 0;
    const std::string once = written(first);
    fuzz::require(read(once, second), "a network that was written is refused");
    fuzz::require(written(second) == once, "a network changes when it is written and read");
    fuzz::require(written(first.clone()) == once, "a clone is another network");
    emit(first);
    run(first);
    return 0;
}
