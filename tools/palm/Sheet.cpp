#include "Sheet.h"

#include <algorithm>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "Error.h"
#include "VideoOutput.h"

namespace palm {

namespace {

const size_t MOST_TILES = 24;  // kept of each kind while the length of the run is unknown
const int COLUMNS = 5, ROWS = 5, TILE_WIDTH = 320, GAP = 4;

}  // namespace

// Every second tile goes, so that those that stay are spread over the whole run.
void Sheet::thinOut(std::vector<Tile>& tiles, int& step) {
    for (size_t i = 0; 2 * i < tiles.size(); ++i) tiles[i] = tiles[2 * i];
    tiles.resize((tiles.size() + 1) / 2);
    step *= 2;
}

void Sheet::add(const cv::Mat& picture, bool notable) {
    std::vector<Tile>& tiles = notable ? notable_ : others_;
    int& step = notable ? notableStep_ : otherStep_;
    const int number = notable ? notableSeen_++ : seen_;
    ++seen_;
    if (number % step != 0) return;
    cv::Mat small;
    const double scale = static_cast<double>(TILE_WIDTH) / picture.cols;
    cv::resize(picture, small, cv::Size(), scale, scale, cv::INTER_AREA);
    tiles.push_back({small, seen_});
    if (tiles.size() >= 2 * MOST_TILES) thinOut(tiles, step);
}

void Sheet::write(const std::string& path) const {
    const auto spread = [](const std::vector<Tile>& tiles, size_t most) {
        std::vector<Tile> chosen;
        const size_t count = std::min(most, tiles.size());
        for (size_t i = 0; i < count; ++i) chosen.push_back(tiles[i * tiles.size() / count]);
        return chosen;
    };
    const size_t places = COLUMNS * ROWS;
    const size_t otherPlaces = std::max(places - std::min(places, notable_.size()), places / 3);
    std::vector<Tile> tiles = spread(others_, otherPlaces);
    for (const Tile& tile : spread(notable_, places - tiles.size())) tiles.push_back(tile);
    if (tiles.empty()) throw WorkError("no frame for the sheet " + path);
    std::sort(tiles.begin(), tiles.end(),
              [](const Tile& a, const Tile& b) { return a.number < b.number; });

    int tileHeight = 0;
    for (const Tile& tile : tiles) tileHeight = std::max(tileHeight, tile.picture.rows);
    const int rows = (static_cast<int>(tiles.size()) + COLUMNS - 1) / COLUMNS;
    cv::Mat sheet(rows * (tileHeight + GAP) + GAP, COLUMNS * (TILE_WIDTH + GAP) + GAP, CV_8UC3,
                  cv::Scalar(40, 40, 40));
    for (size_t i = 0; i < tiles.size(); ++i) {
        const int column = static_cast<int>(i) % COLUMNS, row = static_cast<int>(i) / COLUMNS;
        const cv::Rect place(GAP + column * (TILE_WIDTH + GAP), GAP + row * (tileHeight + GAP),
                             tiles[i].picture.cols, tiles[i].picture.rows);
        tiles[i].picture.copyTo(sheet(place & cv::Rect(0, 0, sheet.cols, sheet.rows)));
    }
    writeBeside(path, ".png", [&](const std::string& part) { return cv::imwrite(part, sheet); });
}

}  // namespace palm
