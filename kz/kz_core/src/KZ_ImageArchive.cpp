#include "KZ_ImageArchive.h"

#include <algorithm>

namespace KZ {

namespace {

unsigned int rowBytes(const Image& image) {
    return static_cast<unsigned int>(image.width()) * static_cast<unsigned int>(image.depth());
}

}  // namespace

ArchiveO& operator&(ArchiveO& archive, const Image& image) {
    archive& image.size() & static_cast<int>(image.colorMode());
    const unsigned int bytes = rowBytes(image);
    for (int y = 0; y < image.height() && bytes != 0; ++y)
        archive.write(reinterpret_cast<const char*>(image.data(0, y)), bytes);
    return archive;
}

ArchiveI& operator&(ArchiveI& archive, Image& image) {
    Size size;
    int mode = COLOR_MODE_UNDEFINED;
    archive& size& mode;
    std::istream& stream_ = archive;
    KZ_ASSERT(size.width >= 0 && size.height >= 0, "wrong image size " << size);
    KZ_ASSERT(mode >= 0 && mode < COLOR_MODE_END, "wrong color mode " << mode);
    const ColorMode colorMode = static_cast<ColorMode>(mode);
    requireBytes(stream_, static_cast<uint64_t>(size.width) * static_cast<uint64_t>(size.height),
                 std::max(depth(colorMode), 1u));

    image.create(size, colorMode);
    const unsigned int bytes = rowBytes(image);
    for (int y = 0; y < image.height() && bytes != 0; ++y)
        archive.read(reinterpret_cast<char*>(image.data(0, y)), bytes);
    return archive;
}

}  // namespace KZ
