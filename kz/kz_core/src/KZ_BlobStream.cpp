#include <algorithm>
#include <cmath>
#include <cstdint>
#include <sstream>

#include "KZ_Assert.h"
#include "KZ_Blob.h"

namespace KZ {

namespace {

// Smaller weights only cost time: vector units may flush them anyway.
const float SMALLEST_WEIGHT = 1e-10f;
const int ELEMENTS_A_LINE = 10;
const uint64_t LARGEST_COUNT = uint64_t{1} << 30;

// `expected` stands in the message as the source text of the caller.
#define KZ_READ_WORD(stream, expected)                                               \
    do {                                                                             \
        std::string buffer;                                                          \
        (stream) >> buffer;                                                          \
        KZ_ASSERT((std::string(expected) == buffer) && (std::istream&)(stream),      \
                  "cannot read \"" << (expected) << "\" from \"" << buffer << "\""); \
    } while (0)

// Refuses a shape whose elements the rest of the stream cannot hold, before memory is taken for it.
void requireElements(std::istream& stream, int num, int channels, int height, int width,
                     size_t bytesEach) {
    KZ_ASSERT(stream, "error during parsing stream");
    uint64_t count = 1;  // without the sides of 0, which may stand behind large ones
    bool empty = false;
    for (const int side : {num, channels, height, width}) {
        KZ_ASSERT_GE(side, 0);
        empty = empty || side == 0;
        count *= static_cast<uint64_t>(std::max(side, 1));
        KZ_ASSERT_LT(count, LARGEST_COUNT);
    }
    requireBytes(stream, empty ? 0 : count, bytesEach);
}

std::string toText(float value, int precision) {
    std::ostringstream stream;
    stream.precision(precision);
    stream << value;
    return stream.str();
}

}  // namespace

std::string floatText(float value) {
    const std::string text = toText(value, 6);
    float back = 0;
    std::istringstream(text) >> back;
    return back == value ? text : toText(value, 9);
}

std::string floatLiteral(float value) {
    KZ_ASSERT(std::isfinite(value), "no literal for " << value);
    const std::string text = floatText(value);
    const bool hasPoint = text.find_first_of(".e") != std::string::npos;
    return text + (hasPoint ? "f" : ".f");
}

std::ostream& operator<<(std::ostream& stream, const Blob& blob) {
    stream << "Blob\nnum= " << blob.num() << "\nchannels= " << blob.channels()
           << "\nwidth= " << blob.width() << "\nheight= " << blob.height() << "\n";
    for (int n = 0; n < blob.num(); ++n) {
        stream << "n= " << n << "\n";
        for (int c = 0; c < blob.channels(); ++c) {
            stream << "\tc= " << c << "\n";
            for (int y = 0; y < blob.height(); ++y) {
                stream << "\t\t";
                for (int x = 0; x < blob.width(); ++x) stream << *blob.data(n, c, y, x) << " ";
                stream << "\n";
            }
        }
    }
    return stream;
}

std::istream& operator>>(std::istream& stream, Blob& blob) {
    int num = 0, channels = 0, width = 0, height = 0;
    KZ_READ_WORD(stream, "Blob");
    KZ_READ_WORD(stream, "num=");
    stream >> num;
    KZ_READ_WORD(stream, "channels=");
    stream >> channels;
    KZ_READ_WORD(stream, "width=");
    stream >> width;
    KZ_READ_WORD(stream, "height=");
    stream >> height;
    // Each element takes two characters at least.
    requireElements(stream, num, channels, height, width, 2);
    blob.reset();
    blob.init(num, channels, height, width);
    for (int n = 0; n < num; ++n) {
        KZ_READ_WORD(stream, "n=");
        int bn = -1;
        stream >> bn;
        KZ_ASSERT_EQ(bn, n);
        for (int c = 0; c < channels; ++c) {
            KZ_READ_WORD(stream, "c=");
            int bc = -1;
            stream >> bc;
            KZ_ASSERT_EQ(bc, c);
            for (int i = 0; i < height * width; ++i) stream >> blob.data(n, c, 0, 0)[i];
        }
    }
    KZ_ASSERT(stream, "error during parsing stream");
    return stream;
}

ArchiveO& operator&(ArchiveO& archive, const Blob& blob) {
    archive& blob.num() & blob.channels() & blob.height() & blob.width();
    archive.write(blob.data(), static_cast<unsigned int>(blob.size()));
    return archive;
}

ArchiveI& operator&(ArchiveI& archive, Blob& blob) {
    int num = 0, channels = 0, height = 0, width = 0;
    archive& num& channels& height& width;
    requireElements(archive, num, channels, height, width, sizeof(float));
    // Memory of its own: what the blob held may be a constant table, or another blob's too.
    blob.reset();
    blob.init(num, channels, height, width);
    archive.read(blob.data(), static_cast<unsigned int>(blob.size()));
    blob.zeroSmallValues(SMALLEST_WEIGHT);
    return archive;
}

void Blob::saveToCpp(std::ostream& stream, const std::string& name) const {
    stream << "KZ::Blob& " << name << "()\n{\n";
    stream << "    // num = " << num_ << "\n    // channels = " << channels_
           << "\n    // width = " << width_ << "\n    // height = " << height_ << "\n";
    stream << "    static const float " << name << "_data[] = \n    {\n       ";
    for (int i = 0; i < size(); ++i) {
        stream << floatLiteral(data_[i]) << (i + 1 < size() ? ", " : "");
        if (i % ELEMENTS_A_LINE == ELEMENTS_A_LINE - 1) stream << "\n       ";
    }
    stream << "    };\n    static KZ::Blob blob;\n    blob.init(" << num_ << ", " << channels_
           << ", " << height_ << ", " << width_ << ", " << name
           << "_data);\n    return blob;\n}\n\n";
}

}  // namespace KZ
