#include "Evaluation.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <memory>

#include "Composer.h"
#include "DetectorData.h"
#include "DetectorView.h"
#include "Failure.h"
#include "LibraryRing.h"
#include "NegativeFrames.h"
#include "PalmFrame.h"
#include "Parallel.h"
#include "PatternDetector.h"
#include "Window.h"

using training::Kind;
using training::LibraryRing;
using training::NegativeFrames;
using training::RingContent;

namespace {

/// How far a group's size may be from the palm's, and its centre in palm widths.
constexpr double SIZE_FACTOR = 1.6, CENTRE_DISTANCE = 0.5;

/// The scan of one thread.
class Scanner {
public:
    explicit Scanner(const RingContent& content)
        : ring_(content),
          detector_(&ring_.ring(), KZ::AngleRange(-30, 30), KZ::Side::BOTH,
                    PatternDetector::Parameters(2, 1, 0.2f, KZ::RangeF())) {}

    void show(const cv::Mat& frame) { view_.make(frame, true); }

    /// The groups in the shown frame.
    const std::vector<AdaObject>& scan() {
        const KZ::Image& image = view_.image();
        const KZ::DetectRegion region(image.rect(), KZ::RangeF(), KZ::AngleRange(), KZ::Side::BOTH);
        data_.compute(image, image.rect());
        detector_.setData(data_.rmctPyramid, data_.integral, nullptr, nullptr);
        detector_.detect(groups_, region);
        return groups_;
    }

    const training::DetectorView& view() const { return view_; }

private:
    LibraryRing ring_;
    PatternDetector detector_;
    training::DetectorView view_;
    DetectorData data_;
    std::vector<AdaObject> groups_;
};

void judge(const ShownPalm& palm, const training::DetectorView& view,
           const std::vector<AdaObject>& groups, PalmOutcome& outcome) {
    const cv::Point2d truth = view.toView(palm.centre);
    const double width = palm.width / training::DetectorView::ZOOM;
    double nearest = CENTRE_DISTANCE;
    for (size_t i = 0; i < groups.size(); ++i) {
        const AdaObject& group = groups[i];
        const double dx = (group.center.x - truth.x) / width;
        const double dy = (group.center.y - truth.y) / width;
        const double scale =
            group.zoom * group.size.width / (width * training::WindowShape::PER_PALM);
        const double distance = std::hypot(dx, dy);
        if (distance > CENTRE_DISTANCE || scale > SIZE_FACTOR || scale < 1 / SIZE_FACTOR) continue;
        if (i == 0) outcome.leads = true;
        if (distance > nearest) continue;
        nearest = distance;
        outcome.found = true;
        outcome.dx = dx;
        outcome.dy = dy;
        outcome.scale = scale;
    }
}

RingContent shifted(RingContent ring, int lastShift) {
    for (training::CascadeContent& cascade : ring.cascades) {
        if (!cascade.stages.empty()) cascade.stages.back().threshold += lastShift;
    }
    return ring;
}

RingContent firstStages(RingContent ring, size_t count) {
    for (training::CascadeContent& cascade : ring.cascades) {
        cascade.stages.resize(std::min(cascade.stages.size(), count));
    }
    return ring;
}

std::vector<std::unique_ptr<Scanner>> scanners(const RingContent& ring, int threads) {
    std::vector<std::unique_ptr<Scanner>> list;
    for (int i = 0; i < threads; ++i) list.push_back(std::make_unique<Scanner>(ring));
    return list;
}

}  // namespace

double Measurement::recall() const {
    const auto found = std::count_if(palms.begin(), palms.end(),
                                     [](const PalmOutcome& palm) { return palm.found; });
    return static_cast<double>(found) / static_cast<double>(palms.size());
}

double Measurement::leading() const {
    int alone = 0, leading = 0;
    for (const PalmOutcome& palm : palms) {
        alone += palm.alone;
        leading += palm.alone && palm.leads;
    }
    return alone > 0 ? static_cast<double>(leading) / alone : 0;
}

double Measurement::groupsPerScene() const {
    double sum = 0;
    for (const int groups : sceneGroups) sum += groups;
    return sum / static_cast<double>(sceneGroups.size());
}

