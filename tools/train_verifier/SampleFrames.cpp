#include "SampleFrames.h"

#include <algorithm>
#include <cmath>

#include "Composer.h"
#include "Failure.h"
#include "FrameExposure.h"
#include "Window.h"

namespace training {

namespace {

/// Palm widths shown, in frame pixels: those that the detector answers for and a little more.
constexpr double MIN_PALM = 17, MAX_PALM = 64;
/// No photograph is enlarged further.
constexpr double MAX_ENLARGEMENT = 1.6;
/// How often a sleeve covers the wrist of a hand that is alone in its photograph.
constexpr double SLEEVES = 0.12;
/// How often a hand before plain ground stands before the scene alone, without that ground.
constexpr double CUT_OUT = 0.5;
/// Of the frames' exposures.
constexpr double HARDSHIP = 1;
/// The source of tight crops, one hand each.
const char* const CROPS = "hagrid_capstone";

uint64_t hashOf(const std::string& text) {
    uint64_t hash = 0;
    for (const char c : text) hash = mix(hash ^ static_cast<unsigned char>(c));
    return hash;
}

template <typename T>
const T& pick(const std::vector<T>& list, Random& random) {
    return list[random.below(static_cast<int>(list.size()))];
}

/// Tilt in the frame: mostly within what one cascade sees, some up to where the detector ends.
double drawTilt(Random& random) {
    if (random.chance(0.5)) return random.uniform(-36, 36);
    return random.uniform(-10, 10) + random.uniform(-10, 10);
}

Placement placementOf(const ManifestRow& row, double palmWidth, double angle, Random& random) {
    Placement placement;
    placement.anchor = {row.cx, row.cy};
    placement.scale = std::min(palmWidth / row.palmWidth, MAX_ENLARGEMENT);
    placement.mirrored = random.chance(0.5);
    placement.turn = angle - (placement.mirrored ? -row.angle : row.angle);
    placement.aspect = random.uniform(0.94, 1.06);
    // At most a tenth of the scale from one side of the window to the other.
    const double tilt = 0.1 / (palmWidth * WindowShape::PER_PALM);
    placement.tilt = {random.uniform(-tilt, tilt), random.uniform(-tilt, tilt)};
    return placement;
}

ShownHand shown(const ManifestRow& row, const Placement& placement) {
    const cv::Matx33d matrix = placement.matrix();
    ShownHand hand;
    hand.kind = row.kind == Kind::PALM && !isLicensed(row.source) ? Kind::IGNORE : row.kind;
    hand.centre = transformed(matrix, {row.cx, row.cy});
    hand.palmWidth = row.palmWidth * placement.scale;
    hand.angle = placement.turn + (placement.mirrored ? -row.angle : row.angle);
    hand.mirrored = row.mirrored != placement.mirrored;
    hand.zone = {hand.centre, hand.palmWidth * WindowShape::PER_PALM};
    if (row.hasBox) {
        hand.zone = {transformed(matrix, {(row.x0 + row.x1) / 2, (row.y0 + row.y1) / 2}),
                     placement.scale * std::max(row.x1 - row.x0, row.y1 - row.y0)};
    }
    return hand;
}

}  // namespace

bool isHeldOut(const Photo& photo) {
    static const char* const WHOLE[] = {"dwivedi_hands", "sl18401", "tfod_4mina", "abhikk_sl"};
    static const char* const BY_PICTURE[] = {CROPS, "imagenet_sample", "mouso_people",
                                             "wuqi_rps_sxsw", "facemask_chandrika"};
    const auto in = [&](const auto& list) {
        return std::find(std::begin(list), std::end(list), photo.source) != std::end(list);
    };
    return in(WHOLE) || (in(BY_PICTURE) && hashOf(photo.image) % 100 < 8);
}

SampleFrames::SampleFrames(const PhotoStore& store, bool heldOut) : store_(store) {
    const std::vector<Photo>& photos = store.photos();
    for (int i = 0; i < static_cast<int>(photos.size()); ++i) {
        if (photos[i].split != "train" || isHeldOut(photos[i]) != heldOut) continue;
        if (photos[i].only(Kind::SCENE)) {
            scenes_.push_back(i);
            if (isLicensed(photos[i].source)) licensedScenes_.push_back(i);
        } else {
            addHands(i);
        }
    }
    for (std::vector<Source>* sources : {&palms_, &others_}) {
        for (Source& source : *sources) source.weight = std::sqrt(source.hands.size());
    }
    if (licensedScenes_.empty() || palms_.empty() || others_.empty() || croppedPalms_.empty() ||
        croppedOthers_.empty()) {
        throw Failure(std::string("the training pictures ") +
                      (heldOut ? "that are held out" : "that are not held out") +
                      " need licensed scenes, and palms and other hands both in whole photographs "
                      "and in crops (source " +
                      CROPS + ")");
    }
}

void SampleFrames::addHands(int photo) {
    const Photo& entry = store_.photos()[photo];
    const bool crop = entry.source == CROPS;
    for (const ManifestRow& row : entry.rows) {
        const bool palm = row.kind == Kind::PALM && row.hasPose && isLicensed(row.source);
        if (!palm && row.kind != Kind::HAND) continue;
        if (crop) {
            (palm ? croppedPalms_ : croppedOthers_).push_back({photo, &row});
        } else if (row.hasPose) {
            std::vector<Source>& sources = palm ? palms_ : others_;
            auto found = std::find_if(sources.begin(), sources.end(), [&](const Source& source) {
                return source.name == row.source;
            });
            if (found == sources.end()) found = sources.insert(found, {row.source, {}, 0});
            found->hands.push_back({photo, &row});
        }
    }
}

void SampleFrames::drawBackground(const std::vector<int>& scenes, Random& random,
                                  cv::Mat& pixels) const {
    // Never the frame before: the pictures' borders fade into what is there.
    pixels = cv::Mat(HEIGHT, WIDTH, CV_8U, cv::Scalar(128));
    const cv::Mat& scene = store_.grey(pick(scenes, random));
    if (random.chance(0.25)) {
        coverWithScene(scene, pixels);
    } else {
        fillWithScene(scene, 1.8, random, pixels);
    }
}

void SampleFrames::drawScene(Random& random, ShownFrame& frame) const {
    frame = ShownFrame();
    frame.isScene = true;
    drawBackground(scenes_, random, frame.pixels);
    expose(Exposure::draw(random, HARDSHIP), random, frame.pixels);
}

void SampleFrames::drawPhoto(Random& random, double palmShare, ShownFrame& frame) const {
    const std::vector<Source>& sources = random.chance(palmShare) ? palms_ : others_;
    double total = 0;
    for (const Source& source : sources) total += source.weight;
    double at = random.unit() * total;
    size_t chosen = 0;
    while (chosen + 1 < sources.size() && at >= sources[chosen].weight) {
        at -= sources[chosen++].weight;
    }
    const Hand& hand = pick(sources[chosen].hands, random);
    frame = ShownFrame();
    drawBackground(licensedScenes_, random, frame.pixels);
    const double palm = random.logUniform(MIN_PALM, MAX_PALM);
    Placement placement = placementOf(*hand.row, palm, drawTilt(random), random);
    const double margin = palm;
    placement.position = {random.uniform(margin, WIDTH - margin),
                          random.uniform(margin, HEIGHT - margin)};
    const cv::Mat& pixels = store_.grey(hand.photo);
    const double feather = random.uniform(0.03, 0.1) * std::min(pixels.cols, pixels.rows);
    const bool cutOut = random.chance(CUT_OUT);
    paste(pixels, placement, feather, random.uniform(1, 1.6), frame.pixels,
          cutOut ? store_.matte(hand.photo) : cv::Mat());
    const std::vector<ManifestRow>& rows = store_.photos()[hand.photo].rows;
    if (rows.size() == 1 && random.chance(SLEEVES)) {
        const ShownHand only = shown(rows[0], placement);
        coverWrist(only.centre, only.palmWidth, only.angle, random, frame.pixels);
    }
    expose(Exposure::draw(random, HARDSHIP), random, frame.pixels);
    for (const ManifestRow& row : rows) {
        if (row.hasPose) frame.hands.push_back(shown(row, placement));
    }
}

void SampleFrames::drawCrops(Random& random, double palmShare, ShownFrame& frame) const {
    frame = ShownFrame();
    frame.isCrops = true;
    drawBackground(licensedScenes_, random, frame.pixels);
    // Few large hands or many small ones.
    const int columns = 1 + random.below(3), rows = columns == 1 ? 1 : 1 + random.below(2);
    for (int cell = 0; cell < columns * rows; ++cell) {
        const cv::Rect place(cell % columns * WIDTH / columns, cell / columns * HEIGHT / rows,
                             WIDTH / columns, HEIGHT / rows);
        const bool palm = random.chance(palmShare), empty = random.chance(0.15);
        const Hand hand =
            empty ? pieceOfScene(random) : pick(palm ? croppedPalms_ : croppedOthers_, random);
        drawCrop(hand, place, random, frame);
    }
    expose(Exposure::draw(random, HARDSHIP), random, frame.pixels);
}

SampleFrames::Hand SampleFrames::pieceOfScene(Random& random) const {
    static const ManifestRow NO_HAND = [] {
        ManifestRow row;
        row.kind = Kind::HAND;
        return row;
    }();
    return {pick(licensedScenes_, random), &NO_HAND};
}

void SampleFrames::drawCrop(const Hand& hand, const cv::Rect& cell, Random& random,
                            ShownFrame& frame) const {
    cv::Mat crop = store_.grey(hand.photo), matte;
    if (random.chance(CUT_OUT)) matte = store_.matte(hand.photo);
    if (hand.row->kind == Kind::HAND && hand.row->image.empty()) {
        const int width = std::min(crop.cols, 50 + random.below(40));
        const int height = std::min(crop.rows, 80 + random.below(50));
        crop = crop(cv::Rect(random.below(crop.cols - width + 1),
                             random.below(crop.rows - height + 1), width, height));
        matte.release();
    }
    const int longSide = std::max(crop.cols, crop.rows);
    ManifestRow row = *hand.row;
    if (!row.hasPose) {
        row.cx = (crop.cols - 1) * 0.5;
        row.cy = (crop.rows - 1) * 0.5;
        row.palmWidth = longSide / (WindowShape::PER_PALM * random.uniform(0.75, 1.1));
        row.angle = 0;
    }
    const double largest = std::min({MAX_PALM, cell.width / 1.8, cell.height / 2.0});
    const double palm = random.logUniform(MIN_PALM, largest);
    Placement placement = placementOf(row, palm, drawTilt(random), random);
    placement.position = {cell.x + cell.width * random.uniform(0.4, 0.6),
                          cell.y + cell.height * random.uniform(0.4, 0.6)};
    const double feather = random.uniform(0.05, 0.14) * std::min(crop.cols, crop.rows);
    paste(crop, placement, feather, random.uniform(1, 1.6), frame.pixels, matte);
    frame.hands.push_back(shown(row, placement));
}

}  // namespace training
