#pragma once

#include <string>
#include <vector>

#include "PhotoStore.h"
#include "RingFile.h"

/// One palm of the split and what became of it.
struct PalmOutcome {
    std::string image, source;
    double width = 0;  ///< frame pixels
    double angle = 0;  ///< degrees
    bool found = false;
    bool leads = false;     ///< the strongest group is on it: the one that the verifiers see
    bool alone = false;     ///< no other palm in the photograph could lead instead
    double dx = 0, dy = 0;  ///< of the nearest group when found, in palm widths
    double scale = 0;       ///< its width over the window's that fits the palm
};

/// What a ring does at its thresholds.
struct Measurement {
    std::vector<PalmOutcome> palms;
    std::vector<std::string> sceneImages;
    std::vector<int> sceneGroups;  ///< groups in each scene

    double recall() const;
    /// Share of the palms alone in their photographs that lead.
    double leading() const;
    double groupsPerScene() const;
};

/// Share of the windows of scenes that pass the first stage, the first two and so on, over all six
/// cascades of the ring.
struct StageRates {
    std::vector<double> passing;
    double windows = 0;  ///< looked at in a scene
};

/// Shows the palms in range and the scenes of one split to the library's scan with all six
/// cascades.
class Evaluation {
public:
    /// Throws Failure when the split lacks palms or scenes.
    Evaluation(const training::PhotoStore& store, const std::string& split, int threads);

    /// `lastShift` is added to the last stage's threshold of every cascade.
    Measurement measure(const training::RingContent& ring, int lastShift) const;
    /// Looks at every `stride`-th scene.
    StageRates stageRates(const training::RingContent& ring, int stride) const;
    /// Milliseconds of processor time for a scene: pyramid, integral image, scan and grouping.
    double millisecondsPerFrame(const training::RingContent& ring, int scenes) const;

private:
    struct Palm {
        int photo;
        const training::ManifestRow* row;
    };

    const training::PhotoStore& store_;
    const int threads_;
    std::vector<Palm> palms_;
    std::vector<int> scenes_;
};
