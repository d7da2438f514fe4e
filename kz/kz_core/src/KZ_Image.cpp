#include "KZ_Image.h"

#include <cstring>
#include <limits>
#include <new>

#include "KZ_Check.h"
#include "KZ_Limits.h"

namespace KZ {

namespace {

size_t rowBytes(const Image& image) {
    return static_cast<size_t>(image.width()) * static_cast<size_t>(image.depth());
}

// Bytes of tight rows; sizes that do not fit a signed 32-bit number count as out of memory.
size_t allocationSize(const Size& size, unsigned int depth) {
    const int64_t limit = std::numeric_limits<int32_t>::max();
    if (size.width < 0 || size.height < 0) throw std::bad_alloc();
    const int64_t row = static_cast<int64_t>(size.width) * depth;
    if (row > limit || row * size.height > limit) throw std::bad_alloc();
    return static_cast<size_t>(row * size.height);
}

// Foreign rows need not be aligned for floats.
float floatAt(const unsigned char* p) {
    float value;
    std::memcpy(&value, p, sizeof(value));
    return value;
}

bool equalFloats(const unsigned char* a, const unsigned char* b, size_t count) {
    for (size_t i = 0; i < count; ++i)
        if (!equal(floatAt(a + 4 * i), floatAt(b + 4 * i))) return false;
    return true;
}

}  // namespace

Image& Image::operator=(const Image& source) {
    if (this != &source) copyFrom(source);
    return *this;
}

void Image::copyFrom(const Image& source) {
    // A header that stands without pixels is what running out of memory left: nothing to copy.
    if (!source.isCreated() || !source.data_) {
        reset();
        return;
    }
    create(source.size_, source.colorMode_);
    const size_t bytes = rowBytes(source);
    if (bytes == 0) return;
    // The two may be views of the same rows.
    for (int y = 0; y < height(); ++y) std::memmove(data(0, y), source.data(0, y), bytes);
}

void Image::create(const Size& size, ColorMode mode) {
    // Where memory ran out, a header stands without pixels: it is not the image asked for.
    const bool isWhole = data_ || !isCreated();
    if (size_ == size && colorMode_ == mode && isWhole) return;
    createHeader(size, mode);
    buffer_ = SharedArray<unsigned char>(new unsigned char[allocationSize(size_, depth_)]);
    data_ = buffer_.get();
}

void Image::createHeader(const Size& size, ColorMode mode) {
    const unsigned int pixelDepth = KZ::depth(mode);
    size_ = size;
    colorMode_ = mode;
    depth_ = pixelDepth;
    stripLength_ = static_cast<uint32_t>(size_.width) * depth_;
    data_ = nullptr;
    buffer_.reset();
}

void Image::createRef(const Image& image) {
    createRef(image, image.rect());
}

void Image::createRef(const Image& image, const Rect& rect) {
    KZ_ASSERT(image.isCreated(), "createRef: source image not created");
    KZ_CHECK_CONTAINS(image.rect(), rect);
    KZ_ASSERT(rect.area(), "empty rect: " << rect);
    // Kept aside, for the source may be this very image.
    const SharedArray<unsigned char> buffer = image.buffer_;
    const uint32_t stripLength = image.stripLength_;
    unsigned char* const corner = image.data_ + image.offset(rect.left, rect.top);
    createHeader(rect.size(), image.colorMode_);
    stripLength_ = stripLength;
    data_ = corner;
    buffer_ = buffer;
}

void Image::createRef(unsigned char* data, const Size& size, ColorMode mode) {
    createHeader(size, mode);
    data_ = data;
}

void Image::createRef(unsigned char* data, const Size& size, ColorMode mode,
                      unsigned int stripLength) {
    createRef(data, size, mode);
    stripLength_ = stripLength;
}

void Image::reset() {
    size_ = Size();
    colorMode_ = COLOR_MODE_UNDEFINED;
    stripLength_ = 0;
    depth_ = 0;
    data_ = nullptr;
    buffer_.reset();
}

bool Image::operator==(const Image& other) const {
    if (colorMode_ != other.colorMode_ || size_ != other.size_) return false;
    const size_t bytes = rowBytes(*this);
    if (bytes == 0) return true;
    const bool tolerant = colorMode_ == COLOR_MODE_FLOAT || colorMode_ == COLOR_MODE_FLOAT2;
    for (int y = 0; y < height(); ++y) {
        const unsigned char* a = data(0, y);
        const unsigned char* b = other.data(0, y);
        if (tolerant ? !equalFloats(a, b, bytes / 4) : std::memcmp(a, b, bytes) != 0) return false;
    }
    return true;
}

void zero(Image& image) {
    checkForCreation(image);
    const size_t bytes = rowBytes(image);
    if (bytes == 0) return;
    for (int y = 0; y < image.height(); ++y) std::memset(image.data(0, y), 0, bytes);
}

}  // namespace KZ
