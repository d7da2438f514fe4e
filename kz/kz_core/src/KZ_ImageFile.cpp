#include "KZ_ImageFile.h"

#include <fstream>
#include <sstream>

#include "KZ_Check.h"
#include "KZ_FileUtils.h"

namespace KZ {

namespace {

struct Format {
    const char* extension;
    std::string (*write)(const Image&);
    Image (*read)(const std::string&);
};

const Format FORMATS[] = {
    {".pgm", toPgm, fromPnm},
    {".ppm", toPpm, fromPnm},
    {".txt", toText, fromText},
};

const Format& formatOf(const std::string& path) {
    const std::string extension = getFileExtention(path);
    for (const Format& format : FORMATS)
        if (extension == format.extension) return format;
    KZ_ASSERT(0, "unknown image file extension: " << path);
    return FORMATS[0];
}

}  // namespace

void Image::save(const std::string& path) const {
    checkForCreation(*this);
    const std::string bytes = formatOf(path).write(*this);
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    KZ_ASSERT(!file.fail(), "cannot write image file " << path);
}

void Image::load(const std::string& path) {
    const Format& format = formatOf(path);
    std::ifstream file(path, std::ios::binary);
    KZ_ASSERT(file.is_open(), "cannot read image file " << path);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    *this = format.read(bytes.str());
}

}  // namespace KZ
