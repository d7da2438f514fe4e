#include "AdaGrouping.h"

#include <algorithm>
#include <cstdint>
#include <functional>

#include "KZ_Limits.h"

namespace KZ {

int PartitionForest::join(int i, int j, int root) {
    const int root2 = top(j);
    if (root2 == root) return root;
    if (at(root)[RANK] > at(root2)[RANK]) {
        at(root2)[PARENT] = root;
    } else {
        at(root)[PARENT] = root2;
        if (at(root)[RANK] == at(root2)[RANK]) ++at(root2)[RANK];
        root = root2;
    }
    KZ_ASSERT(at(root)[PARENT] < 0, "Failed check: nodes[root][PARENT] < 0");
    compress(j, root);
    compress(i, root);
    return root;
}

void PartitionForest::compress(int node, int root) {
    while (at(node)[PARENT] >= 0) {
        const int parent = at(node)[PARENT];
        at(node)[PARENT] = root;
        node = parent;
    }
}

int PartitionForest::label(std::vector<int>& labels) {
    labels.resize(nodes.size());
    int numClasses = 0;
    for (size_t i = 0; i < nodes.size(); ++i) {
        // The rank of a top has served, and takes the complement of the number of its class.
        int& rank = at(top(static_cast<int>(i)))[RANK];
        if (rank >= 0) rank = ~numClasses++;
        labels[i] = ~rank;
    }
    return numClasses;
}

}  // namespace KZ

namespace {

const int ANGLE_TOLERANCE = 30;

// What the objects of a class add up to, each times its weight.
struct ClassSum {
    int64_t width = 0, height = 0, x = 0, y = 0, angle = 0, side = 0, weight = 0;
    float zoom = 0;
    int maxScore = KZ::minValue<int>();
    const char* name = nullptr;

    void add(const AdaObject& object) {
        const int64_t w = object.weight;
        width += object.size.width * w;
        height += object.size.height * w;
        x += object.center.x * w;
        y += object.center.y * w;
        angle += object.angle * w;
        side += object.side * w;
        zoom += object.zoom * static_cast<float>(object.weight);
        weight += w;
        maxScore = std::max(maxScore, object.score);
        // Of several names, the one at the highest address.
        if (std::less<const char*>()(name, object.name)) name = object.name;
    }

    AdaObject mean() const {
        const auto part = [this](int64_t sum) { return static_cast<int>(sum / weight); };
        return AdaObject(name, KZ::Size(part(width), part(height)), KZ::Point(part(x), part(y)),
                         part(side), zoom / static_cast<float>(weight), part(angle),
                         static_cast<int>(weight), maxScore);
    }
};

}  // namespace

std::vector<AdaObject> groupAdaObjects(const std::vector<AdaObject>& objects, int groupThreshold,
                                       float eps) {
    if (groupThreshold < 1 || objects.empty()) return objects;
    std::vector<int> labels;
    const int numClasses = KZ::partition(objects, labels, std::make_pair(eps, ANGLE_TOLERANCE));

    std::vector<ClassSum> sums(static_cast<size_t>(numClasses));
    for (size_t i = 0; i < objects.size(); ++i)
        sums[static_cast<size_t>(labels[i])].add(objects[i]);

    std::vector<AdaObject> groups;
    for (const ClassSum& sum : sums)
        if (sum.weight >= groupThreshold) groups.push_back(sum.mean());
    std::sort(groups.begin(), groups.end(), adaObjectsWeightCompare);
    return groups;
}

std::vector<AdaObject> groupAdaObjects(const KZ::History<AdaObject>& history, int groupThreshold,
                                       float eps) {
    std::vector<AdaObject> objects;
    for (uint32_t i = 0; i < history.size(); ++i) objects.push_back(history.element(i));
    return groupAdaObjects(objects, groupThreshold, eps);
}
