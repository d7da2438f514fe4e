#include "Exhibits.h"

#include <algorithm>
#include <cmath>

#include "Composer.h"
#include "Failure.h"
#include "NegativeFrames.h"
#include "Random.h"
#include "Window.h"

namespace evaluate {

using training::Kind;
using training::ManifestRow;
using training::NegativeFrames;

namespace {

/// FNV-1a of the picture's name and the row's number.
uint64_t seedOf(const std::string& image, int number) {
    uint64_t hash = 0xCBF29CE484222325ull;
    for (const unsigned char c : image + "#" + std::to_string(number)) {
        hash = (hash ^ c) * 0x100000001B3ull;
    }
    return training::mix(hash);
}

/// A tight crop: the hand is about as long as an open palm's window is wide.
void poseOfCrop(const cv::Mat& crop, ManifestRow& row) {
    row.cx = (crop.cols - 1) * 0.5;
    row.cy = (crop.rows - 1) * 0.5;
    row.palmWidth = std::max(crop.cols, crop.rows) / training::WindowShape::PER_PALM;
}

}  // namespace

std::string keyOf(Kind kind, const std::string& image, int number) {
    return std::string(nameOf(kind)) + " " + image + "#" + std::to_string(number);
}

const char* nameOf(Kind kind) {
    switch (kind) {
        case Kind::PALM:
            return "palm";
        case Kind::HAND:
            return "hand";
        case Kind::IGNORE:
            return "ignore";
        default:
            return "scene";
    }
}

Kind kindOf(const std::string& name) {
    for (const Kind kind : {Kind::PALM, Kind::HAND, Kind::SCENE}) {
        if (name == nameOf(kind)) return kind;
    }
    throw training::Failure("kind: palm, hand or scene expected, found \"" + name + "\"");
}

Exhibits::Exhibits(const training::PhotoStore& store, const std::string& split) : store_(store) {
    const std::vector<training::Photo>& photos = store.photos();
    for (int i = 0; i < static_cast<int>(photos.size()); ++i) {
        if (photos[i].split != split) continue;
        if (photos[i].only(Kind::SCENE)) add(Kind::SCENE, i, 0);
        if (photos[i].only(Kind::HAND)) add(Kind::HAND, i, 0);
        const std::vector<ManifestRow>& rows = photos[i].rows;
        for (int k = 0; k < static_cast<int>(rows.size()); ++k) {
            if (rows[k].kind == Kind::PALM && std::fabs(rows[k].angle) <= MAX_TILT) {
                add(Kind::PALM, i, k);
            }
        }
    }
    if (scenes_.empty()) {
        throw training::Failure("the split " + split + " needs pictures of the kind scene");
    }
}

void Exhibits::add(Kind kind, int photo, int number) {
    const training::Photo& entry = store_.photos()[photo];
    Exhibit exhibit{kind, photo, number, entry.rows[number], seedOf(entry.image, number)};
    (kind == Kind::PALM ? palms_ : kind == Kind::HAND ? hands_ : scenes_).push_back(exhibit);
}

const std::vector<Exhibit>& Exhibits::of(Kind kind) const {
    return kind == Kind::PALM ? palms_ : kind == Kind::HAND ? hands_ : scenes_;
}

std::optional<ShownPalm> Exhibits::draw(const Exhibit& exhibit, cv::Mat& frame) const {
    const cv::Mat& picture = store_.grey(exhibit.photo);
    if (exhibit.kind == Kind::SCENE) {
        frame.create(NegativeFrames::HEIGHT, NegativeFrames::WIDTH, CV_8U);
        training::coverWithScene(picture, frame);
        return std::nullopt;
    }
    ManifestRow row = exhibit.row;
    if (!row.hasPose) poseOfCrop(picture, row);
    const Exhibit& behind = scenes_[exhibit.seed % scenes_.size()];
    return drawPalmFrame(picture, row, store_.grey(behind.photo), exhibit.seed, frame);
}

std::vector<ShownPalm> Exhibits::others(const Exhibit& exhibit, const ShownPalm& shown) const {
    const double scale = shown.width / exhibit.row.palmWidth;
    const std::vector<ManifestRow>& rows = store_.photos()[exhibit.photo].rows;
    std::vector<ShownPalm> palms;
    for (int k = 0; k < static_cast<int>(rows.size()); ++k) {
        const ManifestRow& row = rows[k];
        const bool mayBeReported = row.kind == Kind::PALM || row.kind == Kind::IGNORE;
        if (k == exhibit.number || !row.hasPose || !mayBeReported) continue;
        const cv::Point2d offset(row.cx - exhibit.row.cx, row.cy - exhibit.row.cy);
        palms.push_back({shown.centre + offset * scale, row.palmWidth * scale});
    }
    return palms;
}

double Exhibits::brightness(const Exhibit& exhibit) const {
    const cv::Mat& picture = store_.grey(exhibit.photo);
    const cv::Rect whole(0, 0, picture.cols, picture.rows);
    const ManifestRow& row = exhibit.row;
    cv::Rect box = whole;
    if (row.hasBox) {
        box &= cv::Rect(cv::Point(cvFloor(row.x0), cvFloor(row.y0)),
                        cv::Point(cvCeil(row.x1), cvCeil(row.y1)));
    }
    return cv::mean(picture(box.empty() ? whole : box))[0];
}

std::vector<Exhibit> thinned(const std::vector<Exhibit>& exhibits, int every, int limit) {
    std::vector<Exhibit> kept;
    for (size_t i = 0; i < exhibits.size(); i += static_cast<size_t>(every)) {
        if (limit > 0 && static_cast<int>(kept.size()) == limit) break;
        kept.push_back(exhibits[i]);
    }
    return kept;
}

}  // namespace evaluate
