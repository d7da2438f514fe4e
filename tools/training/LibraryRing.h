#pragma once

#include <deque>
#include <memory>
#include <vector>

#include "CascadedClassifier.h"
#include "ClassifierRing.h"
#include "KZ_RmctPyramid.h"
#include "RingFile.h"

namespace training {

/// A ring of the library's own classifiers made of `content`, which it copies. Not for two threads
/// at once: cascades change while they scan.
class LibraryRing {
public:
    explicit LibraryRing(const RingContent& content);
    LibraryRing(const LibraryRing&) = delete;
    LibraryRing& operator=(const LibraryRing&) = delete;

    ClassifierRing& ring() { return *ring_; }
    /// The cascades at -30 to 30 degrees of the given side; those of the right side stand in the
    /// order of the content.
    std::vector<CascadedClassifier*> cascades(KZ::Side::Value side);

private:
    RingContent content_;  ///< owns the tables that the weak classifiers point at
    std::deque<CascadedClassifier> cascades_;
    std::unique_ptr<ClassifierRing> ring_;
};

/// A window that passed.
struct ScanHit {
    int layer;
    KZ::Point corner;  ///< left top pixel in the layer
};

struct ScanCount {
    double searched = 0, passed = 0;
};

/// The integral image and all layers of a view.
void preparePyramid(const KZ::Image& view, KZ::RmctPyramid& pyramid, KZ::Image& integral);

/// Runs the library's scan at the detector's step over every layer, and adds to `count`.
std::vector<ScanHit> scanLayers(CascadedClassifier& cascade, const KZ::RmctPyramid& pyramid,
                                const KZ::Image& integral, ScanCount& count);

}  // namespace training
