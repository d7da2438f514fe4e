#pragma once

#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "KZ_SharedPtr.h"

namespace KZ {

/// Node of the graph of a frame's data: a value that is computed from its parents when somebody
/// asks. A child keeps its parents alive; a parent knows its children only. The graph has no
/// cycles. A frame goes: `resetRecursive` on the roots, new content for the roots,
/// `updateRecursive` on the roots, then any number of reads.
class BaseData {
public:
    BaseData() = default;
    virtual ~BaseData();
    BaseData(const BaseData&) = delete;
    BaseData& operator=(const BaseData&) = delete;

    virtual void print(std::ostream& stream) const = 0;
    virtual std::string name() const { return std::string(); }
    virtual std::string arguments() const { return std::string(); }
    /// Drops what the last frame computed.
    virtual void reset() {}
    /// Prepares for the content of a new frame.
    virtual void update() {}

    /// Resets the node, then its children; a node reached twice is reset twice.
    void resetRecursive();
    /// The same walk, children first; writes each edge as a line of a Graphviz graph.
    void resetRecursive(std::ostream& stream);
    /// Updates the node and its children, each once a frame.
    void updateRecursive();

    bool isLeafNode() const { return children_.empty(); }

    template <typename T>
    void addParent(const SharedPtr<T>& parent) {
        parents_.push_back(SharedPtr<BaseData>(parent));
        parents_.back()->children_.insert(this);
    }

protected:
    std::vector<SharedPtr<BaseData>> parents_;
    std::set<BaseData*> children_;
    bool updated_ = false;
};

std::ostream& operator<<(std::ostream& stream, const BaseData& data);

}  // namespace KZ
