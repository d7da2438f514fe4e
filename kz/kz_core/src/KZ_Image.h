#pragma once

#include <cstdint>
#include <istream>
#include <ostream>
#include <string>

#include "KZ_BasePoint.h"
#include "KZ_BaseRect.h"
#include "KZ_BaseSize.h"
#include "KZ_ColorMode.h"
#include "KZ_SharedPtr.h"

namespace KZ {

/// The one raster type: a header (size, mode, row pitch, pixel pointer) beside a reference-counted
/// buffer. Copy and assignment are deep; sharing comes from `createRef` alone. An image of foreign
/// memory does not keep that memory alive.
class Image {
public:
    Image() = default;
    Image(const Size& size, ColorMode mode) { create(size, mode); }
    Image(const Image& source) { copyFrom(source); }
    Image& operator=(const Image& source);

    int width() const { return size_.width; }
    int height() const { return size_.height; }
    const Size& size() const { return size_; }
    Rect rect() const { return Rect(size_); }
    ColorMode colorMode() const { return colorMode_; }
    /// Bytes a pixel.
    int depth() const { return static_cast<int>(depth_); }
    /// Bytes from one row's start to the next row's.
    int stripLength() const { return static_cast<int>(stripLength_); }
    bool isCreated() const { return colorMode_ != COLOR_MODE_UNDEFINED; }

    unsigned char* data() { return data_; }
    const unsigned char* data() const { return data_; }
    unsigned char* data(int x, int y) { return data_ + offset(x, y); }
    const unsigned char* data(int x, int y) const { return data_ + offset(x, y); }
    /// First pixel of row `y` as cells of type T.
    template <typename T>
    T* row(int y) {
        return reinterpret_cast<T*>(data(0, y));
    }
    template <typename T>
    const T* row(int y) const {
        return reinterpret_cast<const T*>(data(0, y));
    }

    /// Allocates tight, uninitialised rows, unless size and mode are already those: then the image
    /// stays as it is, also when it is a view. A size of more than 2^31 - 1 bytes or with a
    /// negative side is `std::bad_alloc`, after which the header stands and `data()` is null.
    void create(const Size& size, ColorMode mode);
    /// A deep copy; into the memory at hand when size and mode agree.
    void create(const Image& source) { copyFrom(source); }
    /// The header alone: no pixels.
    void createHeader(const Size& size, ColorMode mode);
    /// A view of `image`, or of a non-empty rectangle inside it, on the same buffer and with the
    /// same pitch. A rectangle of the image itself narrows it.
    void createRef(const Image& image);
    void createRef(const Image& image, const Rect& rect);
    /// A header over memory of the caller's; the pitch is tight unless given, in bytes.
    void createRef(unsigned char* data, const Size& size, ColorMode mode);
    void createRef(unsigned char* data, const Size& size, ColorMode mode, unsigned int stripLength);
    /// Back to "not created".
    void reset();

    /// Equal mode, size and pixels; FLOAT and FLOAT2 within a relative 1e-6. Padding does not
    /// count.
    bool operator==(const Image& other) const;
    bool operator!=(const Image& other) const { return !(*this == other); }

    /// Writes the image to `path` in a form chosen by the extension; see KZ_ImageFile.h. An unknown
    /// extension, an image not created and a file that cannot be written are assertions.
    void save(const std::string& path) const;
    /// Reads what `save` wrote. A file that cannot be read or is malformed is an assertion and
    /// leaves the image as it was.
    void load(const std::string& path);

    // Sub-pixel access. Names with 256 take fixed point with eight fractional bits. The neighbours
    // to the right and below are read without a check of bounds.
    int fractionalValueMono(int x256, int y256) const;
    /// Leaves out cells of 0 and of 5000 and more; 0 when they make up more than half.
    int fractionalValueDepth(int x256, int y256) const;
    /// 16.16 value of a MONO or DEPTH image.
    int fractionalValue256(int x256, int y256) const;
    int fractionalPixel256(int x256, int y256) const {
        return fractionalValue256(x256, y256) >> 16;
    }
    int fractionalPixel(float x, float y) const;
    int fractionalPixel(const PointF& p) const { return fractionalPixel(p.x, p.y); }
    float fractionalPixelFloat(float x, float y) const;
    float fractionalPixelFloat(const PointF& p) const { return fractionalPixelFloat(p.x, p.y); }
    /// Writes the channels of a MONO, BGR, RGB, YUV or DEPTH pixel to `out`.
    void fractionalPixel256(int x256, int y256, unsigned char* out) const;
    void fractionalPixel(float x, float y, unsigned char* out) const;

private:
    int64_t offset(int x, int y) const {
        return static_cast<int64_t>(y) * stripLength_ + static_cast<int64_t>(x) * depth_;
    }
    void copyFrom(const Image& source);

    Size size_;
    ColorMode colorMode_ = COLOR_MODE_UNDEFINED;
    uint32_t stripLength_ = 0;
    uint32_t depth_ = 0;
    unsigned char* data_ = nullptr;
    SharedArray<unsigned char> buffer_;
};

/// Sets every pixel to 0 and leaves what lies between rows alone.
void zero(Image& image);

/// Size, mode and one line of numbers a row.
std::ostream& operator<<(std::ostream& stream, const Image& image);
/// Always an assertion: there is no text form to read.
std::istream& operator>>(std::istream& stream, Image& image);

inline int Image::fractionalValueMono(int x, int y) const {
    const unsigned char* p = data(x >> 8, y >> 8);
    const int fx = x - 256 * (x / 256);
    const int fy = y - 256 * (y / 256);
    const int above = (256 - fx) * p[0] + fx * p[1];
    const int below = (256 - fx) * p[stripLength_] + fx * p[stripLength_ + 1];
    return above * (256 - fy) + below * fy;
}

}  // namespace KZ
