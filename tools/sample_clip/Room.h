#pragma once

#include <opencv2/core.hpp>

namespace sample {

constexpr int roomMargin = 60;  ///< pixels of the room beyond each edge of the picture

/// A cluttered living room, drawn by the program: shelves, a window with a tree before it, a desk
/// with a running monitor, a plant in a draught, someone walking by.
class Room {
public:
    Room();
    /// The room at `time`, 8-bit BGR, larger than the picture by roomMargin on every side.
    cv::Mat at(double time) const;

private:
    cv::Mat back_;        // wall, shelves, window frame
    cv::Mat front_;       // desk, chair, lamp; black where see-through
    cv::Mat frontShare_;  // 255 where the front covers
};

}  // namespace sample
