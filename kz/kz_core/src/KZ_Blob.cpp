#include "KZ_Blob.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <map>
#include <new>
#include <sstream>

#include "KZ_Assert.h"
#include "KZ_Check.h"
#include "KZ_Truncate.h"

namespace KZ {

namespace {

const float PIXEL_SCALE = 0.00390625f;

const int64_t TOO_MANY = int64_t{1} << 30;

// At least TOO_MANY stands for any count that does not fit, whatever the sides multiply to.
int64_t elementCount(int num, int channels, int height, int width) {
    if (num == 0 || channels == 0 || height == 0 || width == 0) return 0;
    int64_t count = 1;
    for (const int side : {num, channels, height, width}) {
        count *= side;
        if (count >= TOO_MANY || count <= -TOO_MANY) return TOO_MANY;
    }
    return count;
}

float* allocate(int64_t count) {
    // As the allocator would fail, but without asking it: checkers of memory take a request for
    // the whole address space as a fault.
    if ((count >> 30) != 0) throw std::bad_alloc();
    return new float[static_cast<size_t>(count)];
}

unsigned char toDisplay(float value) {
    const float shown = 128 + value * 20;
    if (!(shown >= 0)) return 0;
    return shown > 255 ? 255 : static_cast<unsigned char>(shown);
}

int roundHalfAway(float value) {
    const double rounded = value > 0 ? std::floor(value + 0.5) : std::ceil(value - 0.5);
    return truncatedToInt(static_cast<float>(rounded));
}

}  // namespace

Blob& Blob::operator=(const Blob& blob) {
    KZ_ASSERT(this != &blob, "this == &blob");
    num_ = blob.num_;
    channels_ = blob.channels_;
    height_ = blob.height_;
    width_ = blob.width_;
    memory_ = blob.memory_;
    data_ = blob.data_;
    return *this;
}

void Blob::init(int num, int channels, int height, int width) {
    if (num == num_ && channels == channels_ && height == height_ && width == width_) return;
    const int64_t count = elementCount(num, channels, height, width);
    if (count != elementCount(num_, channels_, height_, width_)) {
        reset();
        memory_ = SharedArray<float>(allocate(count));
        data_ = memory_.get();
    }
    num_ = num;
    channels_ = channels;
    height_ = height;
    width_ = width;
}

void Blob::init(int num, int channels, int height, int width, const SharedArray<float>& memory) {
    memory_ = memory;
    data_ = memory_.get();
    num_ = num;
    channels_ = channels;
    height_ = height;
    width_ = width;
}

void Blob::init(int num, int channels, int height, int width, const float* table) {
    init(num, channels, height, width, SharedArray<float>::unowned(const_cast<float*>(table)));
}

void Blob::reset() {
    num_ = channels_ = height_ = width_ = 0;
    memory_.reset();
    data_ = nullptr;
}

bool Blob::operator==(const Blob& blob) const {
    const bool sameShape = num_ == blob.num_ && channels_ == blob.channels_ &&
                           height_ == blob.height_ && width_ == blob.width_;
    if (!sameShape) return false;
    const size_t bytes = static_cast<size_t>(size()) * sizeof(float);
    return bytes == 0 || std::memcmp(data_, blob.data_, bytes) == 0;
}

Blob::operator std::vector<float>() const {
    return std::vector<float>(data_, data_ + size());
}

std::string Blob::shape() const {
    return joined(num_, " x ", channels_, " x ", height_, " x ", width_);
}

void Blob::setValue(float value) {
    std::fill(data_, data_ + size(), value);
}

void Blob::zeroSmallValues(float threshold) {
    const int count = size();
    for (int i = 0; i < count; ++i) data_[i] = std::fabs(data_[i]) < threshold ? 0 : data_[i];
}

void Blob::zeroSmallerValues(float threshold) {
    const int count = size();
    for (int i = 0; i < count; ++i) data_[i] = data_[i] < threshold ? 0 : data_[i];
}

void Blob::convert(const Image& image, Blob& blob, int num, int maxNum) {
    KZ_ASSERT_GT(maxNum, num);
    KZ_ASSERT_GE(num, 0);
    const int depth = image.depth();
    blob.init(maxNum, depth, image.height(), image.width());
    for (int y = 0; y < image.height(); ++y) {
        const unsigned char* row = image.data(0, y);
        for (int c = 0; c < depth; ++c) {
            float* target = blob.data(num, c, y, 0);
            for (int x = 0; x < image.width(); ++x) target[x] = row[x * depth + c] * PIXEL_SCALE;
        }
    }
}

void Blob::convert(const std::vector<float>& values, Blob& blob) {
    blob.init(1, static_cast<int>(values.size()), 1, 1);
    std::copy(values.begin(), values.end(), blob.data());
}

void Blob::convert(const Blob& blob, Image& image, int num, int channel, ColorMode colorMode) {
    KZ_ASSERT_LT(num, blob.num());
    KZ_ASSERT_LT(channel, blob.channels());
    image.create(Size(blob.width(), blob.height()), colorMode);
    const float* plane = blob.data(num, channel, 0, 0);
    if (colorMode == COLOR_MODE_MONO) {
        for (int y = 0; y < blob.height(); ++y) {
            const float* row = plane + y * blob.width();
            unsigned char* target = image.data(0, y);
            for (int x = 0; x < blob.width(); ++x) target[x] = toDisplay(row[x]);
        }
    } else if (colorMode == COLOR_MODE_FLOAT) {
        if (blob.area() > 0) {
            std::memcpy(image.data(), plane, static_cast<size_t>(blob.area()) * sizeof(float));
        }
    } else {
        KZ_ASSERT(0, "Not implemented " << colorModeName(colorMode));
    }
}

void Blob::printDistribution(float multiplier) const {
    std::map<int, int> counts;
    for (int i = 0; i < size(); ++i) ++counts[roundHalfAway(data_[i] * multiplier)];
    std::ostringstream stream;
    stream << "distribution = map[" << counts.size() << "](";
    const char* separator = "";
    for (const auto& entry : counts) {
        stream << separator << entry.first << " = " << entry.second;
        separator = ", ";
    }
    stream << ")";
    writePlainMessage(stream.str());
}

}  // namespace KZ
