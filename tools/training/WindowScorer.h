#pragma once

#include "KZ_Image.h"
#include "LibraryRing.h"
#include "Window.h"

namespace training {

/// Asks one of the library's own cascades about single windows. Not for two threads at once.
class WindowScorer {
public:
    /// Takes cascade number `cascade` of the ring.
    WindowScorer(const RingContent& ring, int cascade);

    /// Whether the window passes all stages; a cascade without stages passes everything. `score`
    /// is the last stage's sum when it does.
    bool passes(const Window& window, int& score);

private:
    LibraryRing library_;
    CascadedClassifier& cascade_;
    KZ::Image integral_;
};

}  // namespace training
