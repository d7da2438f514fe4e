#include <iomanip>

#include "KZ_Assert.h"
#include "KZ_ImageCells.h"

namespace KZ {

namespace {

void writePixel(std::ostream& stream, const unsigned char* pixel, ColorMode mode, int depth) {
    switch (mode) {
        case COLOR_MODE_MONO16:
        case COLOR_MODE_DEPTH:
            stream << std::setw(5) << cellAt<uint16_t>(pixel, 0);
            break;
        case COLOR_MODE_INTEGRAL:
        case COLOR_MODE_INTEGRAL_HOG_UNSIGNED6:
        case COLOR_MODE_INTEGRAL_HOG_SIGNED12:
            for (int i = 0; i < depth / 4; ++i)
                stream << std::setw(10) << cellAt<uint32_t>(pixel, i) << ", ";
            break;
        case COLOR_MODE_FLOAT:
            stream << std::setprecision(8) << cellAt<float>(pixel, 0);
            break;
        case COLOR_MODE_FLOAT2:
            for (int i = 0; i < 2; ++i) stream << std::setw(5) << cellAt<float>(pixel, i);
            break;
        case COLOR_MODE_USHORT2:
            for (int i = 0; i < 2; ++i) stream << std::setw(5) << cellAt<uint16_t>(pixel, i);
            break;
        default:
            for (int i = 0; i < depth; ++i) stream << std::setw(3) << +pixel[i];
    }
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Image& image) {
    stream << "Image(" << image.size() << ", " << colorModeName(image.colorMode());
    if (!image.isCreated()) return stream << ")";
    const std::streamsize precision = stream.precision();
    stream << ", \ndata =\n";
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            writePixel(stream, image.data(x, y), image.colorMode(), image.depth());
        stream << "\n";
    }
    stream.precision(precision);
    return stream;
}

std::istream& operator>>(std::istream& stream, Image&) {
    KZ_ASSERT(0, "loading images from stream is not implemented");
    return stream;
}

}  // namespace KZ
