#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "AdaObject.h"
#include "KZ_Assert.h"
#include "KZ_History.h"

namespace KZ {

/// The forest of a partition: nodes with a parent (-1 at a top) and a rank.
class PartitionForest {
public:
    enum { PARENT = 0, RANK = 1 };

    explicit PartitionForest(size_t numNodes) : nodes(numNodes, Node{{-1, 0}}) {}

    int top(int node) const {
        while (at(node)[PARENT] >= 0) node = at(node)[PARENT];
        return node;
    }
    /// Joins the class of `j` with that of `i`, whose top is `root`. Returns the common top.
    int join(int i, int j, int root);
    /// Numbers the classes in order of first appearance. Returns how many there are.
    int label(std::vector<int>& labels);

private:
    struct Node {
        int fields[2];
        int& operator[](int field) { return fields[field]; }
        int operator[](int field) const { return fields[field]; }
    };
    Node& at(int node) { return nodes[static_cast<size_t>(node)]; }
    const Node& at(int node) const { return nodes[static_cast<size_t>(node)]; }
    void compress(int node, int root);

    std::vector<Node> nodes;
};

/// Splits `objects` into classes: two belong together when a chain of similar ones leads from the
/// one to the other. The predicate is a pair, the last two arguments of `Similar` for T.
/// `labels[i]` becomes the class of object i. Returns the number of classes.
template <typename T, typename P>
int partition(const std::vector<T>& objects, std::vector<int>& labels, const P& predicate) {
    const int numObjects = static_cast<int>(objects.size());
    PartitionForest forest(objects.size());
    for (int i = 0; i < numObjects; ++i) {
        const T& object = objects[static_cast<size_t>(i)];
        int root = forest.top(i);
        for (int j = 0; j < numObjects; ++j) {
            if (j == i || !Similar(object, objects[static_cast<size_t>(j)], predicate.first,
                                   predicate.second))
                continue;
            root = forest.join(i, j, root);
        }
    }
    return forest.label(labels);
}

}  // namespace KZ

/// Clusters similar objects (angles within 30 degrees), and replaces each cluster with a total
/// weight of at least `groupThreshold` by its weighted mean. The heaviest comes first. A threshold
/// below 1 returns the objects as they are.
std::vector<AdaObject> groupAdaObjects(const std::vector<AdaObject>& objects, int groupThreshold,
                                       float eps);
/// The same of the values that the history holds.
std::vector<AdaObject> groupAdaObjects(const KZ::History<AdaObject>& history, int groupThreshold,
                                       float eps);
