#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "SampleFrames.h"
#include "SampleSet.h"

namespace training {

/// One portion of frames to search.
struct SampleOrder {
    uint64_t seed = 0;
    int frames = 0;
    bool heldOut = false;  ///< shows the pictures that are held out
    bool toLearn = true;   ///< gives further samples by jitter; else marks them as held out
    double sceneShare = 0, photoShare = 0;  ///< of the frames; the rest shows crops
    double palmShare = 0.5;                 ///< of the hands shown
    /// Placed palms and hands besides the scan's own locations.
    bool withPlaced = true;
    /// With networks: only what is no palm and the verifiers give more than this.
    float minScore[VERIFIERS] = {};
};

/// Shows frames to the library's scan and cuts patches at what it reports, labelled by what is
/// known to be there. Where that is not known, nothing is cut.
class SampleMiner {
public:
    /// Every second frame is scanned with `loosening` taken from the last stages' thresholds.
    SampleMiner(const PhotoStore& store, const RingContent& ring, int loosening, int threads);
    ~SampleMiner();

    /// The deviations from which those of placed patches are drawn.
    void setDeviations(const std::vector<Deviation>& deviations) { deviations_ = deviations; }
    /// A verifier, for `minScore`.
    void setVerifier(int verifier, const NnDetector& network);
    void dropVerifiers();

    /// The outcome depends on the order alone, not on the threads' timing.
    SampleSet mine(const SampleOrder& order);

private:
    struct Worker;

    void drawFrame(const SampleOrder& order, Random& random, ShownFrame& frame) const;
    void addScanned(const SampleOrder& order, bool loose, Worker& worker, Random& random,
                    SampleSet& samples) const;
    void addPlaced(const SampleOrder& order, Worker& worker, Random& random,
                   SampleSet& samples) const;
    bool isWanted(const SampleOrder& order, Worker& worker, Origin origin,
                  const PatchPair& patches) const;

    const int threads_;
    SampleFrames fit_, heldOut_;
    std::vector<Deviation> deviations_;
    std::vector<std::unique_ptr<Worker>> workers_;
};

/// What a location is on. Throws nothing; UNKNOWN where a label is missing or doubtful.
struct Finding {
    enum What { UNKNOWN, PALM, HAND, SCENE };
    What what = UNKNOWN;
    Deviation deviation;  ///< of PALM
};
Finding judge(const ShownFrame& frame, const DetectorView& view,
              const KZ::ObjectLocation& location);

/// A location that deviates from what fits the hand.
KZ::ObjectLocation placed(const ShownHand& hand, const DetectorView& view,
                          const Deviation& deviation);

/// The share of palms that a network gives, as the chain's tracker computes it.
float palmScore(const NnDetector& network, const KZ::Image& patch);

}  // namespace training
