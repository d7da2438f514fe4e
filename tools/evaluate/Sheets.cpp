#include "Sheets.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <opencv2/imgproc.hpp>

#include "Canvas.h"
#include "Output.h"
#include "Window.h"

namespace evaluate {

using training::Kind;

namespace {

constexpr int COLUMNS = 5, TILE = 320, PICTURE = 240, CAPTION = 44, GAP = 8, HEADER = 56;
constexpr size_t TILES = 30;

const Exhibit* exhibitOf(const PhotoOutcome& outcome, const Exhibits& exhibits) {
    for (const Exhibit& exhibit : exhibits.of(outcome.kind)) {
        if (exhibit.row.image == outcome.image && exhibit.number == outcome.number) return &exhibit;
    }
    return nullptr;
}

/// The detection window around a hand, turned as the hand is.
void drawLabel(cv::Mat& picture, const ShownPalm& palm, double angle) {
    const auto side = static_cast<float>(palm.width * training::WindowShape::PER_PALM);
    const cv::RotatedRect window(palm.centre, {side, side}, static_cast<float>(-angle));
    cv::Point2f corners[4];
    window.points(corners);
    for (int i = 0; i < 4; ++i) {
        cv::line(picture, corners[i], corners[(i + 1) % 4], color::GREEN, 1, cv::LINE_AA);
    }
}

std::string scoreText(const PhotoOutcome& outcome) {
    char text[96];
    if (outcome.isPalm()) {
        std::snprintf(text, sizeof text, "%s%s, %.0f px, %+.0f deg",
                      nameOf(outcome.lost.value_or(Stage::CONFIRMATION)),
                      outcome.reported ? ", seen elsewhere" : "", outcome.palmWidth, outcome.angle);
    } else {
        std::snprintf(text, sizeof text, "score %.3f, last stage %.3f", outcome.score,
                      outcome.lastScore);
    }
    return text;
}

cv::Mat tileOf(const PhotoOutcome& outcome, const Exhibits& exhibits) {
    const Exhibit* exhibit = exhibitOf(outcome, exhibits);
    cv::Mat grey, picture;
    const std::optional<ShownPalm> hand = exhibits.draw(*exhibit, grey);
    cv::cvtColor(grey, picture, cv::COLOR_GRAY2BGR);
    if (outcome.isPalm()) drawLabel(picture, *hand, outcome.angle);
    if (outcome.reported) cv::rectangle(picture, outcome.rect, color::RED, 2, cv::LINE_AA);
    Canvas caption({TILE, CAPTION});
    caption.text(scoreText(outcome), {2, 16}, color::INK, 8, Align::LEFT, true);
    const std::string name = outcome.image.substr(outcome.image.rfind("images/") == 0 ? 7 : 0);
    caption.text(name + (outcome.doubtful ? "  doubtful" : ""), {2, 34}, color::FAINT, 7.5);
    cv::Mat tile;
    cv::vconcat(picture, caption.picture(), tile);
    return tile;
}

cv::Mat sheetOf(const std::string& title, const std::vector<PhotoOutcome>& outcomes,
                const Exhibits& exhibits) {
    const int count = static_cast<int>(outcomes.size());
    const int columns = std::clamp(count, 2, COLUMNS), rows = (count + columns - 1) / columns;
    Canvas sheet({columns * (TILE + GAP) + GAP, HEADER + rows * (PICTURE + CAPTION + GAP)});
    sheet.text(count > 0 ? title : title + ": none", {GAP, 34}, color::INK, 11, Align::LEFT, true);
    cv::Mat picture = sheet.picture();
    for (int i = 0; i < count; ++i) {
        const cv::Point place(GAP + i % columns * (TILE + GAP),
                              HEADER + i / columns * (PICTURE + CAPTION + GAP));
        tileOf(outcomes[i], exhibits)
            .copyTo(picture(cv::Rect(place, cv::Size(TILE, PICTURE + CAPTION))));
    }
    return picture;
}

/// The first ones, of each source a third of `most`.
std::vector<PhotoOutcome> variedFirst(const std::vector<PhotoOutcome>& sorted, size_t most) {
    std::map<std::string, size_t> taken;
    std::vector<PhotoOutcome> chosen;
    for (const PhotoOutcome& outcome : sorted) {
        if (chosen.size() == most) break;
        if (taken[outcome.source]++ < (most + 2) / 3) chosen.push_back(outcome);
    }
    return chosen;
}

}  // namespace

std::vector<PhotoOutcome> worstMisses(const std::vector<PhotoOutcome>& outcomes, size_t most) {
    std::vector<PhotoOutcome> misses;
    std::copy_if(outcomes.begin(), outcomes.end(), std::back_inserter(misses),
                 [](const PhotoOutcome& outcome) { return outcome.lost.has_value(); });
    std::stable_sort(misses.begin(), misses.end(), [](const auto& a, const auto& b) {
        return *a.lost != *b.lost ? *a.lost < *b.lost : a.lastScore < b.lastScore;
    });
    return variedFirst(misses, most);
}

std::vector<PhotoOutcome> worstAlarms(const std::vector<PhotoOutcome>& outcomes, Kind kind,
                                      size_t most) {
    std::vector<PhotoOutcome> alarms;
    std::copy_if(
        outcomes.begin(), outcomes.end(), std::back_inserter(alarms),
        [&](const PhotoOutcome& outcome) { return outcome.kind == kind && outcome.reported; });
    std::stable_sort(alarms.begin(), alarms.end(),
                     [](const auto& a, const auto& b) { return a.score > b.score; });
    return variedFirst(alarms, most);
}

void writeSheets(const Evaluation& evaluation, const Exhibits& exhibits,
                 const std::string& folder) {
    const std::vector<PhotoOutcome>& outcomes = evaluation.photographs;
    const auto write = [&](const char* name, const std::string& title,
                           const std::vector<PhotoOutcome>& some) {
        writePicture(folder + "/" + name + ".png", sheetOf(title, some, exhibits));
    };
    write("misses", "Palms missed and the stage that lost them (green: label, red: report)",
          worstMisses(outcomes, TILES));
    write("pose_alarms", "Other poses taken for a palm (red: the report)",
          worstAlarms(outcomes, Kind::HAND, TILES));
    write("scene_alarms", "Scenes with a report (red)", worstAlarms(outcomes, Kind::SCENE, TILES));
}

}  // namespace evaluate
