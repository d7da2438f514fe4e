#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "KZ_Archive.h"
#include "KZ_Assert.h"
#include "KZ_Blob.h"
#include "KZ_SharedPtr.h"

/// A node of a network. It reads the blobs of its bottom layers and fills its own, its top. The
/// network runs its layers in order, so a layer finds its bottoms done. `forward` writes the
/// layer's own blobs without a lock: one thread at a time.
class BaseLayer {
public:
    explicit BaseLayer(const std::string& name) : name_(name) {}
    virtual ~BaseLayer() = default;

    /// Computes the top. A wrong number or shape of bottoms is an assertion.
    virtual void forward() = 0;
    /// Prepares the layer for faster running.
    virtual void prune() {}
    /// The class name, as network files have it.
    virtual std::string type() const = 0;
    /// Writes and reads what the layer stores beside its type, name and bottoms.
    virtual void serialize(KZ::ArchiveO& archive) const = 0;
    virtual void serialize(KZ::ArchiveI& archive) = 0;
    /// Writes a function `functionName` that returns this layer as a static object, and the
    /// functions of its tables before it.
    virtual void saveToCpp(std::ostream& stream, const std::string& functionName) const = 0;
    /// A copy without bottom layers. It shares the weights, and no memory that a run writes.
    virtual KZ::SharedPtr<BaseLayer> clone() const;
    /// Equality of what files store; `other` must be of the same type.
    virtual bool compare(const BaseLayer& other) const = 0;

    const std::string& name() const { return name_; }
    const KZ::Blob& getBlob() const { return top_; }
    /// Shares the memory of `blob` as the layer's top.
    void setBlob(const KZ::Blob& blob) { top_ = blob; }
    void addBottomLayer(const KZ::SharedPtr<BaseLayer>& layer) { bottomLayers_.push_back(layer); }
    const std::vector<KZ::SharedPtr<BaseLayer>>& bottomLayers() const { return bottomLayers_; }
    int getNumBottomLayers() const { return static_cast<int>(bottomLayers_.size()); }
    /// An index at or beyond the end is an assertion; a negative one is not checked.
    const KZ::SharedPtr<BaseLayer>& getBottomLayer(int i) const;
    std::vector<std::string> getBottomLayersName() const;
    bool operator==(const BaseLayer& other) const { return compare(other); }
    bool operator!=(const BaseLayer& other) const { return !(*this == other); }

    /// Type and name, as a network file begins a layer's record.
    void saveBaseLayer(KZ::ArchiveO& archive) const;
    static KZ::SharedPtr<BaseLayer> loadBaseLayer(KZ::ArchiveI& archive);
    /// A layer with its default parameters. An unknown type is an assertion.
    static KZ::SharedPtr<BaseLayer> getBaseLayer(const std::string& type, const std::string& name);

protected:
    /// What `saveToCpp` writes for a layer without parameters.
    void baseSaveToCpp(std::ostream& stream, const std::string& functionName) const;
    /// An empty bottom, as a file can name it, is an assertion.
    void requireBottom(size_t i) const {
        KZ_ASSERT(bottomLayers_[i], "empty bottom layer of " << name_);
    }
    const KZ::Blob& bottomBlob(size_t i) const {
        requireBottom(i);
        return bottomLayers_[i]->getBlob();
    }

    std::vector<KZ::SharedPtr<BaseLayer>> bottomLayers_;
    KZ::Blob top_;

private:
    std::string name_;
};
