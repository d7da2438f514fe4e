#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "KZ_Archive.h"
#include "KZ_Image.h"
#include "KZ_SharedPtr.h"

namespace KZ {

/// A four-dimensional array of floats (num, channels, height, width), width fastest. A cheap
/// handle: copies share the memory, and there is no copy on write. A blob can wrap a constant table
/// that it does not own.
class Blob {
public:
    Blob() = default;
    Blob(const Blob&) = default;
    Blob(int num, int channels, int height, int width) { init(num, channels, height, width); }
    /// Shares the other's memory. Assigning a blob to itself is an assertion.
    Blob& operator=(const Blob& blob);

    /// Brings the blob to a shape. Contents and sharing stay when the number of elements does;
    /// otherwise new, uninitialised memory is taken. 2^30 elements and more are `std::bad_alloc`.
    void init(int num, int channels, int height, int width);
    /// Shares `memory`, which must hold as many elements as the shape says.
    void init(int num, int channels, int height, int width, const SharedArray<float>& memory);
    /// Wraps a table that must outlive the blob and is never written or freed through it.
    void init(int num, int channels, int height, int width, const float* table);
    void reset();

    int num() const { return num_; }
    int channels() const { return channels_; }
    int height() const { return height_; }
    int width() const { return width_; }
    int size() const {
        // Unsigned: an empty blob may have sides of any length.
        return static_cast<int>(
            static_cast<unsigned int>(num_) * static_cast<unsigned int>(channels_) *
            static_cast<unsigned int>(height_) * static_cast<unsigned int>(width_));
    }
    int area() const { return height_ * width_; }
    int volume() const { return channels_ * height_ * width_; }
    int offset(int n, int c, int h, int w) const {
        return ((n * channels_ + c) * height_ + h) * width_ + w;
    }
    float* data() { return data_; }
    const float* data() const { return data_; }
    /// Unchecked.
    float* data(int n, int c, int h, int w) { return data_ + offset(n, c, h, w); }
    const float* data(int n, int c, int h, int w) const { return data_ + offset(n, c, h, w); }
    const SharedArray<float>& getMemory() const { return memory_; }

    /// Equal shapes and equal elements, byte for byte.
    bool operator==(const Blob& blob) const;
    bool operator!=(const Blob& blob) const { return !(*this == blob); }
    /// A copy of all elements.
    operator std::vector<float>() const;
    /// "num x channels x height x width".
    std::string shape() const;

    void setValue(float value);
    /// Elements of a magnitude below `threshold` become 0.
    void zeroSmallValues(float threshold);
    /// Elements below `threshold`, negative ones included, become 0.
    void zeroSmallerValues(float threshold);

    /// Item `num` of a planar blob of `maxNum` items from an image of 8-bit channels, scaled by
    /// 1/256.
    static void convert(const Image& image, Blob& blob, int num, int maxNum);
    /// A blob of (1, size of the vector, 1, 1).
    static void convert(const std::vector<float>& values, Blob& blob);
    /// One plane as a picture: MONO (128 + 20 v, clamped) or FLOAT (the values). Other modes are an
    /// assertion.
    static void convert(const Blob& blob, Image& image, int num, int channel, ColorMode colorMode);

    /// Writes a function `name` that returns a static blob over a constant table.
    void saveToCpp(std::ostream& stream, const std::string& name) const;
    /// Logs how many elements, times `multiplier`, round to each whole number.
    void printDistribution(float multiplier) const;

private:
    float* data_ = nullptr;
    int num_ = 0;
    int channels_ = 0;
    int height_ = 0;
    int width_ = 0;
    SharedArray<float> memory_;
};

/// Decimal text that reads back as the same finite value: six digits where they do, else nine.
std::string floatText(float value);
/// The same as a float literal of generated source.
std::string floatLiteral(float value);

/// Text dump. A text that is not one is an assertion.
std::ostream& operator<<(std::ostream& stream, const Blob& blob);
std::istream& operator>>(std::istream& stream, Blob& blob);

/// Four 4-byte dimensions, then the elements. A blob that was read owns its memory; elements of a
/// magnitude below 1e-10 become 0.
ArchiveO& operator&(ArchiveO& archive, const Blob& blob);
ArchiveI& operator&(ArchiveI& archive, Blob& blob);

}  // namespace KZ
