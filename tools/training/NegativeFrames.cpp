#include "NegativeFrames.h"

#include <algorithm>
#include <cmath>

#include "Composer.h"
#include "Failure.h"
#include "FrameExposure.h"
#include "PositiveRenderer.h"

namespace training {

namespace {

int pick(const std::vector<int>& photos, Random& random) {
    return photos[random.below(static_cast<int>(photos.size()))];
}

bool allPosed(const Photo& photo) {
    return std::all_of(photo.rows.begin(), photo.rows.end(),
                       [](const ManifestRow& row) { return row.hasPose && row.hasBox; });
}

HandZone zoneOf(const ManifestRow& row, const Placement& placement) {
    const cv::Point2d middle((row.x0 + row.x1) / 2, (row.y0 + row.y1) / 2);
    return {transformed(placement.matrix(), middle),
            placement.scale * std::max(row.x1 - row.x0, row.y1 - row.y0)};
}

}  // namespace

bool HandZone::shows(const cv::Point2d& windowCentre, double windowWidth) const {
    return std::hypot(windowCentre.x - centre.x, windowCentre.y - centre.y) < extent * 0.5 &&
           windowWidth > extent * 0.4 && windowWidth < extent * 2.5;
}

NegativeFrames::NegativeFrames(const PhotoStore& store, const std::string& split) : store_(store) {
    const std::vector<Photo>& photos = store.photos();
    for (int i = 0; i < static_cast<int>(photos.size()); ++i) {
        if (photos[i].split != split) continue;
        if (photos[i].only(Kind::SCENE)) {
            scenes_.push_back(i);
        } else if (photos[i].only(Kind::HAND)) {
            (allPosed(photos[i]) ? posedHands_ : croppedHands_).push_back(i);
        }
    }
    if (scenes_.empty()) throw Failure("the split " + split + " has no pictures of kind scene");
    if (posedHands_.empty() && croppedHands_.empty()) {
        throw Failure("the split " + split + " has no pictures of kind hand");
    }
}

std::vector<int> NegativeFrames::licensedScenes() const {
    std::vector<int> licensed;
    for (const int scene : scenes_) {
        if (isLicensed(store_.photos()[scene].source)) licensed.push_back(scene);
    }
    if (licensed.empty()) throw Failure("no licensed scenes to set palms before");
    return licensed;
}

void NegativeFrames::drawScene(Random& random, cv::Mat& frame) const {
    frame.create(HEIGHT, WIDTH, CV_8U);
    fillWithScene(store_.grey(pick(scenes_, random)), 1.8, random, frame);
    expose(Exposure::draw(random, PositiveRenderer::HARDSHIP), random, frame);
}

std::vector<HandZone> NegativeFrames::drawHands(Random& random, cv::Mat& frame) const {
    frame.create(HEIGHT, WIDTH, CV_8U);
    fillWithScene(store_.grey(pick(scenes_, random)), 1.8, random, frame);
    const bool posed = croppedHands_.empty() || (!posedHands_.empty() && random.chance(0.5));
    std::vector<HandZone> zones =
        posed ? drawPosedHands(random, frame) : drawCroppedHands(random, frame);
    expose(Exposure::draw(random, PositiveRenderer::HARDSHIP), random, frame);
    return zones;
}

std::vector<HandZone> NegativeFrames::drawPosedHands(Random& random, cv::Mat& frame) const {
    const int photo = pick(posedHands_, random);
    const std::vector<ManifestRow>& rows = store_.photos()[photo].rows;
    const ManifestRow& row = rows[random.below(static_cast<int>(rows.size()))];
    Placement placement;
    placement.anchor = {row.cx, row.cy};
    placement.position = {random.uniform(60, WIDTH - 60), random.uniform(50, HEIGHT - 50)};
    const double palm = std::min(random.logUniform(16, 65), row.palmWidth * 1.6);
    placement.scale = palm / row.palmWidth;
    placement.turn = random.uniform(-30, 30);
    placement.mirrored = random.chance(0.5);
    const cv::Mat& pixels = store_.grey(photo);
    const bool cutOut = random.chance(PositiveRenderer::CUT_OUT);
    paste(pixels, placement, 0.03 * pixels.cols, random.uniform(1, 1.6), frame,
          cutOut ? store_.matte(photo) : cv::Mat());
    if (rows.size() == 1 && random.chance(PositiveRenderer::SLEEVES)) {
        const double angle = placement.turn + (placement.mirrored ? -row.angle : row.angle);
        coverWrist(placement.position, palm, angle, random, frame);
    }
    std::vector<HandZone> zones;
    for (const ManifestRow& hand : rows) zones.push_back(zoneOf(hand, placement));
    return zones;
}

std::vector<HandZone> NegativeFrames::drawCroppedHands(Random& random, cv::Mat& frame) const {
    // A grid of three by two with shifted cells: hands may touch but do not hide each other.
    constexpr int COLUMNS = 3, ROWS = 2;
    std::vector<HandZone> zones;
    for (int cell = 0; cell < COLUMNS * ROWS; ++cell) {
        const int photo = pick(croppedHands_, random);
        const cv::Mat& crop = store_.grey(photo);
        const int longSide = std::max(crop.cols, crop.rows);
        Placement placement;
        placement.anchor = {(crop.cols - 1) * 0.5, (crop.rows - 1) * 0.5};
        placement.position = {(cell % COLUMNS + 0.5 + random.uniform(-0.2, 0.2)) * WIDTH / COLUMNS,
                              (cell / COLUMNS + 0.5 + random.uniform(-0.2, 0.2)) * HEIGHT / ROWS};
        placement.scale = std::min(random.logUniform(38, 150) / longSide, 1.6);
        placement.turn = random.uniform(-45, 45);
        placement.mirrored = random.chance(0.5);
        const double feather = random.uniform(0.05, 0.14) * std::min(crop.cols, crop.rows);
        const bool cutOut = random.chance(PositiveRenderer::CUT_OUT);
        paste(crop, placement, feather, random.uniform(1, 1.6), frame,
              cutOut ? store_.matte(photo) : cv::Mat());
        zones.push_back({placement.position, placement.scale * longSide});
    }
    return zones;
}

}  // namespace training
