#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

#include "KZ_Check.h"
#include "KZ_ColorConversion.h"
#include "KZ_ImageCells.h"
#include "KZ_ImageFile.h"
#include "KZ_PixelRows.h"

// Binary grey maps ("P5") and colour maps ("P6").

namespace KZ {

namespace {

std::string header(const char* magic, const Image& image, int maxValue) {
    std::ostringstream stream;
    stream << magic << "\n" << image.width() << " " << image.height() << "\n" << maxValue << "\n";
    return stream.str();
}

struct Range {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
};

// The range of the finite values of component `c`.
Range rangeOf(const Image& image, int c) {
    const CellType type = cellType(image.colorMode());
    Range range;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const double value = cellNumber(image.data(x, y), type, c);
            if (!std::isfinite(value)) continue;
            range.low = std::min(range.low, value);
            range.high = std::max(range.high, value);
        }
    return range;
}

// `value` stretched so that the range becomes 0 to 255; infinities take the ends, a NaN black.
unsigned char stretched(double value, const Range& range) {
    if (std::isnan(value) || value <= range.low) return 0;
    if (value >= range.high) return 255;
    return static_cast<unsigned char>((value - range.low) * 255.0 / (range.high - range.low) + 0.5);
}

// One grey picture a component, side by side.
Image shownComponents(const Image& image) {
    const CellType type = cellType(image.colorMode());
    const int components = cellsPerPixel(image), width = image.width();
    Image shown(Size(width * components, image.height()), COLOR_MODE_MONO);
    for (int c = 0; c < components; ++c) {
        const Range range = rangeOf(image, c);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < width; ++x)
                *shown.data(c * width + x, y) =
                    stretched(cellNumber(image.data(x, y), type, c), range);
    }
    return shown;
}

// A MONO image of what `image` shows.
Image greyImage(const Image& image) {
    Image grey;
    switch (image.colorMode()) {
        case COLOR_MODE_MONO:
        case COLOR_MODE_BGR:
        case COLOR_MODE_RGB:
        case COLOR_MODE_YUV:
        case COLOR_MODE_RGBA:
            toMono(image, grey);
            return grey;
        case COLOR_MODE_MONO16:
            mono16ToMono(image, grey, 1 / 256.0f);
            return grey;
        case COLOR_MODE_RMCT:
            grey.create(image.size(), COLOR_MODE_MONO);
            mapCells<unsigned char, unsigned char>(image, grey, image.rect(),
                                                   [](unsigned char code) { return code; });
            return grey;
        default:
            return shownComponents(image);
    }
}

void appendRows(std::string& bytes, const Image& image) {
    const size_t rowBytes = static_cast<size_t>(image.width()) * static_cast<size_t>(image.depth());
    for (int y = 0; y < image.height(); ++y)
        bytes.append(reinterpret_cast<const char*>(image.data(0, y)), rowBytes);
}

std::string toPgm16(const Image& image) {
    std::string bytes = header("P5", image, 65535);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const uint16_t value = cellAt<uint16_t>(image.data(x, y), 0);
            bytes += static_cast<char>(value >> 8);
            bytes += static_cast<char>(value & 255);
        }
    return bytes;
}

// No header holds a greater one; sides below it leave room for the bytes of a row in an int.
const int LARGEST_NUMBER = 1 << 24;

struct PnmHeader {
    bool color;
    int width, height, maxValue;
    size_t raster;  // where the pixels begin
};

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// The number after blanks and comments at `position`, which moves behind it.
int headerNumber(const std::string& bytes, size_t& position) {
    while (position < bytes.size() && (isBlank(bytes[position]) || bytes[position] == '#')) {
        if (bytes[position] == '#')
            position = std::min(bytes.find('\n', position), bytes.size());
        else
            ++position;
    }
    const size_t begin = position;
    int64_t value = 0;
    while (position < bytes.size() && bytes[position] >= '0' && bytes[position] <= '9') {
        value = value * 10 + (bytes[position++] - '0');
        KZ_ASSERT(value <= LARGEST_NUMBER, "number out of range in image header");
    }
    KZ_ASSERT(position > begin, "number expected in image header");
    return static_cast<int>(value);
}

PnmHeader readHeader(const std::string& bytes) {
    const std::string magic = bytes.substr(0, 2);
    KZ_ASSERT(magic == "P5" || magic == "P6", "not a binary PGM or PPM file");
    PnmHeader head;
    head.color = magic == "P6";
    size_t position = 2;
    head.width = headerNumber(bytes, position);
    head.height = headerNumber(bytes, position);
    head.maxValue = headerNumber(bytes, position);
    KZ_ASSERT(head.maxValue >= 1 && head.maxValue <= (head.color ? 255 : 65535),
              "unsupported largest value in image header: " << head.maxValue);
    KZ_ASSERT(position < bytes.size() && isBlank(bytes[position]), "malformed image header");
    head.raster = position + 1;
    const int64_t pixels = static_cast<int64_t>(head.width) * head.height;
    const int64_t left = static_cast<int64_t>(bytes.size() - head.raster);
    const int pixelBytes = head.color ? 3 : head.maxValue > 255 ? 2 : 1;
    KZ_ASSERT(pixels <= left / pixelBytes, "image file ends too early");
    return head;
}

Image readGrey16(const PnmHeader& head, const unsigned char* raster) {
    Image image(Size(head.width, head.height), COLOR_MODE_MONO16);
    for (int y = 0; y < head.height; ++y) {
        uint16_t* row = image.row<uint16_t>(y);
        for (int x = 0; x < head.width; ++x, raster += 2)
            row[x] = static_cast<uint16_t>(raster[0] << 8 | raster[1]);
    }
    return image;
}

}  // namespace

std::string toPgm(const Image& image) {
    checkForCreation(image);
    if (image.colorMode() == COLOR_MODE_MONO16 || image.colorMode() == COLOR_MODE_DEPTH)
        return toPgm16(image);
    const Image grey = greyImage(image);
    std::string bytes = header("P5", grey, 255);
    appendRows(bytes, grey);
    return bytes;
}

std::string toPpm(const Image& image) {
    checkForCreation(image);
    Image bgr, rgb;
    if (isColor(image.colorMode()) || image.colorMode() == COLOR_MODE_DEPTH) {
        toBgr(image, bgr);
    } else {
        monoToBgr(greyImage(image), bgr);
    }
    bgrToRgb(bgr, rgb);
    std::string bytes = header("P6", rgb, 255);
    appendRows(bytes, rgb);
    return bytes;
}

Image fromPnm(const std::string& bytes) {
    const PnmHeader head = readHeader(bytes);
    const unsigned char* raster =
        reinterpret_cast<const unsigned char*>(bytes.data()) + head.raster;
    if (head.maxValue > 255) return readGrey16(head, raster);

    Image image(Size(head.width, head.height), head.color ? COLOR_MODE_RGB : COLOR_MODE_MONO);
    const int rowBytes = head.width * image.depth();
    for (int y = 0; y < head.height; ++y, raster += rowBytes) {
        unsigned char* row = image.data(0, y);
        for (int i = 0; i < rowBytes; ++i)
            row[i] = static_cast<unsigned char>(std::min(raster[i] * 255 / head.maxValue, 255));
    }
    if (!head.color) return image;
    Image bgr;
    rgbToBgr(image, bgr);
    return bgr;
}

}  // namespace KZ
