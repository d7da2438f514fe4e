#include "SampleMiner.h"

#include <algorithm>
#include <cmath>

#include "Parallel.h"
#include "Window.h"

namespace training {

namespace {

/// A location is on a palm within these bounds: palm widths, factor of the size, degrees.
constexpr double ON_PALM_DISTANCE = 0.45, ON_PALM_SCALE = 1.4, ON_PALM_ANGLE = 42;
/// Beyond the scan's own deviations: palm widths, share of the size, degrees.
constexpr double JITTER = 0.07, JITTER_SCALE = 0.06, JITTER_ANGLE = 5;

RingContent loosened(RingContent ring, int by) {
    for (CascadeContent& cascade : ring.cascades) cascade.stages.back().threshold -= by;
    return ring;
}

KZ::Image viewOf(const std::vector<uint8_t>& pixels, const KZ::Size& size) {
    KZ::Image image;
    image.createRef(const_cast<uint8_t*>(pixels.data()), size, KZ::COLOR_MODE_MONO);
    return image;
}

KZ::ObjectLocation jittered(KZ::ObjectLocation location, Random& random) {
    const double palm = location.size.width / WindowShape::PER_PALM;
    const float scale = static_cast<float>(1 + random.uniform(-JITTER_SCALE, JITTER_SCALE));
    location.center.x += static_cast<float>(palm * random.uniform(-JITTER, JITTER));
    location.center.y += static_cast<float>(palm * random.uniform(-JITTER, JITTER));
    location.size.width *= scale;
    location.size.height *= scale;
    location.angle += static_cast<float>(random.uniform(-JITTER_ANGLE, JITTER_ANGLE));
    return location;
}

/// How far `a` is from `b` in degrees, -180 to 180.
double angleBetween(double a, double b) {
    return std::remainder(a - b, 360.0);
}

}  // namespace

/// What one thread needs.
struct SampleMiner::Worker {
    Worker(const RingContent& ring, const RingContent& looseRing)
        : strict(ring), loose(looseRing) {}

