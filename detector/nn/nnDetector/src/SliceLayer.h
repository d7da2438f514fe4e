#pragma once

#include "BaseLayer.h"

/// One part of the bottom along one axis: 0 num, 1 channels, 2 height, 3 width. The part is one of
/// equal segments, or begins at a slice point.
class SliceLayer : public BaseLayer {
public:
    SliceLayer(const std::string& name, int axis) : BaseLayer(name), axis_(axis) {}
    SliceLayer(const std::string& name, int segmentNumber, int numSegments, int axis);

    /// A negative `sliceSize` takes that many from the end of the axis.
    void addSlicePoint(int slicePoint, int sliceSize);
    /// Takes the layer's own array at the first call; later calls keep it, whatever the size.
    void allocateBlobMemory(unsigned int size);
    float* getPointer() const { return memory_.get(); }

    void forward() override;
    std::string type() const override { return "SliceLayer"; }
    void serialize(KZ::ArchiveO& archive) const override;
    void serialize(KZ::ArchiveI& archive) override;
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override;

private:
    struct Part {
        int begin;
        int size;
    };
    Part part(int bottomSize);
    void sliceNum();
    void sliceChannels();
    void sliceHeight();
    void sliceWidth();
    void takeBlocks(int blocks, int blockSize, int partBegin, int partSize);

    int segmentNumber_ = 0;
    int numSegments_ = 0;
    int axis_;
    int slicePoint_ = 0;
    int sliceSize_ = 0;
    KZ::SharedArray<float> memory_;
    unsigned int memorySize_ = 0;
};
