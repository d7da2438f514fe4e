#include "Miner.h"

#include <algorithm>
#include <memory>

#include "DetectorView.h"
#include "LibraryRing.h"
#include "Parallel.h"

namespace training {

namespace {

/// Frames that are searched between two looks at what has been found. Its size is part of the
/// outcome, so it does not follow the number of threads.
constexpr int BATCH = 32;

/// What one frame gave for one cascade.
struct Found {
    std::vector<Window> windows;
    ScanCount count;
};

void shuffle(std::vector<ScanHit>& hits, Random& random) {
    for (size_t i = hits.size(); i > 1; --i) {
        std::swap(hits[i - 1], hits[random.below(static_cast<int>(i))]);
    }
}

/// Random places of the scan's grid: what a cascade that passes everything would find.
std::vector<ScanHit> anywhere(const KZ::RmctPyramid& pyramid, const KZ::Size& size, int count,
                              Random& random) {
    std::vector<int> ends;  // of each layer's share
    double area = 0;
    for (int layer = 0; layer < static_cast<int>(pyramid.numLayers()); ++layer) {
        const KZ::Image& mono = pyramid.getMono(layer);
        if (mono.width() < size.width || mono.height() < size.height) break;
        area += (mono.width() - size.width + 1.0) * (mono.height() - size.height + 1.0);
        ends.push_back(static_cast<int>(area));
    }
    std::vector<ScanHit> hits;
    for (int i = 0; i < count && !ends.empty(); ++i) {
        const int place = random.below(ends.back());
        const int layer =
            static_cast<int>(std::upper_bound(ends.begin(), ends.end(), place) - ends.begin());
        const KZ::Image& mono = pyramid.getMono(layer);
        hits.push_back({layer, KZ::Point(random.below(mono.width() - size.width + 1),
                                         random.below(mono.height() - size.height + 1))});
    }
    return hits;
}

/// One thread's share of the work.
class Worker {
public:
    Worker(const RingContent& ring, const NegativeFrames& frames, const MiningOrder& order)
        : content_(ring), frames_(frames), order_(order), library_(ring) {
        pyramid_.init(PYRAMID_LAYERS, 1.0f, PYRAMID_STEP);
    }

    /// Searches frame `index` of its kind for the cascades that still want windows.
    std::vector<Found> search(bool hands, int index, const std::vector<bool>& wanted) {
        Random random{order_.seed, static_cast<uint64_t>(hands), static_cast<uint64_t>(index)};
        std::vector<HandZone> zones;
        if (hands) {
            zones = frames_.drawHands(random, frame_);
        } else {
            frames_.drawScene(random, frame_);
        }
        view_.make(frame_, true);
        preparePyramid(view_.image(), pyramid_, integral_);
        std::vector<Found> found(wanted.size());
        for (size_t c = 0; c < wanted.size(); ++c) {
            if (wanted[c]) collect(static_cast<int>(c), hands ? &zones : nullptr, random, found[c]);
        }
        return found;
    }

private:
    void collect(int cascade, const std::vector<HandZone>* zones, Random& random, Found& found) {
        const WindowShape& shape = content_.cascades[cascade].shape;
        std::vector<ScanHit> hits;
        if (content_.cascades[cascade].stages.empty()) {
            // Few random windows fall on a hand: more are tried there.
            hits = anywhere(pyramid_, shape.size, order_.perFrame * (zones ? 20 : 1), random);
            found.count.searched = found.count.passed = static_cast<double>(hits.size());
        } else {
            hits = scanLayers(library_.ring().baseClassifier(cascade), pyramid_, integral_,
                              found.count);
            shuffle(hits, random);
        }
        for (const ScanHit& hit : hits) {
            if (static_cast<int>(found.windows.size()) >= order_.perFrame) break;
            if (zones && !showsHand(*zones, shape, hit)) continue;
            found.windows.push_back(
                cutWindow(view_.image(), pyramid_, hit.layer, hit.corner, shape.size));
        }
    }

    bool showsHand(const std::vector<HandZone>& zones, const WindowShape& shape,
                   const ScanHit& hit) const {
        const double zoom = pyramid_.zoomAtLayer(hit.layer);
        const cv::Point2d centre = view_.toFrame(
            {zoom * (hit.corner.x + shape.centre().x), zoom * (hit.corner.y + shape.centre().y)});
        const double width = zoom * DetectorView::ZOOM * shape.size.width;
        return std::any_of(zones.begin(), zones.end(),
                           [&](const HandZone& zone) { return zone.shows(centre, width); });
    }

    const RingContent& content_;
    const NegativeFrames& frames_;
    const MiningOrder& order_;
    LibraryRing library_;
    cv::Mat frame_;
    DetectorView view_;
    KZ::RmctPyramid pyramid_;
    KZ::Image integral_;
};

/// Moves windows over until `mined` holds `limit` of them.
void take(Found& found, size_t limit, Mined& mined) {
    for (Window& window : found.windows) {
        if (mined.windows.size() < limit) mined.windows.push_back(std::move(window));
    }
}

}  // namespace

std::vector<Mined> mine(const RingContent& ring, const NegativeFrames& frames,
                        const MiningOrder& order, const std::function<void(int frames)>& onFrames) {
    std::vector<std::unique_ptr<Worker>> workers;
    for (int i = 0; i < order.threads; ++i) {
        workers.push_back(std::make_unique<Worker>(ring, frames, order));
    }
    std::vector<Mined> mined(ring.cascades.size());
    for (const bool hands : {false, true}) {
        const int share = hands ? order.handWindows : order.sceneWindows;
        std::vector<size_t> limits;
        for (Mined& one : mined) {
            one.sceneWindows = static_cast<int>(one.windows.size());
            limits.push_back(one.windows.size() + share);
        }
        for (int begin = 0; begin < order.maxFrames; begin += BATCH) {
            std::vector<bool> wanted;
            for (size_t c = 0; c < mined.size(); ++c) {
                wanted.push_back(mined[c].windows.size() < limits[c]);
            }
            if (std::count(wanted.begin(), wanted.end(), true) == 0) break;
            const int size = std::min(BATCH, order.maxFrames - begin);
            std::vector<std::vector<Found>> batch(size);
            parallelFor(size, order.threads, [&](int i, int worker) {
                batch[i] = workers[worker]->search(hands, begin + i, wanted);
            });
            for (std::vector<Found>& found : batch) {
                for (size_t c = 0; c < mined.size(); ++c) {
                    take(found[c], limits[c], mined[c]);
                    if (hands || !wanted[c]) continue;
                    ++mined[c].frames;
                    mined[c].searched += found[c].count.searched;
                    mined[c].passed += found[c].count.passed;
                }
            }
            onFrames(size);
        }
    }
    return mined;
}

}  // namespace training