    LocationScan strict, loose;
    NnDetector verifiers[VERIFIERS];
    ShownFrame frame;
};

SampleMiner::SampleMiner(const PhotoStore& store, const RingContent& ring, int loosening,
                         int threads)
    : threads_(threads), fit_(store, false), heldOut_(store, true) {
    const RingContent loose = loosened(ring, loosening);
    for (int i = 0; i < threads; ++i) workers_.push_back(std::make_unique<Worker>(ring, loose));
}

SampleMiner::~SampleMiner() = default;

void SampleMiner::setVerifier(int verifier, const NnDetector& network) {
    for (const std::unique_ptr<Worker>& worker : workers_) {
        worker->verifiers[verifier] = network.clone();
    }
}

void SampleMiner::dropVerifiers() {
    for (int i = 0; i < VERIFIERS; ++i) setVerifier(i, NnDetector());
}

SampleSet SampleMiner::mine(const SampleOrder& order) {
    std::vector<SampleSet> found(order.frames);
    parallelFor(order.frames, threads_, [&](int i, int thread) {
        Worker& worker = *workers_[thread];
        Random random{order.seed, static_cast<uint64_t>(i)};
        drawFrame(order, random, worker.frame);
        addScanned(order, i % 2 == 1, worker, random, found[i]);
        if (order.withPlaced) addPlaced(order, worker, random, found[i]);
    });
    SampleSet all;
    for (const SampleSet& samples : found) all.append(samples);
    return all;
}

void SampleMiner::drawFrame(const SampleOrder& order, Random& random, ShownFrame& frame) const {
    const SampleFrames& frames = order.heldOut ? heldOut_ : fit_;
    const double kind = random.unit();
    if (kind < order.sceneShare) {
        frames.drawScene(random, frame);
    } else if (kind < order.sceneShare + order.photoShare) {
        frames.drawPhoto(random, order.palmShare, frame);
    } else {
        frames.drawCrops(random, order.palmShare, frame);
    }
}

void SampleMiner::addScanned(const SampleOrder& order, bool loose, Worker& worker, Random& random,
                             SampleSet& samples) const {
    LocationScan& scan = loose ? worker.loose : worker.strict;
    scan.show(worker.frame.pixels);
    const KZ::Image& view = scan.view().image();
    for (const KZ::ObjectLocation& location : scan.locations()) {
        const Finding finding = judge(worker.frame, scan.view(), location);
        if (finding.what == Finding::UNKNOWN) continue;
        Sample sample;
        sample.heldOut = !order.toLearn;
        sample.crop = worker.frame.isCrops;
        sample.loose = loose;
        sample.deviation = finding.deviation;
        sample.origin = finding.what == Finding::PALM   ? Origin::SCANNED_PALM
                        : finding.what == Finding::HAND ? Origin::SCANNED_HAND
                                                        : Origin::SCENE;
        const PatchPair patches = cutPatches(view, location);
        if (!isWanted(order, worker, sample.origin, patches)) continue;
        samples.add(sample, patches);
        if (!order.toLearn) continue;
        if (sample.origin == Origin::SCANNED_PALM) sample.origin = Origin::JITTERED_PALM;
        samples.add(sample, cutPatches(view, jittered(location, random)));
    }
}

void SampleMiner::addPlaced(const SampleOrder& order, Worker& worker, Random& random,
                            SampleSet& samples) const {
    const DetectorView& view = worker.strict.view();
    worker.strict.show(worker.frame.pixels);
    for (const ShownHand& hand : worker.frame.hands) {
        if (hand.kind == Kind::IGNORE || deviations_.empty()) continue;
        const Deviation& deviation =
            deviations_[random.below(static_cast<int>(deviations_.size()))];
        const KZ::ObjectLocation location = jittered(placed(hand, view, deviation), random);
        const cv::Point2d frame = view.toFrame({location.center.x, location.center.y});
        if (!cv::Rect(0, 0, SampleFrames::WIDTH, SampleFrames::HEIGHT).contains(frame)) continue;
        Sample sample;
        sample.heldOut = !order.toLearn;
        sample.crop = worker.frame.isCrops;
        sample.origin = hand.kind == Kind::PALM ? Origin::PLACED_PALM : Origin::PLACED_HAND;
        const PatchPair patches = cutPatches(view.image(), location);
        if (isWanted(order, worker, sample.origin, patches)) samples.add(sample, patches);
    }
}

bool SampleMiner::isWanted(const SampleOrder& order, Worker& worker, Origin origin,
                           const PatchPair& patches) const {
    for (int i = 0; i < VERIFIERS; ++i) {
        const NnDetector& network = worker.verifiers[i];
        if (!network.isLoaded()) continue;
        if (isPalm(origin)) return false;
        const KZ::Image patch = viewOf(patches.pixels[i], verifierDesign(i).input);
        if (!(palmScore(network, patch) > order.minScore[i])) return false;
    }
    return true;
}

Finding judge(const ShownFrame& frame, const DetectorView& view,
              const KZ::ObjectLocation& location) {
    const cv::Point2d centre = view.toFrame({location.center.x, location.center.y});
    const double width = location.size.width * static_cast<double>(DetectorView::ZOOM);
    Finding finding;
    bool nearOther = false, onHand = false;
    double nearest = ON_PALM_DISTANCE;
    for (const ShownHand& hand : frame.hands) {
        if (hand.kind != Kind::PALM) {
            const bool shown = hand.zone.shows(centre, width);
            onHand = onHand || (shown && hand.kind == Kind::HAND);
            nearOther = nearOther || (shown && hand.kind == Kind::IGNORE);
            continue;
        }
        const cv::Point2d offset = (centre - hand.centre) / hand.palmWidth;
        const double scale = width / (hand.palmWidth * WindowShape::PER_PALM);
        const double angle = angleBetween(location.angle, hand.angle);
        const double distance = std::hypot(offset.x, offset.y);
        if (distance < nearest && std::fabs(std::log(scale)) < std::log(ON_PALM_SCALE) &&
            std::fabs(angle) < ON_PALM_ANGLE) {
            nearest = distance;
            finding.what = Finding::PALM;
            finding.deviation = {static_cast<float>(offset.x), static_cast<float>(offset.y),
                                 static_cast<float>(std::log(scale)), static_cast<float>(angle),
                                 (location.side == KZ::Side::LEFT) == hand.mirrored};
        } else if (distance * hand.palmWidth < 0.5 * (width + hand.zone.extent)) {
            nearOther = true;  // part of a palm, or a palm and more
        }
    }
    if (finding.what == Finding::PALM) return onHand ? Finding() : finding;
    if (nearOther) return finding;
    if (onHand) finding.what = Finding::HAND;
    if (frame.isScene) finding.what = Finding::SCENE;
    return finding;
}

KZ::ObjectLocation placed(const ShownHand& hand, const DetectorView& view,
                          const Deviation& deviation) {
    const cv::Point2d at =
        view.toView(hand.centre + cv::Point2d(deviation.x, deviation.y) * hand.palmWidth);
    const float width = static_cast<float>(hand.palmWidth * WindowShape::PER_PALM *
                                           std::exp(static_cast<double>(deviation.logScale)) /
                                           static_cast<double>(DetectorView::ZOOM));
    const bool left = hand.mirrored == deviation.sameSide;
    return KZ::ObjectLocation(
        KZ::PointF(static_cast<float>(at.x), static_cast<float>(at.y)), KZ::SizeF(width, width),
        static_cast<float>(hand.angle) + deviation.angle, left ? KZ::Side::LEFT : KZ::Side::RIGHT);
}

float palmScore(const NnDetector& network, const KZ::Image& patch) {
    const KZ::Blob& out = network.detect(patch);
    const float negative = std::exp(out.data()[0]), positive = std::exp(out.data()[1]);
    return positive / (negative + positive);
}

}  // namespace training
