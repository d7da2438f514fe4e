#include "EngineEvaluation.h"

#include <algorithm>
#include <cmath>

#include "Composer.h"
#include "Failure.h"
#include "NegativeFrames.h"
#include "PalmFrame.h"
#include "Window.h"

using training::Kind;
using training::ManifestRow;
using training::NegativeFrames;

namespace {

/// How far the answer's size may be from the palm's, and its centre in palm widths.
constexpr double SIZE_FACTOR = 1.6, CENTRE_DISTANCE = 0.5;

bool liesOn(const ShownPalm& palm, const cv::Rect2d& rect) {
    const cv::Point2d middle(rect.x + rect.width / 2, rect.y + rect.height / 2);
    const double distance = std::hypot(middle.x - palm.centre.x, middle.y - palm.centre.y);
    const double scale = rect.width / (palm.width * training::WindowShape::PER_PALM);
    return distance <= CENTRE_DISTANCE * palm.width && scale <= SIZE_FACTOR &&
           scale >= 1 / SIZE_FACTOR;
}

}  // namespace

EngineEvaluation::EngineEvaluation(const training::PhotoStore& store, const std::string& split)
    : store_(store) {
    const std::vector<training::Photo>& photos = store.photos();
    for (int i = 0; i < static_cast<int>(photos.size()); ++i) {
        if (photos[i].split != split) continue;
        if (photos[i].only(Kind::SCENE)) scenes_.push_back(i);
        if (photos[i].only(Kind::HAND)) addHand(i);
        for (const ManifestRow& row : photos[i].rows) {
            if (row.kind == Kind::PALM && std::fabs(row.angle) <= MAX_TILT) {
                palms_.push_back({i, row});
            }
        }
    }
    if (scenes_.empty()) {
        throw training::Failure("the split " + split + " needs pictures of the kind scene");
    }
}

void EngineEvaluation::addHand(int photo) {
    Hand hand{photo, store_.photos()[photo].rows[0]};
    if (!hand.row.hasPose) {
        // A tight crop: the hand is about as long as an open palm's window is wide.
        const cv::Mat& crop = store_.grey(photo);
        hand.row.cx = (crop.cols - 1) * 0.5;
        hand.row.cy = (crop.rows - 1) * 0.5;
        hand.row.palmWidth = std::max(crop.cols, crop.rows) / training::WindowShape::PER_PALM;
    }
    others_.push_back(hand);
}

std::vector<ShownPhoto> EngineEvaluation::run(
    Kind kind, int stride, int frames, const std::function<void(int done, int all)>& onShown) {
    const std::vector<Hand>& hands = kind == Kind::PALM ? palms_ : others_;
    const size_t count = kind == Kind::SCENE ? scenes_.size() : hands.size();
    std::vector<ShownPhoto> shown;
    for (size_t i = 0; i < count; i += static_cast<size_t>(stride)) {
        const int index = static_cast<int>(i);
        shown.push_back(kind == Kind::SCENE ? showScene(scenes_[i], index, frames)
                                            : showHand(kind, hands[i], index, frames));
        onShown(index + 1, static_cast<int>(count));
    }
    return shown;
}

ShownPhoto EngineEvaluation::showHand(Kind kind, const Hand& hand, int index, int frames) {
    cv::Mat frame;
    const cv::Mat& scene = store_.grey(scenes_[static_cast<size_t>(index) % scenes_.size()]);
    const ShownPalm palm = drawPalmFrame(store_.grey(hand.photo), hand.row, scene,
                                         static_cast<uint64_t>(index), frame);
    ShownPhoto shown;
    shown.kind = kind;
    shown.image = store_.photos()[hand.photo].image;
    shown.source = hand.row.source;
    shown.width = palm.width;
    shown.angle = hand.row.angle;
    shown.answer = session_.show(frame, frames, static_cast<uint64_t>(index));
    shown.onPalm = shown.answer.palms > 0 && liesOn(palm, shown.answer.rect);
    return shown;
}

ShownPhoto EngineEvaluation::showScene(int photo, int index, int frames) {
    cv::Mat frame(NegativeFrames::HEIGHT, NegativeFrames::WIDTH, CV_8U);
    training::coverWithScene(store_.grey(photo), frame);
    ShownPhoto shown;
    shown.image = store_.photos()[photo].image;
    shown.source = store_.photos()[photo].source;
    shown.answer = session_.show(frame, frames, static_cast<uint64_t>(index));
    return shown;
}
