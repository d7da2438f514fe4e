#include "SliceLayer.h"

#include <algorithm>

#include "KZ_Assert.h"
#include "KZ_Limits.h"

SliceLayer::SliceLayer(const std::string& name, int segmentNumber, int numSegments, int axis)
    : BaseLayer(name), segmentNumber_(segmentNumber), numSegments_(numSegments), axis_(axis) {
    KZ_ASSERT_GE(segmentNumber, 0);
    KZ_ASSERT_LT(segmentNumber, numSegments);
    KZ_ASSERT_GE(axis, 0);
    KZ_ASSERT_LT(axis, 4);
}

void SliceLayer::addSlicePoint(int slicePoint, int sliceSize) {
    slicePoint_ = slicePoint;
    sliceSize_ = sliceSize;
    KZ_ASSERT_GE(slicePoint_, 0);
    KZ_ASSERT_NE(sliceSize_, 0);
}

void SliceLayer::allocateBlobMemory(unsigned int size) {
    if (memory_) return;
    memory_ = KZ::SharedArray<float>(new float[size]);
    memorySize_ = size;
}

void SliceLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    switch (axis_) {
        case 0:
            return sliceNum();
        case 1:
            return sliceChannels();
        case 2:
            return sliceHeight();
        case 3:
            return sliceWidth();
        default:
            KZ_ASSERT(0, "Unknown axis " << axis_);
    }
}

SliceLayer::Part SliceLayer::part(int bottomSize) {
    if (numSegments_ != 0) {
        KZ_ASSERT_EQ(bottomSize % numSegments_, 0);
        sliceSize_ = bottomSize / numSegments_;
        slicePoint_ = sliceSize_ * segmentNumber_;
    }
    Part result = {slicePoint_, sliceSize_};
    if (result.size == 0) result.size = bottomSize - slicePoint_;
    if (result.size < 0) result = {bottomSize + result.size, -result.size};
    // A layer from a file may carry anything.
    KZ_ASSERT_GE(result.begin, 0);
    KZ_ASSERT_GT(result.size, 0);
    KZ_ASSERT_GE(bottomSize - result.begin, result.size);
    return result;
}

// The bottom is `blocks` runs of `blockSize` floats; of each, the part goes to the layer's array.
void SliceLayer::takeBlocks(int blocks, int blockSize, int partBegin, int partSize) {
    allocateBlobMemory(static_cast<unsigned int>(blocks) * static_cast<unsigned int>(partSize));
    KZ_ASSERT_GE(memorySize_,
                 static_cast<unsigned int>(blocks) * static_cast<unsigned int>(partSize));
    const float* source = bottomBlob(0).data() + partBegin;
    float* target = memory_.get();
    for (int i = 0; i < blocks; ++i) {
        target = std::copy(source, source + partSize, target);
        source += blockSize;
    }
}

void SliceLayer::sliceNum() {
    const KZ::Blob& b = bottomBlob(0);
    const Part taken = part(b.num());
    takeBlocks(1, b.size(), taken.begin * b.volume(), taken.size * b.volume());
    top_.init(taken.size, b.channels(), b.height(), b.width(), memory_);
}

void SliceLayer::sliceChannels() {
    const KZ::Blob& b = bottomBlob(0);
    const Part taken = part(b.channels());
    takeBlocks(b.num(), b.volume(), taken.begin * b.area(), taken.size * b.area());
    top_.init(b.num(), taken.size, b.height(), b.width(), memory_);
}

void SliceLayer::sliceHeight() {
    const KZ::Blob& b = bottomBlob(0);
    const Part taken = part(b.height());
    takeBlocks(b.num() * b.channels(), b.area(), taken.begin * b.width(), taken.size * b.width());
    top_.init(b.num(), b.channels(), taken.size, b.width(), memory_);
}

void SliceLayer::sliceWidth() {
    const KZ::Blob& b = bottomBlob(0);
    const Part taken = part(b.width());
    takeBlocks(b.num() * b.channels() * b.height(), b.width(), taken.begin, taken.size);
    top_.init(b.num(), b.channels(), b.height(), taken.size, memory_);
}

void SliceLayer::serialize(KZ::ArchiveO& archive) const {
    archive& segmentNumber_& numSegments_& axis_;
    archive.archiveFromVersion("Version 3", slicePoint_);
    archive.archiveFromVersion("Version 3", sliceSize_);
}

void SliceLayer::serialize(KZ::ArchiveI& archive) {
    archive& segmentNumber_& numSegments_& axis_;
    archive.archiveFromVersion("Version 3", slicePoint_);
    archive.archiveFromVersion("Version 3", sliceSize_);
    // A damaged file may carry anything.
    if (numSegments_ != 0) {
        KZ_ASSERT_GE(segmentNumber_, 0);
        KZ_ASSERT_LT(segmentNumber_, numSegments_);
    }
    KZ_ASSERT_GE(slicePoint_, 0);
    KZ_ASSERT_GT(sliceSize_, KZ::minValue<int>());
}

KZ::SharedPtr<BaseLayer> SliceLayer::clone() const {
    KZ::SharedPtr<BaseLayer> copy = BaseLayer::clone();
    SliceLayer& layer = static_cast<SliceLayer&>(*copy);
    layer.segmentNumber_ = segmentNumber_;
    layer.numSegments_ = numSegments_;
    layer.axis_ = axis_;
    layer.slicePoint_ = slicePoint_;
    layer.sliceSize_ = sliceSize_;
    return copy;
}

bool SliceLayer::compare(const BaseLayer& other) const {
    const SliceLayer& layer = static_cast<const SliceLayer&>(other);
    return segmentNumber_ == layer.segmentNumber_ && numSegments_ == layer.numSegments_ &&
           axis_ == layer.axis_ && slicePoint_ == layer.slicePoint_ &&
           sliceSize_ == layer.sliceSize_;
}

void SliceLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    stream << "SliceLayer& " << functionName << "()\n{\n    static SliceLayer sliceLayer(\""
           << name() << "\", ";
    if (numSegments_ != 0) {
        stream << segmentNumber_ << ", " << numSegments_ << ", " << axis_ << ");\n";
    } else {
        // What a file can say and a call cannot: from a point to the end.
        KZ_ASSERT(sliceSize_ != 0 || slicePoint_ == 0, "no source for an open slice");
        stream << axis_ << ");\n";
        if (sliceSize_ != 0) {
            stream << "    sliceLayer.addSlicePoint(" << slicePoint_ << ", " << sliceSize_
                   << ");\n";
        }
    }
    stream << "    return sliceLayer;\n}\n\n";
}