Evaluation::Evaluation(const training::PhotoStore& store, const std::string& split, int threads)
    : store_(store), threads_(threads) {
    const std::vector<training::Photo>& photos = store.photos();
    for (int i = 0; i < static_cast<int>(photos.size()); ++i) {
        if (photos[i].split != split) continue;
        if (photos[i].only(Kind::SCENE)) scenes_.push_back(i);
        for (const training::ManifestRow& row : photos[i].rows) {
            if (row.kind == Kind::PALM && std::fabs(row.angle) <= MAX_TILT) {
                palms_.push_back({i, &row});
            }
        }
    }
    if (scenes_.empty() || palms_.empty()) {
        throw training::Failure("the split " + split +
                                " needs pictures of the kinds palm and scene");
    }
}

Measurement Evaluation::measure(const RingContent& ring, int lastShift) const {
    const auto workers = scanners(shifted(ring, lastShift), threads_);
    const int palms = static_cast<int>(palms_.size()), scenes = static_cast<int>(scenes_.size());
    Measurement measurement;
    measurement.palms.resize(palms);
    measurement.sceneGroups.resize(scenes);
    for (const int scene : scenes_) {
        measurement.sceneImages.push_back(store_.photos()[scene].image);
    }
    training::parallelFor(palms + scenes, threads_, [&](int i, int worker) {
        Scanner& scanner = *workers[worker];
        cv::Mat frame(NegativeFrames::HEIGHT, NegativeFrames::WIDTH, CV_8U);
        if (i >= palms) {
            training::coverWithScene(store_.grey(scenes_[i - palms]), frame);
            scanner.show(frame);
            measurement.sceneGroups[i - palms] = static_cast<int>(scanner.scan().size());
            return;
        }
        const Palm& palm = palms_[i];
        const cv::Mat& scene = store_.grey(scenes_[i % scenes]);
        const ShownPalm shown = drawPalmFrame(store_.grey(palm.photo), *palm.row, scene, i, frame);
        const training::Photo& photo = store_.photos()[palm.photo];
        measurement.palms[i] = {photo.image, photo.source, shown.width, palm.row->angle};
        measurement.palms[i].alone = photo.only(Kind::PALM) && photo.rows.size() == 1;
        scanner.show(frame);
        judge(shown, scanner.view(), scanner.scan(), measurement.palms[i]);
    });
    return measurement;
}

StageRates Evaluation::stageRates(const RingContent& ring, int stride) const {
    StageRates rates;
    const int scenes = static_cast<int>(scenes_.size()) / stride;
    for (size_t stages = 1; stages <= ring.cascades.at(0).stages.size(); ++stages) {
        LibraryRing library(firstStages(ring, stages));
        KZ::RmctPyramid pyramid;
        pyramid.init(training::PYRAMID_LAYERS, 1.0f, training::PYRAMID_STEP);
        KZ::Image integral;
        training::DetectorView view;
        training::ScanCount count;
        for (int i = 0; i < scenes; ++i) {
            cv::Mat frame(NegativeFrames::HEIGHT, NegativeFrames::WIDTH, CV_8U);
            training::coverWithScene(store_.grey(scenes_[i * stride]), frame);
            view.make(frame, true);
            training::preparePyramid(view.image(), pyramid, integral);
            for (CascadedClassifier* cascade : library.cascades(KZ::Side::BOTH)) {
                training::scanLayers(*cascade, pyramid, integral, count);
            }
        }
        rates.passing.push_back(count.passed / count.searched);
        rates.windows = count.searched / scenes;
    }
    return rates;
}

double Evaluation::millisecondsPerFrame(const RingContent& ring, int scenes) const {
    Scanner scanner(ring);
    double total = 0;
    for (int i = 0; i < scenes; ++i) {
        cv::Mat frame(NegativeFrames::HEIGHT, NegativeFrames::WIDTH, CV_8U);
        training::coverWithScene(store_.grey(scenes_[i % scenes_.size()]), frame);
        scanner.show(frame);
        if (i == 0) scanner.scan();
        const std::clock_t start = std::clock();
        scanner.scan();
        total += 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    }
    return total / scenes;
}
