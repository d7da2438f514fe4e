#pragma once

#include <opencv2/core/mat.hpp>
#include <string>
#include <vector>

namespace palm {

/// Collects marked-up frames and lays them out on one sheet: the frames where a gesture begins and,
/// between them, frames spread evenly over the run.
class Sheet {
public:
    /// Keeps a small copy. `notable`: a gesture begins with the frame.
    void add(const cv::Mat& picture, bool notable);
    /// Writes the sheet beside `path`, then renames. Throws WorkError.
    void write(const std::string& path) const;

private:
    struct Tile {
        cv::Mat picture;
        int number;
    };
    static void thinOut(std::vector<Tile>& tiles, int& step);

    std::vector<Tile> notable_;
    std::vector<Tile> others_;
    int notableStep_ = 1;
    int otherStep_ = 1;
    int notableSeen_ = 0;
    int seen_ = 0;
};

}  // namespace palm
