#include <algorithm>
#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>

#include "KZ_Assert.h"
#include "KZ_ImageCells.h"
#include "KZ_ImageFile.h"

namespace KZ {

namespace {

// As in PNM files. It leaves room for the bytes of a row in an int, whatever the mode.
const uint32_t LARGEST_SIDE = 1 << 24;

// The words of a text, one after the other.
class Words {
public:
    explicit Words(const std::string& text) : text_(text) {}

    std::string next() {
        const char* const BLANKS = " \t\r\n";
        const size_t begin = text_.find_first_not_of(BLANKS, position_);
        KZ_ASSERT(begin != std::string::npos, "image text ends too early");
        position_ = std::min(text_.find_first_of(BLANKS, begin), text_.size());
        return text_.substr(begin, position_ - begin);
    }

    uint32_t nextUnsigned(uint32_t limit) {
        const std::string word = next();
        uint64_t value = 0;
        for (char digit : word) {
            KZ_ASSERT(digit >= '0' && digit <= '9', "not a number in image text: " << word);
            value = value * 10 + static_cast<uint64_t>(digit - '0');
            KZ_ASSERT(value <= limit, "number out of range in image text: " << word);
        }
        return static_cast<uint32_t>(value);
    }

    float nextFloat() {
        const std::string word = next();
        if (word == "nan" || word == "-nan") return std::numeric_limits<float>::quiet_NaN();
        if (word == "inf") return std::numeric_limits<float>::infinity();
        if (word == "-inf") return -std::numeric_limits<float>::infinity();
        std::istringstream stream(word);
        stream.imbue(std::locale::classic());
        float value = 0;
        stream >> value;
        KZ_ASSERT(!stream.fail() && stream.peek() == std::char_traits<char>::eof(),
                  "not a number in image text: " << word);
        return value;
    }

    /// Characters not yet read.
    size_t left() const { return text_.size() - position_; }

private:
    const std::string& text_;
    size_t position_ = 0;
};

ColorMode modeOfName(const std::string& name) {
    for (int mode = COLOR_MODE_MONO; mode < COLOR_MODE_END; ++mode)
        if (name == colorModeName(static_cast<ColorMode>(mode)))
            return static_cast<ColorMode>(mode);
    KZ_ASSERT(0, "unknown color mode in image text: " << name);
    return COLOR_MODE_UNDEFINED;
}

// What can be read can be shown: of other than colours, a PGM has the components side by side.
uint32_t largestWidth(ColorMode mode) {
    if (isColor(mode)) return LARGEST_SIDE;
    return LARGEST_SIDE * static_cast<uint32_t>(cellBytes(cellType(mode))) / depth(mode);
}

void readCell(Words& words, CellType type, unsigned char* cell) {
    switch (type) {
        case CellType::UINT8:
            *cell = static_cast<unsigned char>(words.nextUnsigned(255));
            return;
        case CellType::UINT16: {
            const uint16_t value = static_cast<uint16_t>(words.nextUnsigned(65535));
            std::memcpy(cell, &value, sizeof(value));
            return;
        }
        case CellType::UINT32: {
            const uint32_t value = words.nextUnsigned(std::numeric_limits<uint32_t>::max());
            std::memcpy(cell, &value, sizeof(value));
            return;
        }
        case CellType::FLOAT32: {
            const float value = words.nextFloat();
            std::memcpy(cell, &value, sizeof(value));
            return;
        }
    }
}

}  // namespace

std::string toText(const Image& image) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    // Enough digits to bring back every float and every 32-bit number.
    stream << std::setprecision(10) << "Image " << colorModeName(image.colorMode()) << " "
           << image.width() << " " << image.height() << "\n";
    const CellType type = cellType(image.colorMode());
    const int cells = image.width() * cellsPerPixel(image);
    for (int y = 0; y < image.height(); ++y) {
        for (int i = 0; i < cells; ++i)
            stream << (i > 0 ? " " : "") << cellNumber(image.data(0, y), type, i);
        stream << "\n";
    }
    return stream.str();
}

Image fromText(const std::string& text) {
    Words words(text);
    const std::string head = words.next();
    KZ_ASSERT(head == "Image", "not an image text: " << head.substr(0, 20));
    const ColorMode mode = modeOfName(words.next());
    const int width = static_cast<int>(words.nextUnsigned(largestWidth(mode)));
    const int height = static_cast<int>(words.nextUnsigned(LARGEST_SIDE));
    // Every number takes a digit and a blank before it, so what is left bounds the pixels.
    const int64_t pixels = static_cast<int64_t>(width) * height;
    KZ_ASSERT(pixels <= static_cast<int64_t>(words.left()), "image text ends too early");
    Image image(Size(width, height), mode);
    const CellType type = cellType(mode);
    const int cells = width * cellsPerPixel(image);
    for (int y = 0; y < height; ++y)
        for (int i = 0; i < cells; ++i)
            readCell(words, type, image.data(0, y) + i * cellBytes(type));
    return image;
}

}  // namespace KZ
