#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "ClassifierRing.h"
#include "DetectorData.h"
#include "DetectorResult.h"
#include "FuzzTarget.h"
#include "PatternDetector.h"

// Files of classifier rings: what is accepted survives being saved and loaded again, and scans a
// small picture.

namespace {

// Grouping takes the square of the hits, and a ring from anywhere may hit at every window.
const int MOST_CASCADES = 2;
const int LARGEST_SIDE = 140;  // more than the places of RMCT classifiers reach

/// A file name of this process that ends in ".ring"; the file goes with the object.
class RingPath {
public:
    RingPath()
        : path_((std::filesystem::temp_directory_path() /
                 ("fuzz_" + std::to_string(getpid()) + ".ring"))
                    .string()) {}
    ~RingPath() { std::remove(path_.c_str()); }
    const std::string& name() const { return path_; }

    void write(const uint8_t* data, size_t size) const {
        std::ofstream file(path_, std::ios::binary);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
        file.close();
        fuzz::require(!file.fail(), "cannot write the temporary file");
    }

    std::string bytes() const {
        std::ifstream file(path_, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }

private:
    std::string path_;
};

// A side that a few windows of the smallest cascade fit into, whichever way they are turned.
int pictureSide(ClassifierRing& ring) {
    int side = ring.getNumClassifiers() > 0 ? LARGEST_SIDE : 20;
    for (int i = 0; i < ring.getNumClassifiers(); ++i) {
        const KZ::Size& window = ring.baseClassifier(i).monoSize;
        const int longest = std::max(window.width, window.height);
        side = std::min(side, longest + (longest < 32 ? 8 : 2));
    }
    return side;
}

KZ::Image noisePicture(int side) {
    KZ::Image picture(KZ::Size(side, side - 1), KZ::COLOR_MODE_MONO);
    uint32_t state = 1;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            state = state * 1664525 + 1013904223;
            *picture.data(x, y) = static_cast<unsigned char>(state >> 24);
        }
    return picture;
}

void checkRoundTrip(ClassifierRing& ring, const RingPath& path) {
    ring.log.clear();  // found again only behind a line that `save` does not write
    ring.save(path.name());
    const std::string once = path.bytes();
    const ClassifierRing again(path.name());
    again.save(path.name());
    fuzz::require(path.bytes() == once, "a ring changes when it is saved and loaded");
}

void scan(ClassifierRing& ring) {
    if (ring.getNumClassifiers() > MOST_CASCADES) return;
    const KZ::Image picture = noisePicture(pictureSide(ring));
    DetectorData data;
    data.setPyramidParameters(1, 3);
    const KZ::DetectRegion region(picture.rect(), KZ::RangeF(), KZ::AngleRange(), KZ::Side::BOTH);
    DetectorResult result;
    const auto detector = ring.getDetector(KZ::AngleRange(), KZ::Side::BOTH, 1);
    const auto cascades = [&] { return ring.getClassifiers(KZ::AngleRange(), KZ::Side::BOTH); };
    // Of several, the nearest is turned, even into a pose that only another's window has.
    fuzz::require(ring.getNumClassifiers() != 1 || cascades() == cascades(),
                  "a cascade that was made is not found");
    detector->getDataRoi(data, region);
    data.compute(picture, picture.rect());
    detector->detect(data, region, result);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const RingPath path;
    path.write(data, size);
    fuzz::accepted([] {
        ClassifierRing ring(path.name());
        checkRoundTrip(ring, path);
        scan(ring);
    });
    return 0;
}
